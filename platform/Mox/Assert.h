// Assertions: a broken invariant ends the process, since going on would hand wrong routes to the
// network. The comments of functions say "Asserts", and give the text.
#pragma once

namespace Mox {
/// Prints one line, `FILE:LINE: SIGNATURE: text`, to standard error and aborts.
[[noreturn]] void assertionFailed(const char* file, int line, const char* signature,
                                  const char* text) noexcept;
}  // namespace Mox

/// Asserts `text` unless `condition` holds, in every build. The text is given in full instead of
/// being made from the condition: operators look for it in logs, so it stays when the code around
/// it changes.
#define MOX_ASSERT(condition, text)                                          \
  do {                                                                       \
    if (!(condition)) [[unlikely]]                                           \
      ::Mox::assertionFailed(__FILE__, __LINE__, __PRETTY_FUNCTION__, text); \
  } while (false)

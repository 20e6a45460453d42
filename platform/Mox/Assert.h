// Broken invariants end the process: going on would hand wrong routes to the network.
#pragma once

namespace Mox {
/// Prints one line, `file:line: signature: text`, to standard error and aborts.
[[noreturn]] void assertionFailed(const char* file, int line, const char* signature,
                                  const char* text) noexcept;
}  // namespace Mox

/// Ends the process with `text` unless `condition` holds. Always on, whatever the build. The text
/// is given in full instead of being made from the condition: operators look for it in logs, and
/// it must not change when the code around it does.
#define MOX_ASSERT(condition, text)                                          \
  do {                                                                       \
    if (!(condition)) [[unlikely]]                                           \
      ::Mox::assertionFailed(__FILE__, __LINE__, __PRETTY_FUNCTION__, text); \
  } while (false)

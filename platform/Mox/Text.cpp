#include "Mox/Text.h"

#include <charconv>
#include <iterator>

#include "Mox/Exception.h"

namespace Mox {
namespace {

template <class U>
void readDecimal(std::string_view text, U& value) {
  const char* const end = text.data() + text.size();
  U number;
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc::invalid_argument || rest != end)
    throw ParseException("not an unsigned decimal number: \"" + String(text) + "\"",
                         std::size_t(rest - text.data()));
  if (error != std::errc{}) throw RangeException("number too large: " + String(text));
  value = number;
}

}  // namespace

void sequenceToValue(std::string_view text, U32& value) { readDecimal(text, value); }
void sequenceToValue(std::string_view text, U64& value) { readDecimal(text, value); }

String valueToStrep(const void* pointer) {
  if (!pointer) return "NULL";
  char digits[2 * sizeof pointer];
  const auto address = reinterpret_cast<std::uintptr_t>(pointer);
  return "0x" + String(digits, std::to_chars(digits, std::end(digits), address, 16).ptr);
}

}  // namespace Mox

// Text of the plain values: what every type's own `valueToStrep`, `sequenceToValue` and stream
// output are built from.
#pragma once

#include <concepts>
#include <ostream>
#include <string>

#include "Mox/Types.h"

namespace Mox {

/// `True` or `False`.
inline String valueToStrep(bool value) { return value ? "True" : "False"; }
/// Decimal.
template <std::integral I>
String valueToStrep(I value) {
  return std::to_string(value);
}
/// The text itself.
inline String valueToStrep(const String& value) { return value; }
/// The text itself.
inline String valueToStrep(const char* value) { return value; }

/// Reads an unsigned decimal number: digits and nothing else. ParseException at the first other
/// character, RangeException when the number is too large; `value` is then unchanged.
void sequenceToValue(std::string_view text, U32& value);
/// The same for 64 bits.
void sequenceToValue(std::string_view text, U64& value);

/// `NULL`, or the address in lower-case hexadecimal.
String valueToStrep(const void* pointer);

/// Writes the text as it is: no width, fill, base or locale of the stream changes it.
inline std::ostream& writeText(std::ostream& stream, std::string_view text) {
  return stream.write(text.data(), std::streamsize(text.size()));
}

}  // namespace Mox

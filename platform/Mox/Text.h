// Text of the plain values: what every type's own `valueToStrep` is built from.
#pragma once

#include <concepts>
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
inline String valueToStrep(const String& value) { return value; }
inline String valueToStrep(const char* value) { return value; }

}  // namespace Mox

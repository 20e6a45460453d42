// Texts that follow from names: for values without a text of their own, for pointers, and for
// refusals.
#pragma once

#include <initializer_list>

#include "Mox/Ptr.h"
#include "Mox/Text.h"

namespace Mox {

/// An attribute's name and the text of its value.
struct NamedText {
  std::string_view name;
  String text;
};

/// `Value('Routing::Bgp::Thing', ** {'first': 1, 'second': True})`
String valueText(std::string_view type, std::initializer_list<NamedText> attributes);

/// `NULL`, or the address.
template <class T>
String valueToStrep(const Ptr<T>& pointer) {
  return valueToStrep(static_cast<const void*>(pointer.get()));
}

/// Refuses a null that was given to a mutator of the attribute with RangeException.
[[noreturn]] void raiseNull(std::string_view owner, std::string_view attribute);
/// RangeException if the pointer is null; nothing otherwise.
template <class T>
void refuseNull(const Ptr<T>& pointer, std::string_view owner, std::string_view attribute) {
  if (!pointer) raiseNull(owner, attribute);
}

}  // namespace Mox

// Texts that follow from names: of values without a text of their own, of pointers, and of what is
// refused.
#pragma once

#include <initializer_list>

#include "Mox/Ptr.h"
#include "Mox/Text.h"

namespace Mox {

struct NamedText {
  std::string_view name;
  String text;
};

/// `Value('Routing::Bgp::Thing', ** {'first': 1, 'second': True})`
String valueText(std::string_view type, std::initializer_list<NamedText> attributes);

template <class T>
String valueToStrep(const Ptr<T>& pointer) {
  return valueToStrep(static_cast<const void*>(pointer.get()));
}

/// Refuses a null that was given to a mutator of the attribute with RangeException.
[[noreturn]] void raiseNull(std::string_view owner, std::string_view attribute);
template <class T>
void refuseNull(const Ptr<T>& pointer, std::string_view owner, std::string_view attribute) {
  if (!pointer) raiseNull(owner, attribute);
}

}  // namespace Mox

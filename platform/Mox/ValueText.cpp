#include "Mox/ValueText.h"

#include "Mox/Exception.h"

namespace Mox {

String valueText(std::string_view type, std::initializer_list<NamedText> attributes) {
  String text = "Value('" + String(type) + "', ** {";
  std::string_view separator;
  for (const NamedText& attribute : attributes) {
    text += String(separator) + '\'' + String(attribute.name) + "': " + attribute.text;
    separator = ", ";
  }
  return text + "})";
}

// The quotation mark at the end is part of the text that operators know.
void raiseNull(std::string_view owner, std::string_view attribute) {
  throw RangeException("null _" + String(attribute) + " parameter to mutator for " + String(owner) +
                       "::" + String(attribute) + " not allowed\"");
}

}  // namespace Mox

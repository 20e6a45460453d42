#include "TextStyle.h"

#include "Meant.h"

namespace bgpcomm {

TextStyle& textStyle() {
  static TextStyle style;
  return style;
}

TextForm readTextForm(const std::string& name) {
  return TextForm(placeAmong(textFormNames, name, "--text"));
}

}  // namespace bgpcomm

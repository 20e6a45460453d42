#include "TextStyle.h"

#include "Errors.h"

namespace bgpcomm {

TextStyle& textStyle() {
  static TextStyle style;
  return style;
}

TextForm readTextForm(const std::string& name) {
  if (name == "canonical") return TextForm::canonical;
  if (name == "policy") return TextForm::policy;
  if (name == "show") return TextForm::show;
  throw UsageError("--text " + name + ": there are canonical, policy and show");
}

}  // namespace bgpcomm

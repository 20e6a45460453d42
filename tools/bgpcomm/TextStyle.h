// How the process prints communities. The command line sets it before a command runs; after that
// nothing changes it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "kinds/ZoBgpKindTable.h"

namespace bgpcomm {

enum class TextForm {
  canonical,  ///< one text for each value, which every option reads
  policy,     ///< as in route policies: `RT:65000:100`
  show        ///< as in show commands: `<RouteTarget 65000:100 0x...>`
};

/// The words of `--text`, in the order of the enumeration.
inline constexpr std::string_view textFormNames[] = {"canonical", "policy", "show"};

struct TextStyle {
  std::optional<TextForm> asked;  ///< by `--text`
  bool names = true;              ///< of well-known standard communities
  /// The kinds in use; none with `--core`.
  std::optional<Routing::Bgp::KindTable> kinds = Routing::Bgp::KindTable::builtIn();

  /// REQUIRES: kinds, for canonical texts.
  TextForm form() const { return asked.value_or(kinds ? TextForm::canonical : TextForm::policy); }
};
TextStyle& textStyle();

/// The form of a name; throws UsageError.
TextForm readTextForm(const std::string& name);

}  // namespace bgpcomm

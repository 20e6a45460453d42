#include "ExtendedKind.h"

#include "Hex.h"
#include "Kinds.h"

namespace bgpcomm {

using namespace Routing::Bgp;

const BgpParseExtendedCommunityRule::Ptr& sharedParser() {
  static const auto container = bgpParseExtCommContainerSmFactory();
  return container->extCommParser();
}

/// The short policy text of what has a meaning, if there is one; else the long one, which names
/// type and subtype. One that consists of octets is shorter in hex. Different communities never
/// look alike.
template <class Family>
std::string ExtendedKind<Family>::valueText(const Value& value) {
  using Format = typename Value::StrepFormat;
  std::string text;
  if (value.classification() != extCommClassificationUnSpecified)
    text = value.toStrepForPolicy(Format(strepFormatClassification));
  if (text.empty())
    text = value.toStrepForPolicy(Format(strepFormatClassification | strepFormatUI));
  if (text.find(" 0x") == text.npos) return text;
  return "0x" + hex(value.getContent().octets());
}

template <class Family>
void ExtendedKind<Family>::addFigures(KindFigures& figures,
                                      const ValueUses<valueSize>& uses) const {
  if constexpr (requires { lists_->notifyingRtExtCommListCollection(); }) {
    figures.distinctRouteTargetSets = lists_->notifyingRtExtCommListCollection()->rtExtCommLists();
    std::map<std::string, U64>& types = figures.types.emplace();
    uses.forEach(
        [&](Octets value) { ++types[hex(value.first(1)) + '/' + hex(value.subspan(1, 1))]; });
  }
}

template class ExtendedKind<EightOctets>;
template class ExtendedKind<TwentyOctets>;

}  // namespace bgpcomm

#include "parse/BgpParseExtCommCollections.h"

namespace Routing::Bgp {
namespace {

/// A collection as reflection shows it.
template <class Kind>
Mox::Attribute instancesOf(std::string_view name) {
  return {Mox::String(name), Mox::Attribute::Kind::collection, [](const void* registry) {
            Mox::String text;
            for (const auto& key :
                 static_cast<const BgpParseExtCommRuleCollections*>(registry)->instances<Kind>())
              text += (text.empty() ? "" : ", ") + valueToStrep(key);
            return text;
          }};
}

}  // namespace

const Mox::Type BgpParseExtCommRuleCollections::type{"Routing::Bgp::BgpParseExtCommRuleCollections",
                                                     &Mox::PtrInterface::type,
                                                     {
#define ZOBGP_KIND(Kind, Operation, Collection, ...) \
  instancesOf<kind::Kind>("extended" #Collection "RuleInstance"),
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"
                                                     }};

BgpParseExtCommRuleCollections::Ptr bgpParseExtCommRuleCollectionsFactory() {
  return Mox::makeNew<BgpParseExtCommRuleCollections>();
}

}  // namespace Routing::Bgp

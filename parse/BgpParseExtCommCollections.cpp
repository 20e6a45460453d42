#include "parse/BgpParseExtCommCollections.h"

#include "parse/BgpParseExtCommTopRule.h"

namespace Routing::Bgp {
namespace {

/// A collection as reflection shows it.
template <class Kind>
Mox::Attribute instancesOf(std::string_view name) {
  return {Mox::String(name), Mox::Attribute::Form::collection, [](const void* registry) {
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

template <class Kind>
void BgpParseExtCommRuleCollections::instanceIs(const BgpParseExtCommRuleKey<Kind>& key) {
  if (const auto rule = key.rule(); rule && rule->parseControl().ruleCollections().get() == this)
    rule->registered_ = true;
  if (!std::get<Keys<Kind>>(collections_).insert(key).second) return;
  notifiees_.deliver<NotifieeConst>([&key](NotifieeConst& notifiee) { notifiee.hear(key); });
}

template <class Kind>
bool BgpParseExtCommRuleCollections::instanceDel(const BgpParseExtCommRuleKey<Kind>& key) {
  // A copy: the key may be given as it stands in the collection.
  const BgpParseExtCommRuleKey<Kind> removed = key;
  if (std::get<Keys<Kind>>(collections_).erase(removed) == 0) return false;
  notifiees_.deliver<NotifieeConst>([&](NotifieeConst& notifiee) { notifiee.hear(removed); });
  return true;
}

template <class Kind>
void BgpParseExtCommRuleCollections::instanceDelAll() {
  Keys<Kind>& keys = std::get<Keys<Kind>>(collections_);
  if (keys.empty()) return;
  keys.clear();
  notifiees_.deliver<NotifieeConst>([](NotifieeConst& notifiee) { notifiee.hear(Kind()); });
}

#define ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, ...)   \
  template void BgpParseExtCommRuleCollections::instanceIs<kind::Kind>(const Key&);  \
  template bool BgpParseExtCommRuleCollections::instanceDel<kind::Kind>(const Key&); \
  template void BgpParseExtCommRuleCollections::instanceDelAll<kind::Kind>();
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"

BgpParseExtCommRuleCollections::Ptr bgpParseExtCommRuleCollectionsFactory() {
  return Mox::makeNew<BgpParseExtCommRuleCollections>();
}

}  // namespace Routing::Bgp

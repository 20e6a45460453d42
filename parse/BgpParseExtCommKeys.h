// The names under which rules stand in the registry: which rule it is, not what it is like.
//
//   BgpParseExtCommSubTypeTransOpaqueRuleKey key(rule.get());
//   key.rule()->subTypeRuleIs(subRule);
//
// A key owns nothing. One in the registry names a rule that lives: rules take their keys out when
// they are withdrawn, or destroyed.
#pragma once

#include <functional>

#include "Mox/ValueText.h"
#include "parse/BgpParseExtCommKinds.h"

namespace Routing::Bgp {

namespace detail {
/// 0 for null.
U32 ruleAddressHash(const void* rule);
/// Accepts the text of the key of that name that names no rule, and raises otherwise.
void readNullRuleKey(std::string_view keyName, std::string_view text);
}  // namespace detail

template <class Kind>
class BgpParseExtCommRuleKey {
 public:
  static const Mox::Type type;
  using Rule = typename Kind::Rule;

  BgpParseExtCommRuleKey() = default;
  explicit BgpParseExtCommRuleKey(Rule* rule) : rule_(rule) {}

  Mox::RawPtr<Rule> rule() const { return rule_; }
  U32 hash() const { return detail::ruleAddressHash(rule_); }

  friend bool operator==(const BgpParseExtCommRuleKey&, const BgpParseExtCommRuleKey&) = default;
  friend bool operator<(const BgpParseExtCommRuleKey& a, const BgpParseExtCommRuleKey& b) {
    return std::less<>()(a.rule_, b.rule_);
  }

  /// `Value('Routing::Bgp::...RuleKey', ** {'rule': 0x5581e0})`
  friend Mox::String valueToStrep(const BgpParseExtCommRuleKey& key) {
    return Mox::valueText(Kind::keyName,
                          {{"rule", Mox::valueToStrep(static_cast<const void*>(key.rule_))}});
  }
  friend std::ostream& operator<<(std::ostream& stream, const BgpParseExtCommRuleKey& key) {
    return Mox::writeText(stream, valueToStrep(key));
  }
  /// Reads the text of a key that names no rule. ParseException for any other: an address must not
  /// come from a text.
  friend void sequenceToValue(std::string_view text, BgpParseExtCommRuleKey& key) {
    detail::readNullRuleKey(Kind::keyName, text);
    key = BgpParseExtCommRuleKey();
  }

 private:
  Rule* rule_ = nullptr;
};

#define ZOBGP_KIND(Kind, ...) extern template class BgpParseExtCommRuleKey<kind::Kind>;
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"

}  // namespace Routing::Bgp

// Rule keys: the names under which rules stand in the registry, one address each.
//
//   BgpParseExtCommSubTypeTransOpaqueRuleKey key(rule.get());
//   key.rule()->subTypeRuleIs(subRule);
//
// 1. A key is equal to another when both name the same rule, whatever the rules are like.
// 2. A key owns nothing. Keys in the registry name live rules: a rule takes its key out when it is
//    withdrawn, or destroyed.
//
// Threads: a plain value.
#pragma once

#include <functional>

#include "Mox/ValueText.h"
#include "parse/BgpParseExtCommKinds.h"

namespace Routing::Bgp {

namespace detail {
/// A mix of all bits of the address; 0 for null.
U32 ruleAddressHash(const void* rule);
/// Accepts the text of a key of this class that names no rule. ParseException for any other.
void readNullRuleKey(std::string_view keyName, std::string_view text);
}  // namespace detail

/// Names a rule of the kind, or none.
template <class Kind>
class BgpParseExtCommRuleKey {
 public:
  static const Mox::Type type;
  using Rule = typename Kind::Rule;

  BgpParseExtCommRuleKey() = default;
  /// Names this rule, or none; holds no reference.
  explicit BgpParseExtCommRuleKey(Rule* rule) : rule_(rule) {}

  /// Null when the key names none. Valid as long as somebody holds the rule.
  Mox::RawPtr<Rule> rule() const { return rule_; }
  /// A mix of the address; 0 when the key names none.
  U32 hash() const { return detail::ruleAddressHash(rule_); }

  friend bool operator==(const BgpParseExtCommRuleKey&, const BgpParseExtCommRuleKey&) = default;
  /// The order of addresses.
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
  /// Reads the text of a key that names no rule. ParseException for any other, and the key stays as
  /// it was: a text must not become an address.
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

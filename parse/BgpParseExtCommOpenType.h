// The rule of a type that the library has no rule for: Ethernet VPN, QoS marking and the like. Its
// sub-rules stand under any subtype octet, and plug-ins that know nothing of each other share it.
//
//   const auto open = bgpParseExtCommOpenTypeRuleIs(*parser, extCommPktTypeTransEvpn);
//   if (open) open->subTypeRuleIs(subRule);        // null: another rule serves the type
//   parser->parseExtendedCommunity(content);       // what subRule->inhale(content) returns
//
// 1. A parser has no open rule until one is asked for. The first who asks makes it; everybody after
//    finds the same one.
// 2. The subtype octet is looked up as it is: no enumeration says which of them are asked for.
// 3. A content that no sub-rule serves is left to the parser, which makes a plain ExtComm of it, as
//    it does without the rule.
// 4. Asking never displaces the rule of somebody else, as `typeRuleIs` does: an open rule that is
//    replaced keeps its sub-rules and is asked nothing more.
// 5. No registry knows the rule. Plug-ins install their sub-rules when they are asked for those of
//    the parser; BgpParseExtCommPlugin and `addExtCommOpenTypeSubRule` do so.
//
// Threads and lifetime are those of type rules: see BgpParseExtCommRules.h.
#pragma once

#include "parse/BgpParseExtCommRules.h"

namespace Routing::Bgp {

namespace kind {
/// Whether the library has a rule of its own for the type, with sub-rules of a kind.
constexpr bool has(BgpExtCommPktType pktType) {
  const auto is = [pktType](auto type) {
    if constexpr (std::same_as<decltype(type), BgpExtCommPktType>) return type == pktType;
    return false;
  };
#define ZOBGP_KIND(Kind, ...) is(kind::Kind::pktType) ||
  return
#include "parse/BgpParseExtCommKindList.h"
      false;
}
}  // namespace kind

/// The base of the sub-rules of open type rules. Null leaves a content to the parser.
class BgpParseExtCommOpenSubTypeRuleBase
    : public Mox::Entity<BgpParseExtCommOpenSubTypeRuleBase,
                         BgpParseExtCommBuildingRule<ExtCommFamily, U8>> {
 public:
  static const Mox::Type type;

  /// For the contents of this type and subtype.
  BgpParseExtCommOpenSubTypeRuleBase(const BgpParseExtCommControl& control,
                                     BgpExtCommPktType pktType, U8 pktSubType)
      : Entity(control, pktSubType), pktType_(pktType) {}

  /// The type that the rule serves.
  BgpExtCommPktType pktType() const { return pktType_; }
  /// The subtype that the rule serves.
  U8 pktSubType() const { return mapKey(); }

 private:
  const BgpExtCommPktType pktType_;
};

/// A type rule with sub-rules under any subtype octet. It owns them.
class BgpParseExtCommOpenTypeRule final
    : public Mox::Entity<BgpParseExtCommOpenTypeRule, BgpParseExtendedCommunityTypeRuleBase> {
 public:
  static const Mox::Type type;
  using SubRule = BgpParseExtCommOpenSubTypeRuleBase;

  using Entity::Entity;

  /// The object that the sub-rule of the content's subtype builds; null when there is none.
  Mox::Ptr<ExtComm> inhale(const ExtCommContent& content) const override;

  /// All of them, by subtype. Valid as long as the rule.
  const BgpParseExtCommRuleMap<SubRule>& subTypeRules() const { return subTypeRules_; }
  /// Null when there is none.
  Mox::PtrConst<SubRule> subTypeRule(U8 subtype) const {
    return Mox::PtrConst<SubRule>(subTypeRules_.find(subtype));
  }
  /// Installs a sub-rule under its subtype. RangeException for null, and for one of another type.
  void subTypeRuleIs(const Mox::PtrConst<SubRule>& rule);
  /// Returns what it removed; null when there was none.
  Mox::PtrConst<SubRule> subTypeRuleDel(U8 subtype) { return subTypeRules_.erase(subtype); }
  /// Removes all.
  void subTypeRuleDelAll() { subTypeRules_.clear(); }

 private:
  BgpParseExtCommRuleMap<SubRule> subTypeRules_;
};

/// The open rule of a type, made and installed now if the type has no rule. Null, and no change,
/// when a rule of another class serves the type, or when the parser never asks for it because it is
/// no member. A rule in the way is traced at level 8.
BgpParseExtCommOpenTypeRule::Ptr bgpParseExtCommOpenTypeRuleIs(
    BgpParseExtendedCommunityRule& parser, BgpExtCommPktType pktType);

/// A sub-rule that makes the objects of one subtype with a factory: `factory(content,
/// arguments...)`. `Self` is the class that derives from it.
template <class Self, BgpExtCommPktType pktType, U8 subtype, auto factory, auto... arguments>
class BgpParseExtCommOpenSubRule : public Mox::Entity<Self, BgpParseExtCommOpenSubTypeRuleBase> {
  static_assert(bgpIsValidEnumMember(pktType), "a type that is no member is never looked up");
  static_assert(!kind::has(pktType),
                "the library has a rule for the type: see BgpParseExtCommSubRule");

 public:
  /// For the type and the subtype of the template.
  explicit BgpParseExtCommOpenSubRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommOpenSubRule::Entity(control, pktType, subtype) {}
  Mox::Ptr<ExtComm> inhale(const ExtCommContent& content) const override {
    return factory(content, arguments...);
  }
};

}  // namespace Routing::Bgp

// The parser: chooses the rule of a content's type and returns the object that it builds.
//
//   BgpParseExtendedCommunityRule::Ptr parser = container->extCommParser();
//   parser->parseExtendedCommunity(ExtCommContent(0x0002FDE800000064))->fwkType().name()
//       // "Routing::Bgp::ExtCommRouteTargetAs"
//
// Every call returns a new, private object and never null; interning is its caller's affair. It
// costs two look-ups among a few rules, a virtual call per level and one allocation.
//
// Threads: see BgpParseExtCommRules.h.
#pragma once

#include "parse/BgpParseExtCommRules.h"

namespace Routing::Bgp {

class BgpParseExtendedCommunityRule
    : public Mox::Entity<BgpParseExtendedCommunityRule, BgpParseExtCommRuleBase> {
 public:
  static const Mox::Type type;
  using TypeRule = BgpParseExtendedCommunityTypeRuleBase;
  using Ip6TypeRule = BgpParseExtendedCommunityIp6TypeRuleBase;

  explicit BgpParseExtendedCommunityRule(const BgpParseExtCommControl& control);
  ~BgpParseExtendedCommunityRule() override;

  Mox::Ptr<ExtComm> parseExtendedCommunity(const ExtCommContent& content) const;
  Mox::Ptr<ExtCommIp6> parseExtendedCommunityIp6(const ExtCommIp6Content& content) const;

  // The type rules. One that is replaced or removed is withdrawn from the registry. `Is` raises
  // RangeException for null; `Del` returns what it removed, look-ups return null for nothing.

  const BgpParseExtCommRuleMap<TypeRule>& typeRules() const { return typeRules_; }
  Mox::PtrConst<TypeRule> typeRule(BgpExtCommPktType pktType) const {
    return Mox::PtrConst<TypeRule>(typeRules_.find(pktType));
  }
  void typeRuleIs(const Mox::PtrConst<TypeRule>& rule);
  Mox::PtrConst<TypeRule> typeRuleDel(BgpExtCommPktType pktType);
  void typeRuleDelAll();

  const BgpParseExtCommRuleMap<Ip6TypeRule>& ip6TypeRules() const { return ip6TypeRules_; }
  Mox::PtrConst<Ip6TypeRule> ip6TypeRule(BgpExtCommIp6PktType pktType) const {
    return Mox::PtrConst<Ip6TypeRule>(ip6TypeRules_.find(pktType));
  }
  void ip6TypeRuleIs(const Mox::PtrConst<Ip6TypeRule>& rule);
  Mox::PtrConst<Ip6TypeRule> ip6TypeRuleDel(BgpExtCommIp6PktType pktType);
  void ip6TypeRuleDelAll();

  /// Makes and installs the library's type rules and then enters the rule in the registry.
  void handleInitialized();
  /// Takes the type rules and then the rule itself out of the registry. They parse as before.
  void handleDel() const;

 private:
  BgpParseExtendedCommunityRule(const BgpParseExtCommControl& control, BgpParseExtCommUnregistered)
      : Entity(control) {}

  BgpParseExtCommRuleMap<TypeRule> typeRules_;
  BgpParseExtCommRuleMap<Ip6TypeRule> ip6TypeRules_;
};

/// A new parser of its own.
BgpParseExtendedCommunityRule::Ptr bgpParseExtendedCommunityRuleFactory(
    const BgpParseExtCommControl& control);

}  // namespace Routing::Bgp

// The parser: it chooses the rule of a content's type and returns the object that the rule builds.
//
//   BgpParseExtendedCommunityRule::Ptr parser = container->extCommParser();
//   parser->parseExtendedCommunity(ExtCommContent(0x0002FDE800000064))->fwkType().name()
//       // "Routing::Bgp::ExtCommRouteTargetAs"
//
// 1. Every call returns a new object that only the caller holds, and never null. Interning is up to
//    the caller: see ExtCommDedupTable.
// 2. A call costs two look-ups among a few rules, a virtual call per level and one allocation.
// 3. A content that no rule serves becomes a plain ExtComm or ExtCommIp6 of no classification.
//
// Threads: parse from any. Installing rules, withdrawing the parser and, unless it was withdrawn,
// its end belong to the registry's thread: see BgpParseExtCommRules.h.
#pragma once

#include "parse/BgpParseExtCommRules.h"

namespace Routing::Bgp {

class BgpParseExtendedCommunityRule
    : public Mox::Entity<BgpParseExtendedCommunityRule, BgpParseExtCommRuleBase> {
 public:
  static const Mox::Type type;
  using TypeRule = BgpParseExtendedCommunityTypeRuleBase;
  using Ip6TypeRule = BgpParseExtendedCommunityIp6TypeRuleBase;

  /// Ends with `handleInitialized`.
  explicit BgpParseExtendedCommunityRule(const BgpParseExtCommControl& control);
  ~BgpParseExtendedCommunityRule() override;

  /// The object of this content, of the class that its rules say.
  Mox::Ptr<ExtComm> parseExtendedCommunity(const ExtCommContent& content) const;
  /// The same for the family of 20 octets.
  Mox::Ptr<ExtCommIp6> parseExtendedCommunityIp6(const ExtCommIp6Content& content) const;

  // The type rules. `Is` installs a rule under its type and raises RangeException for null. A rule
  // that is replaced or removed is withdrawn from the registry. `Del` returns what it removed; it
  // and the look-ups return null when there is nothing.
  const BgpParseExtCommRuleMap<TypeRule>& typeRules() const { return typeRules_; }
  Mox::PtrConst<TypeRule> typeRule(BgpExtCommPktType pktType) const {
    return Mox::PtrConst<TypeRule>(typeRules_.find(pktType));
  }
  void typeRuleIs(const Mox::PtrConst<TypeRule>& rule);
  Mox::PtrConst<TypeRule> typeRuleDel(BgpExtCommPktType pktType);
  void typeRuleDelAll();

  // The same for the types of the family of 20 octets.
  const BgpParseExtCommRuleMap<Ip6TypeRule>& ip6TypeRules() const { return ip6TypeRules_; }
  Mox::PtrConst<Ip6TypeRule> ip6TypeRule(BgpExtCommIp6PktType pktType) const {
    return Mox::PtrConst<Ip6TypeRule>(ip6TypeRules_.find(pktType));
  }
  void ip6TypeRuleIs(const Mox::PtrConst<Ip6TypeRule>& rule);
  Mox::PtrConst<Ip6TypeRule> ip6TypeRuleDel(BgpExtCommIp6PktType pktType);
  void ip6TypeRuleDelAll();

  /// Makes and installs the library's type rules and then enters the rule in the registry.
  void handleInitialized();
  /// Takes the type rules and then the rule itself out of the registry. They parse as before. If
  /// plug-ins throw meanwhile, all of them are out, and the first exception is thrown.
  void handleDel() const;

 private:
  BgpParseExtendedCommunityRule(const BgpParseExtCommControl& control, BgpParseExtCommUnregistered)
      : Entity(control) {}

  BgpParseExtCommRuleMap<TypeRule> typeRules_;
  BgpParseExtCommRuleMap<Ip6TypeRule> ip6TypeRules_;
};

/// A new parser, which plug-ins of the control's registry have filled.
BgpParseExtendedCommunityRule::Ptr bgpParseExtendedCommunityRuleFactory(
    const BgpParseExtCommControl& control);

}  // namespace Routing::Bgp

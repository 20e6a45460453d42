// A parser plug-in from outside the library: the EVPN router's MAC (RFC 9135, section 8.1), of
// which the library itself only makes a general object. This file and one line are all that it
// takes:
//
//   container->extCommParserSmsEnq(
//       Mox::makeNew<EvpnRouterMacSm>(container->parseExtCommRuleCollections()));
//
//   octets   0     1     2  3  4  5  6  7
//           0x06  0x03  [      MAC      ]
#pragma once

#include "parse/BgpParseExtComm.h"

namespace example {

using namespace Routing::Bgp;

/// The value: its classification, its attribute and its two texts.
class EvpnRouterMac final : public Mox::Entity<EvpnRouterMac, ExtCommSubtyped> {
 public:
  static const Mox::Type type;  // see below

  explicit EvpnRouterMac(const ExtCommContent& content)
      : Entity(extCommClassificationEvpn, content) {}

  /// `00:50:56:00:00:01`
  Mox::String mac() const {
    CommText text;
    appendMac(text);
    return text.str();
  }
  void formatDerivedType(std::ostream& stream) const override {
    CommText text;
    appendMac(text << "<EvpnRouterMac ");
    writeShowText(text, stream);
  }
  Mox::String toStrepForPolicy(StrepFormat format) const override {
    CommText text;
    if (format.has(strepFormatClassification)) text << "EVPN-Router-MAC:";
    appendMac(text);
    return text.str();
  }

 private:
  void appendMac(CommText& text) const {
    for (Mox::U32 octet = 2; octet < 8; ++octet) {
      if (octet > 2) text << ':';
      text.hex(content().octet(octet));
    }
  }
};

/// The reflection of the value. A class without attributes writes it inside itself, as the rule
/// below does. An attribute names a member, so this stands where the class is complete.
inline const Mox::Type EvpnRouterMac::type{
    "example::EvpnRouterMac", &ExtCommSubtyped::type, {Mox::attribute<&EvpnRouterMac::mac>("mac")}};

/// Makes such values, each new.
inline constexpr ExtCommFactory<EvpnRouterMac> evpnRouterMacFactory;

/// The rule: one subtype of a type that the library has no rule for. Plug-ins with rules for others
/// of its subtypes share the type with this one.
class EvpnRouterMacRule final
    : public BgpParseExtCommOpenSubRule<EvpnRouterMacRule, extCommPktTypeTransEvpn,
                                        extCommPktSubtypeEvpnRouterMac, evpnRouterMacFactory> {
 public:
  inline static const Mox::Type type{
      "example::EvpnRouterMacRule", &BgpParseExtCommOpenSubTypeRuleBase::type, {}};
  using BgpParseExtCommOpenSubRule::BgpParseExtCommOpenSubRule;
};

/// The plug-in: puts the rule into every parser of the container.
class EvpnRouterMacSm final : public BgpParseExtCommPlugin<EvpnRouterMacSm, EvpnRouterMacRule> {
 public:
  inline static const BgpParseExtCommPluginType type{"example::EvpnRouterMacSm"};
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};

}  // namespace example

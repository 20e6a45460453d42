// Parsers and registries, for all tests of parsing.
#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <thread>

#include "agent/FeatureToggles.h"
#include "community/ZoBgpCommunityDedupTable.h"
#include "ip6/ExtCommIp6DedupTable.h"
#include "parse/BgpParseExtComm.h"
#include "parse/BgpParseExtCommColor.h"
#include "tests/AllocationCounter.h"
#include "tests/Texts.h"

namespace Routing::Bgp {

using Control = BgpParseExtCommControl;
using OpaqueRule = BgpParseExtCommTransOpaqueRule;
using OpaqueSubtype = BgpExtCommPktSubtypeTransOpaque;

/// A new parser, filled by the registry's plug-ins if there is one.
inline auto newParser(const BgpParseExtCommRuleCollections::Ptr& registry = nullptr) {
  return bgpParseExtendedCommunityRuleFactory(Control(registry));
}

/// A container with the library's plug-ins, and what it holds.
struct Parsing : testing::Test {
  const BgpParseExtCommContainerSm::Ptr container = bgpParseExtCommContainerSmFactory();
  const BgpParseExtCommRuleCollections::Ptr registry = container->parseExtCommRuleCollections();
  const BgpParseExtendedCommunityRule::Ptr parser = container->extCommParser();
};

/// How many rules a registry names, of all kinds.
inline std::size_t registered(const BgpParseExtCommRuleCollections::Ptr& registry) {
  std::size_t rules = 0;
#define ZOBGP_KIND(Kind, ...) rules += registry->instances<kind::Kind>().size();
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"
  return rules;
}

/// Objects of the type.
inline std::size_t alive(const std::string& type) { return Mox::allocationCount(type).objects; }

/// Builds plain objects of a mark, or leaves that to the level above when `act` says no.
template <class Base>
struct MarkRule final : Base {
  using Base::Base;
  Mox::Ptr<typename Base::Object> inhale(const typename Base::Content& content) const override {
    if (act && !act()) return nullptr;
    return Mox::makeNew<typename Base::Object>(extCommClassificationEvpn, content);
  }
  std::function<bool()> act;
};

}  // namespace Routing::Bgp

// The plug-in pack: what it changes in a parser, and all that it leaves as it is.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <thread>

#include "community/ZoBgpCommunityDedupTable.h"
#include "examples/evpn-router-mac/EvpnRouterMac.h"
#include "kinds/ZoBgpKindPack.h"
#include "kinds/ZoBgpKindText.h"
#include "tests/Texts.h"

namespace Routing::Bgp {
namespace {

using Container = BgpParseExtCommContainerSm::Ptr;

struct Pack : testing::Test {
  const Container core = bgpParseExtCommContainerSmFactory();
  const Container packed = bgpParseExtCommContainerSmFactory();
  const BgpParseExtCommControl control{packed->parseExtCommRuleCollections()};
};

auto parse(const Container& container, const ExtCommContent& content) {
  return container->extCommParser()->parseExtendedCommunity(content);
}
auto parse(const Container& container, U32 octets) {
  return parse(container, ExtCommContent(U64(octets) << 48 | 0x0000FDE800000064));
}
auto parseIp6(const Container& container, U32 octets) {
  return container->extCommParser()->parseExtendedCommunityIp6(
      {U8(octets >> 8), U8(octets), {}, 100});
}

std::string className(const auto& comm) { return comm->fwkType().name(); }
// All texts of an object, under several formats.
template <class Comm>
std::string texts(const Mox::Ptr<Comm>& comm) {
  std::string text = comm->toStrep();
  for (const U32 format : {0, 4, 12, 28})
    text += '|' + comm->toStrepForPolicy(typename Comm::StrepFormat(format));
  return text;
}

// The subtypes of each type that get an object of the pack, its class, and the core's class.
struct Described {
  std::vector<U32> subtypes;
  std::string with, without;
};
// clang-format off
const std::map<U32, Described> describedTypes = {
    {0x00, {{0x05, 0x08, 0x09, 0x0a, 0x10}, "ExtCommDescribedAsNumber", "ExtCommAsNumber"}},
    {0x01, {{0x05, 0x07, 0x0a, 0x0b, 0x0c, 0x10}, "ExtCommDescribedIpv4Address", "ExtCommIpv4Address"}},
    {0x02, {{0x04, 0x05, 0x08, 0x09, 0x10}, "ExtCommDescribedAsNumber", "ExtCommAsNumber"}},
    {0x03, {{0x01, 0x03, 0x06}, "ExtCommDescribed", "ExtCommSubtyped"}},
    {0x06, {{0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x08, 0x09, 0x0a, 0x0b, 0x0c, 0x0d, 0x0e, 0x0f, 0x10, 0x15},
            "ExtCommDescribed", "ExtComm"}},
    {0x08, {{0x00}, "ExtCommDescribed", "ExtComm"}},
    {0x40, {{0x80}, "ExtCommDescribedAsNumber", "ExtCommAsNumber"}},
    {0x42, {{0x04}, "ExtCommDescribedAsNumber", "ExtCommAsNumber"}},
    {0x43, {{0x01}, "ExtCommDescribed", "ExtCommSubtyped"}},
    {0x80, {{0x06, 0x07, 0x08, 0x09, 0x0a, 0x0b}, "ExtCommDescribed", "ExtCommSubtyped"}},
    {0x81, {{0x08}, "ExtCommDescribed", "ExtCommSubtyped"}},
    {0x82, {{0x08}, "ExtCommDescribed", "ExtCommSubtyped"}}};
const Described describedIp6{{0x02, 0x03, 0x04, 0x0b, 0x0c, 0x10, 0x11, 0x12}, "ExtCommIp6Described", "ExtCommIp6Subtyped"};
// clang-format on

// A described object says by its canonical text what the content is; any other is as it was.
void compare(const auto& before, const auto& now, const Described* described, bool evpn) {
  const auto content = before->getContent();
  ASSERT_EQ(now->getContent(), content);
  if (!described) {
    ASSERT_EQ(row(className(now), now->classification(), texts(now)),
              row(className(before), before->classification(), texts(before)));
    return;
  }
  EXPECT_EQ(row(className(before), className(now)),
            row("Routing::Bgp::" + described->without, "Routing::Bgp::" + described->with));
  EXPECT_EQ(row(before->classification(), now->classification()),
            row("extCommClassificationUnSpecified",
                evpn ? "extCommClassificationEvpn" : "extCommClassificationUnSpecified"));
  EXPECT_EQ(U32(now->pktSubtype()), content.subtype());
  const std::string text = canonicalText(content),
                    octets = sizeof content == 8 ? ' ' + row(content) : "";
  const std::string show = '<' + text + octets + '>';
  EXPECT_EQ(texts(now), show + '|' + text + '|' + text + '|' + text + '|' + text);
}

TEST_F(Pack, DescribesWhatNoOtherRuleServes) {
  installKinds(*packed);
  for (U32 octets = 0; octets <= 0xffff; ++octets) {
    const auto type = describedTypes.find(octets >> 8);
    const bool described =
        type != describedTypes.end() && std::ranges::count(type->second.subtypes, octets & 0xff);
    compare(parse(core, octets), parse(packed, octets), described ? &type->second : nullptr,
            octets >> 8 == 6);
    const bool ip6 = octets < 0x100 && std::ranges::count(describedIp6.subtypes, octets);
    compare(parseIp6(core, octets), parseIp6(packed, octets), ip6 ? &describedIp6 : nullptr, false);
  }
}

// A plug-in from outside comes before the pack or behind it, the parser before or behind both.
TEST_F(Pack, SharesEvpnWithOtherPlugins) {
  const auto mac = [&] {
    packed->extCommParserSmsEnq(Mox::makeNew<example::EvpnRouterMacSm>(control.ruleCollections()));
  };
  for (const bool macFirst : {true, false}) {
    if (macFirst) mac();
    const U32 pack = installKinds(*packed);
    if (!macFirst) mac();
    for (const bool parserFirst : {true, false}) {
      if (!parserFirst) {
        packed->extCommParserDel();
        packed->extCommParserIs(control);
      }
      EXPECT_EQ(row(className(parse(packed, 0x0603)), className(parse(packed, 0x0600)),
                    className(parse(packed, 0x0607))),
                "example::EvpnRouterMac Routing::Bgp::ExtCommDescribed Routing::Bgp::ExtComm")
          << macFirst << parserFirst;
    }
    // The pack is asked again for a parser that is withdrawn: its rules are there.
    const auto parser = packed->extCommParser();
    const auto rule = [&] {
      return bgpParseExtCommOpenTypeRuleIs(*parser, extCommPktTypeTransEvpn)->subTypeRule(0);
    };
    const auto before = rule();
    packed->extCommParserDel();
    EXPECT_EQ(rule(), before);
    // A parser of later knows nothing of plug-ins that are gone.
    packed->extCommParserSmsDel(pack);
    packed->extCommParserSmsDel(macFirst ? pack - 1 : pack + 1);
    packed->extCommParserIs(control);
    EXPECT_EQ(className(parse(packed, 0x0600)), "Routing::Bgp::ExtComm");
    EXPECT_FALSE(packed->extCommParser()->typeRule(extCommPktTypeTransEvpn));
  }
}

constexpr KindField userFields[] = {{.name = "level", .bit = 0, .bits = 8},
                                    {.name = "value", .bit = 8, .bits = 40}};
// A table with a row of a user's own, whose texts go with their owner.
KindTable tableWith(const std::string& identifier) {
  const auto owner = std::make_shared<std::pair<std::string, Kind>>(identifier, Kind());
  owner->second = {.type = 0x06,
                   .subtype = 0x7f,
                   .name = "user",
                   .reference = "user",
                   .identifier = owner->first,
                   .fields = userFields,
                   .example = "067f010000000002"};
  return KindTable::builtIn().with({&owner->second, 1}, owner);
}

TEST_F(Pack, TakesTablesAtRunTimeAndKeepsThem) {
  const ExtCommContent content(0x067f030000000005);
  auto users = bgpParseExtCommContainerSmFactory();
  installKinds(*users);
  EXPECT_EQ(className(parse(users, content)), "Routing::Bgp::ExtComm");
  installKinds(*users, tableWith("users-first-kind-of-community"));
  const auto comm =
      ExtComm::dedupContent(extCommDedupTableFactory(users->extCommParser()).get(), content);
  users = nullptr;
  EXPECT_EQ(
      row(className(comm), comm->classification(), comm->toStrepForPolicy({})),
      "Routing::Bgp::ExtCommDescribed extCommClassificationEvpn users-first-kind-of-community:3:5");
  const auto* const described = dynamic_cast<const ExtCommDescribed*>(comm.get());
  EXPECT_EQ(row(described->kind()->identifier, described->field("level")->number(),
                described->field(1)->number(), bool(described->field("other")),
                bool(described->field(2))),
            "users-first-kind-of-community 3 5 0 0");
  EXPECT_EQ(canonicalText(content), "unknown-transitive:06:7f:03:00:00:00:00:05")
      << "built-in table";

  installKinds(*core, tableWith("second"));
  EXPECT_EQ(parse(core, content)->toStrepForPolicy({}), comm->toStrepForPolicy({})) << "first come";
  EXPECT_EQ(parse(core, 0x0600)->toStrepForPolicy({}), "mac-mobility:malformed:fd:e8:00:00:00:64");
  // No parser made these.
  const auto strange =
      Mox::makeNew<ExtCommDescribed>(extCommClassificationUnSpecified, ExtCommContent(7));
  EXPECT_EQ(row(strange->kind(), strange->toStrepForPolicy({}), bool(strange->field(0))),
            "0 unknown-transitive:00:00:00:00:00:00:00:07 0");
}

// ThreadSanitizer would tell.
TEST_F(Pack, PrintsWhileTablesAreInstalled) {
  installKinds(*packed);
  const auto comm = parse(packed, 0x0605);
  const auto text = comm->toStrep();
  std::thread printer([&] {
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(comm->toStrep(), text);
  });
  for (int i = 0; i < 20; ++i) installKinds(*packed, tableWith("user-" + std::to_string(i)));
  printer.join();
}

}  // namespace
}  // namespace Routing::Bgp

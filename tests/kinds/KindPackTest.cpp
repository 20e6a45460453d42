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

// Type and subtype of those that get an object of the pack.
constexpr U32 describedTypes[] = {
    0x0005, 0x0008, 0x0009, 0x000a, 0x0010, 0x0105, 0x0107, 0x010a, 0x010b, 0x010c, 0x0110, 0x0204,
    0x0205, 0x0208, 0x0209, 0x0210, 0x0301, 0x0303, 0x0306, 0x0600, 0x0601, 0x0602, 0x0603, 0x0604,
    0x0605, 0x0606, 0x0608, 0x0609, 0x060a, 0x060b, 0x060c, 0x060d, 0x060e, 0x060f, 0x0610, 0x0615,
    0x0800, 0x4080, 0x4204, 0x4301, 0x8006, 0x8007, 0x8008, 0x8009, 0x800a, 0x800b, 0x8108, 0x8208};
constexpr U32 describedIp6[] = {0x02, 0x03, 0x04, 0x0b, 0x0c, 0x10, 0x11, 0x12};
// The core's classes that know no meaning, and those of the pack in their place.
const std::map<std::string, std::string> describedClasses = {
    {"ExtComm", "ExtCommDescribed"},
    {"ExtCommSubtyped", "ExtCommDescribed"},
    {"ExtCommAsNumber", "ExtCommDescribedAsNumber"},
    {"ExtCommIpv4Address", "ExtCommDescribedIpv4Address"},
    {"ExtCommIp6Subtyped", "ExtCommIp6Described"}};

// A described object says by its canonical text what the content is; any other is as it was.
void compare(const auto& before, const auto& now, bool described) {
  const auto content = before->getContent();
  ASSERT_EQ(now->getContent(), content);
  if (!described) {
    ASSERT_EQ(row(className(now), now->classification(), texts(now)),
              row(className(before), before->classification(), texts(before)));
    return;
  }
  constexpr bool eight = sizeof content == 8;
  const std::string space = "Routing::Bgp::", none = "extCommClassificationUnSpecified";
  EXPECT_EQ(row(className(now), before->classification(), now->classification()),
            row(space + describedClasses.at(className(before).substr(space.size())), none,
                eight && content.type() == 6 ? "extCommClassificationEvpn" : none));
  EXPECT_EQ(U32(now->pktSubtype()), content.subtype());
  const std::string text = canonicalText(content), octets = eight ? ' ' + row(content) : "";
  const std::string show = '<' + text + octets + '>';
  EXPECT_EQ(texts(now), show + '|' + text + '|' + text + '|' + text + '|' + text);
}

TEST_F(Pack, DescribesWhatNoOtherRuleServes) {
  installKinds(*packed);
  for (U32 octets = 0; octets <= 0xffff; ++octets) {
    compare(parse(core, octets), parse(packed, octets), std::ranges::count(describedTypes, octets));
    compare(parseIp6(core, octets), parseIp6(packed, octets),
            std::ranges::count(describedIp6, octets));
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

#include "community-list/ZoBgpCommunityListImpl.h"
#include "community-list/internal/ZoBgpCommunityListFlatBodies.h"
#include "path/internal/ZoBgpCommunityTablesBodies.h"
#include "tests/community-list/Lists.h"
#include "tests/path/PathProperties.h"

namespace Routing::Bgp {
namespace {

/// `lists; reason@offset ... approach`
std::string outcome(const PathCommunities& path, const PathFaults& faults) {
  std::string text;
  path.forEachList([&](const auto& list) { text += list->toStrep() + ' '; });
  text += "; ";
  for (const PathFault& fault : faults)
    text += stringValue(fault.reason) + '@' + std::to_string(fault.offset) + ' ';
  return text + stringValue(faults.approach());
}

struct Paths : ListTest {
  PathCommunities path;
};

TEST_F(Paths, GiveListsFaultsAndTheApproach) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      // clang-format off
      {"nothing", "", "; none"}, {"others, one of them twice, one empty", "40010100 400200 40010100", "; none"},
      {"all types", "c02018 0000fc580000000100000002 0000fc580000000100000001 c01008 0002fde800000064 40010100"
       "c00804ffffff01 c01914 0002 20010db8000000000000000000000001 0007",
       "no-export [ <RouteTarget2ByteASN 65000:100 0x0002fde800000064> ] "
       "[ <extCommIp6PktTypeTransIpv6Address extCommIp6PktSubtypeRouteTarget addr=2001:db8::1 "
       "localAdmin=7> ] 64600:1:1 64600:1:2 ; none"},
      {"length of two octets", "d0080004fde80064", "65000:100 ; none"},
      {"a value twice is no fault", "c00808fde80064fde80064", "65000:100 ; none"},
      {"partial, and bits without use", "ef0804fde80064", "65000:100 ; none"},
      {"not transitive", "800804fde80064", "65000:100 ; wrongFlags@0 treatAsWithdraw"},
      {"not optional", "40010100 50080004fde80064", "65000:100 ; wrongFlags@4 treatAsWithdraw"},
      {"two faults of one attribute", "000803fde800", "; wrongFlags@0 malformedValue@0 treatAsWithdraw"},
      {"no octets", "c00800 c01000 c01900 c02000",
       "; malformedValue@0 malformedValue@3 malformedValue@6 malformedValue@9 treatAsWithdraw"},
      {"one octet too many", "c00805fde8006400 c0100900020000fc58000100",
       "; malformedValue@0 malformedValue@8 treatAsWithdraw"},
      {"two bandwidths", "c01010 4004fde800000001 4004fde800000002", "; malformedValue@0 treatAsWithdraw"},
      {"the first of two counts", "c00804fde80064 c00804fde80065 c00804fde80066",
       "65000:100 ; repeated@7 attributeDiscard"},
      {"also malformed", "c00801fd c00804fde80065", "; malformedValue@0 repeated@4 treatAsWithdraw"},
      {"no fault of the second", "c00804fde80064 400803fde800", "65000:100 ; repeated@7 attributeDiscard"},
      {"but its end", "c00804fde80064 c00804fde800", "65000:100 ; overrun@7 treatAsWithdraw"},
      {"overrun of another", "c00804fde80064 400204fde8", "65000:100 ; overrun@7 treatAsWithdraw"},
      {"overrun of a header", "c00804fde80064 d00800", "65000:100 ; overrun@7 treatAsWithdraw"}};
  // clang-format on
  for (const auto& [what, attributes, expected] : cases) {
    path = {};
    const Octets octets = hexOctets(attributes);
    EXPECT_EQ(outcome(path, tables->readAll(octets, path)), expected) << what;
    for (std::size_t cut = 0; cut <= octets.size(); ++cut)
      EXPECT_EQ(brokenRule(*tables, octets, cut), nullptr) << what << ", cut at " << cut;
  }
  path = {};
  EXPECT_EQ(tables->readAll(hexOctets("4c080100"), path).begin()->toStrep(),
            "Community attribute: flags 0x4c, expected optional and transitive");
}

TEST_F(Paths, TakeOneAttributeAtATimeAndWhatAPolicyMakes) {
  const Octets first = hexOctets("fde80064"), second = hexOctets("fde80065");
  constexpr auto type = BgpPathAttrType::community;
  EXPECT_FALSE(tables->read(BgpPathAttrType::asPath, first, path)) << "no list's business";
  const auto malformed = tables->read(type, std::span(first).first(3), path);
  EXPECT_EQ(malformed.value().approach(), PathFaultApproach::treatAsWithdraw);
  EXPECT_TRUE(path.empty());
  EXPECT_FALSE(tables->read(type, first, path));
  const auto repeated = tables->read(type, second, path);
  EXPECT_EQ(repeated.value().approach(), PathFaultApproach::attributeDiscard);
  EXPECT_EQ(row(malformed->offset, repeated->offset), "0 0") << "no headers";
  // A list that the path has already is the first for `readAll` too.
  EXPECT_EQ(outcome(path, tables->readAll(hexOctets("c00804fde80065"), path)),
            "65000:100 ; repeated@0 attributeDiscard");
  path.listIs(CommList::CommListIs()->dedup(tables->of<CommList>().lists()));
  EXPECT_TRUE(path.empty()) << "an attribute without communities is none";
}

// --- Many paths, of few communities, so that lists repeat.

TEST_F(Paths, AreTheSamePointersExactlyWhenTheyAreTheSameCommunities) {
  std::mt19937 random(8);
  std::map<std::map<U32, std::set<Octets>>, PathCommunities> known;
  // Makes, and lets go of, lists that are being read.
  const std::jthread other([&](const std::stop_token& end) {
    for (std::mt19937 same(8); !end.stop_requested();) {
      PathCommunities shared;
      tables->readAll(randomPath(same).octets, shared);
    }
  });
  for (int i = 0; i < 3000; ++i) {
    const RandomPath wanted = randomPath(random);
    PathCommunities read, again;
    ASSERT_FALSE(tables->readAll(wanted.octets, read));
    const std::size_t before = allocations;
    tables->readAll(wanted.octets, again);
    EXPECT_EQ(allocations, before) << "reading what is known allocates nothing";
    EXPECT_EQ(brokenRule(*tables, wanted.octets, random() % (wanted.octets.size() + 1)), nullptr);
    EXPECT_EQ(read.empty(), wanted.values.empty());
    EXPECT_EQ(known.try_emplace(wanted.values, read).first->second, read);
  }
  for (const auto& [values, one] : known)
    for (const auto& [others, two] : known) ASSERT_EQ(one == two, &one == &two);
}

// --- A list type that the library does not know.

struct OwnList;
struct OwnListTable final : Mox::Entity<OwnListTable, CommListDedupTableBase> {
  static const Mox::Type type;
  OwnListTable();
};
struct OwnListTraits {
  using Value = U32;
  using Table = OwnListTable;
  static constexpr auto attribute = BgpPathAttrType::reservedForDevelopment;
  struct Cached {
    Cached() = default;
    explicit Cached(const OwnList&) {}
  };
};
struct OwnList final : FlatCommList<OwnList, OwnListTraits> {
  static const Mox::Type type;
  static Ptr destash(MoxStash::StoreReference stored, const MoxStash::StoreManager& manager) {
    return destashCommList<OwnList, Value>(stored, manager);
  }
  std::string toStrep() const { return std::to_string(comms()); }
};
const Mox::Type OwnListTable::type{"OwnListTable", &CommListDedupTableBase::type, {}};
const Mox::Type OwnList::type{"OwnList", &MoxStash::DedupHandle::type, {}};
OwnListTable::OwnListTable() : Entity(Orv::DedupPlacement{OwnList::placeOfMember, nullptr}) {}

TEST(CommunityTables, TakeAFurtherListTypeInOnePlace) {
  EXPECT_THROW(CommunityTables(nullptr), Mox::RangeException);
  using Path = PathCommunitiesOf<CommList, OwnList, ExtCommIp6List>;
  const CommunityTablesOf<Path> tables;
  Path path, again;
  const Octets octets = hexOctets(
      "c0ff08 00000001 00000001 c00804fde80064 c01914 0002 20010db8000000000000000000000001 0007");
  EXPECT_FALSE(tables.readAll(octets, path));
  EXPECT_FALSE(tables.read(OwnList::pathAttribute, std::span(octets).subspan(3, 4), again));
  EXPECT_EQ(path.list<OwnList>()->comms(), 1u);
  EXPECT_EQ(path.list<OwnList>(), again.list<OwnList>());
  EXPECT_NE(path, again);
  // All list types, and a value, come back from a store.
  MoxStash::StoreWriter writer;
  std::vector<const void*> wanted, restored;
  const auto add = [&](const auto& object) { writer.add(object), wanted.push_back(object.get()); };
  path.forEachList(add);
  add(path.list<ExtCommIp6List>()->commVector()[0]);
  const MoxStash::FileStore store("test", writer.octets());
  for (MoxStash::StoredRoot root : store.roots()) {
    EXPECT_TRUE(tables.restore(root, store, [&](const auto& o) { restored.push_back(o.get()); }));
    root.type = 99;
    EXPECT_FALSE(tables.restore(root, store, [](const auto&) { FAIL() << "of no known type"; }));
  }
  EXPECT_EQ(restored, wanted);
}

}  // namespace
}  // namespace Routing::Bgp

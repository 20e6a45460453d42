// Standard and large lists, each by itself: names, flags, notations, snapshots, known lists.
#include <gtest/gtest.h>

#include <iomanip>
#include <set>
#include <sstream>

#include "community-list/ZoBgpCommunityList.h"
#include "tests/MemoryStore.h"

namespace Routing::Bgp {
namespace {

constexpr U32 noExport = 0xFFFFFF01, noAdvertise = 0xFFFFFF02, localAs = 0xFFFFFF03,
              gshut = 0xFFFF0000;

CommList::Ptr listOf(const std::vector<U32>& values) {
  auto list = CommList::CommListIs();
  for (const U32 value : values) list->commIs(value);
  return list;
}

TEST(CommList, TextsHashAndFlagsOfKnownLists) {
  const struct {
    std::vector<U32> appended;
    const char *numeric, *named;
    U32 hash;
  } cases[] = {
      {{}, "", "", 0},
      {{0}, "0:0", "internet", 0},
      {{5}, "0:5", "0:5", 0x667043ea},
      {{0xFFFFFF04}, "65535:65284", "65535:65284", 0x73e36af9},
      {{0xFFFFFFFF}, "65535:65535", "65535:65535", 0x21c088bc},
      {{0xFFFE0001}, "65534:1", "65534:1", 0x4355ae8b},
      {{0x00640005}, "100:5", "100:5", 0x6cad7312},
      {{gshut}, "65535:0", "GSHUT", 0x1d759c3d},
      {{noExport}, "65535:65281", "no-export", 0xd533f173},
      {{noAdvertise}, "65535:65282", "no-advertise", 0x83a53ccb},
      {{localAs}, "65535:65283", "local-as", 0xcf990452},
      {{5, 3, 5, 1}, "0:1 0:3 0:5", "0:1 0:3 0:5", 0x2c28ec16},
      {{noExport, 0}, "0:0 65535:65281", "internet no-export", 0xd533f173},
      {{localAs, noExport, gshut, 0x00010002},
       "1:2 65535:0 65535:65281 65535:65283",
       "1:2 GSHUT no-export local-as",
       0xd3beb90e},
  };
  for (const auto& [appended, numeric, named, hash] : cases) {
    const auto built = listOf(appended)->dedup(commListDedupTableFactory());
    const Mox::String wire = built->serialize();
    const std::vector<U8> octets(wire.begin() + 3, wire.end());
    const U64 end = 64 + octets.size();
    const MemoryStore store(CommList::Stored{64, end, end, 1, 0},
                            std::vector<U32>(built->values().begin(), built->values().end()));
    const auto read = CommList::fromWire(octets).list;
    for (const auto& list : {built, CommList::dedupStored(commListDedupTableFactory(), 0, store),
                             CommList::dedupWire(commListDedupTableFactory(), octets).list,
                             read ? read->dedup(commListDedupTableFactory()) : nullptr}) {
      if (!list) continue;  // an attribute without values is malformed
      EXPECT_EQ(list->commsStringForm(), numeric);
      EXPECT_EQ(list->commsWellKnownStringForm(), named);
      EXPECT_EQ(list->toStrep(), named);
      EXPECT_EQ(list->hash(), hash);
      const std::set<U32> values(appended.begin(), appended.end());
      EXPECT_EQ(list->noExport(), values.contains(noExport));
      EXPECT_EQ(list->noAdvertise(), values.contains(noAdvertise));
      EXPECT_EQ(list->noExportSubconfed(), values.contains(localAs));
      // Width, base and fill of a stream are for its numbers, not for our text.
      std::ostringstream out;
      out << std::hex << std::setfill('*') << std::setw(40) << list << CommList::PtrConst();
      EXPECT_EQ(out.str(), named);
    }
    if (appended.size() != 1) continue;
    EXPECT_EQ(CommList::getStringValue(appended[0]), numeric);
    EXPECT_EQ(CommList::wellKnownName(appended[0]), std::strcmp(named, numeric) ? named : "");
    ZoFmt::StackBackedBuffer<20, 1024> buffer;
    EXPECT_EQ(CommunityFormatter<true>::formatNotWellKnown(buffer, appended[0]),
              std::strlen(numeric));
    EXPECT_STREQ(buffer.text().data(), numeric) << "a zero stands behind the text";
  }
  EXPECT_EQ(listOf({5, 1})->dedup(commListDedupTableFactory())->serialize(),
            Mox::String("\xC0\x08\x08\0\0\0\1\0\0\0\5", 11));
}

TEST(LargeCommList, TextsHashAndWireOfKnownLists) {
  const std::tuple<Acl::CommunityValue, const char*, const char*, U32> ascending[] = {
      {{65000, 1, 2}, "65000:1:2", "65000:1:2", 0x32cc934c},
      {{65536, 0, 0}, "65536:0:0", "1.0:0:0", 0x7646f749},
      {{4200000000, 5, 6}, "4200000000:5:6", "64086.59904:5:6", 0x84ae4950}};
  const auto all = LargeCommList::LargeCommListIs();
  for (const auto& [value, plain, asdot, hash] : ascending) {
    all->commIs(value);
    const auto one = LargeCommList::LargeCommListIs();
    one->commIs(value);
    EXPECT_EQ(one->dedup(largeCommListDedupTableFactory())->hash(), hash);
    EXPECT_EQ(one->toStrep(), plain);
    EXPECT_EQ(LargeCommList::getStringValue(value), plain);
    EXPECT_EQ(LargeCommList::displayString(value, true), asdot);
  }
  EXPECT_EQ(LargeCommList::displayString({65535, 0, 9}, true), "65535:0:9");
  const auto list = all->dedup(largeCommListDedupTableFactory());
  EXPECT_EQ(list->toStrep(), "65000:1:2 65536:0:0 4200000000:5:6");
  EXPECT_EQ(list->serialize(), Mox::String("\xC0\x20\x24"
                                           "\0\0\xFD\xE8\0\0\0\1\0\0\0\2"
                                           "\0\1\0\0\0\0\0\0\0\0\0\0"
                                           "\xFA\x56\xEA\0\0\0\0\5\0\0\0\6",
                                           39));
  std::ostringstream out;
  out << std::hex << std::setw(40) << list << LargeCommList::PtrConst();
  EXPECT_EQ(out.str(), list->toStrep());
  EXPECT_EQ(list->commSnapshot()->toStrep(),
            "{65000:1:2: True, 65536:0:0: True, 4200000000:5:6: True}");
}

// Programs and people find these by name. A class has them besides those of its base.
const char reflected[] = R"(
ExtCommContent : value hash ;
ExtComm : classification content pktType pktSubtype transitive toStrep toStrepForPolicy
  formatDerivedType formatSubtype formatCommunityValue hash compare compareByContent ;
ExtCommAsNumber : fourByteAs asNumber localAdmin2Octets localAdmin4Octets formatAsNumber ;
ExtCommIpv4Address : ipv4Address localAdmin ;
ExtCommLinkBandwidth : bandwidth ;
ExtCommTunnelEncap : tunnelType ;
ExtCommColor : color firstCoBit secondCoBit ;
ExtCommOriginValidationState : state ;
ExtComm::StrepFormat : value valueIs ;
ExtCommDedupTable : dedupHashTable parseExtCommRule handleInitialized dumpState ;
ExtCommIp6Content : type subtype addr localAdmin ExtCommIp6Content ;
ExtCommIp6 : classification content pktType pktSubtype transitive toStrep toStrepForPolicy
  formatDerivedType formatSubtype hash compare compareByContent ;
ExtCommIp6::StrepFormat : value valueIs ;
ExtCommIp6DedupTable : dedupHashTable parseExtCommRule handleInitialized dumpState ;
CommList : comm commVectorSorted noExport noAdvertise noExportSubconfed commsStringForm
  commsWellKnownStringForm empty comms commIs commSnapshot getStringValue wellKnownName dedup
  serialize hash compare ;
LargeCommList : comm commVectorSorted commsStringForm displayString getStringValue empty comms commIs
  commSnapshot dedup serialize hash compare ;
ExtCommList : comm classificationList commVectorSorted totalCommunities totalTransitiveCommunities
  comms empty commsStringForm toStrep hash commIs append appendClassificationList
  expectedCommunityCountIs sortComms lookupExtComm commSnapshot dedup serialize
  sendNonTransExtComms compare snapshot commsWithoutClassificationStringForm getStringValue ;
ExtCommIp6List : comm classificationList commVectorSorted totalCommunities
  totalTransitiveCommunities comms empty commsStringForm toStrep hash commIs append
  appendClassificationList expectedCommunityCountIs sortComms lookupExtComm commSnapshot dedup
  serialize sendNonTransExtComms compare ;
ExtCommClassificationList : classification comm comms commVectorSorted toStrep hash commIs compare
  commSnapshot dedup ;
RtExtCommClassificationList : lifeTimeNotifier ;
ExtCommIp6ClassificationList : classification comm comms commVectorSorted toStrep hash commIs compare
  commSnapshot dedup ;
CommListSnapshot : comm ;
ExtCommListSnapshot : classificationList comm ;
ExtCommClassificationListSnapshot : classification comm ;
ExtCommIp6ListSnapshot : classificationList comm ;
ExtCommIp6ClassificationListSnapshot : classification comm ;
CommListDedupTableBase : initDedupTable dedupHashTable dedup dumpState ;
ExtCommListDedupTable : extCommClassificationListDedupTable notifyingRtExtCommListCollection
  rtExtCommListLifeTimeNotifiee rtExtCommClassificationListDedupTable handleInitialized ;
ExtCommIp6ListDedupTable : extComm extCommClassification handleInitialized ;
)";

TEST(Reflection, KnowsValuesListsAndTablesByName) {
  std::istringstream in(reflected);
  for (Mox::String type, name; in >> type >> name;) {
    std::set<Mox::String> expected, found;
    while (in >> name && name != ";") expected.insert(name);
    for (const auto& one : Mox::Type::find("Routing::Bgp::" + type)->attributes())
      found.insert(one.name);
    EXPECT_EQ(found, expected) << type;
  }
}

TEST(StackBackedBuffer, GrowsByItsRule) {
  // used, required -> max(min(2 x used, 1024), used + required)
  const std::size_t cases[][3] = {{0, 20, 20},     {20, 1, 40},     {20, 30, 50},
                                  {600, 10, 1024}, {1024, 8, 1032}, {5000, 1, 5001}};
  for (const auto& [used, required, capacity] : cases) {
    ZoFmt::StackBackedBuffer<20, 1024> buffer;
    std::memset(buffer.allocateSpace(used), 'x', used);
    buffer.written(used);
    buffer.allocateSpace(required);
    EXPECT_EQ(buffer.capacity(), capacity) << used << " + " << required;
    EXPECT_EQ(buffer.text(), Mox::String(used, 'x'));
  }
}

TEST(CommList, SnapshotIsACopyThatCanChange) {
  const auto snapshot =
      listOf({7, noExport, 1})->dedup(commListDedupTableFactory())->commSnapshot();
  EXPECT_TRUE(snapshot->hasNotificationActive());
  EXPECT_EQ(Mox::Type::read(*snapshot, "comm"), "{1: True, 7: True, 4294967041: True}");
  EXPECT_FALSE(snapshot->commDel(2)) << "was not there";
  EXPECT_TRUE(snapshot->commDel(7) && !snapshot->commHas(7));
  snapshot->commIs(1, false);
  EXPECT_TRUE(snapshot->commHas(1) && !snapshot->comm(1) && snapshot->comm(noExport));
  EXPECT_FALSE(snapshot->commDel(1)) << "the value it had";
  EXPECT_EQ(snapshot->comms(), (std::map<U32, bool>{{noExport, true}}));
  snapshot->commDelAll();
  EXPECT_TRUE(snapshot->comms().empty());
}

TEST(CommListDeathTest, FlagsAreOfInternedLists) {
  const U8 octets[] = {0, 0, 0, 1};
  const auto sorted = CommList::fromWire(octets).list;
  for (const auto flag :
       {&CommList::noExport, &CommList::noAdvertise, &CommList::noExportSubconfed})
    EXPECT_DEATH((*sorted.*flag)(),
                 ": __null == \\( this \\) \\|\\| \\( this \\)->dedupState\\(\\) != "
                 "Orv::dedupHandleStateNeverDeduped\\(\\)\n");
}

}  // namespace
}  // namespace Routing::Bgp

// Standard and large lists, each by itself: names, flags, notations, snapshots, known lists.
#include <fstream>

#include "Lists.h"

namespace Routing::Bgp {
namespace {

constexpr U32 noExport = 0xFFFFFF01, noAdvertise = 0xFFFFFF02, localAs = 0xFFFFFF03,
              gshut = 0xFFFF0000;

struct CommListTest : ListsOf<Standard> {};
using CommListDeathTest = CommListTest;
struct LargeCommListTest : ListsOf<Large> {};

template <class List, class Value = U32>
auto listOf(const std::vector<Value>& values) {
  auto list = Mox::makeNew<List>();
  for (const Value& value : values) list->commIs(value);
  return list;
}

TEST_F(CommListTest, TextsHashAndFlagsOfKnownLists) {
  const std::tuple<std::vector<U32>, const char*, const char*, U32> cases[] = {
      // clang-format off
      {{}, "", "", 0}, {{0}, "0:0", "internet", 0}, {{5}, "0:5", "0:5", 0x667043ea},
      {{0xFFFFFF04}, "65535:65284", "65535:65284", 0x73e36af9},
      {{0xFFFFFFFF}, "65535:65535", "65535:65535", 0x21c088bc}, {{0xFFFE0001}, "65534:1", "65534:1", 0x4355ae8b},
      {{0x00640005}, "100:5", "100:5", 0x6cad7312}, {{gshut}, "65535:0", "GSHUT", 0x1d759c3d},
      {{noExport}, "65535:65281", "no-export", 0xd533f173},
      {{noAdvertise}, "65535:65282", "no-advertise", 0x83a53ccb},
      {{localAs}, "65535:65283", "local-as", 0xcf990452}, {{5, 3, 5, 1}, "0:1 0:3 0:5", "0:1 0:3 0:5", 0x2c28ec16},
      {{noExport, 0}, "0:0 65535:65281", "internet no-export", 0xd533f173},
      {{localAs, noExport, gshut, 0x00010002},
       "1:2 65535:0 65535:65281 65535:65283", "1:2 GSHUT no-export local-as", 0xd3beb90e}};
  // clang-format on
  for (const auto& [appended, numeric, named, hash] : cases) {
    const std::set<U32> values(appended.begin(), appended.end());
    const auto expected =
        row(numeric, '|', named, '|', named, '|', named, '>', named, hash,
            values.contains(noExport), values.contains(noAdvertise), values.contains(localAs));
    const auto octetsOf = [&](const auto& list) {
      Mox::String appended = "> ";
      list->appendCommsWellKnownStringForm(appended);
      EXPECT_EQ(row(list->commsStringForm(), '|', list->commsWellKnownStringForm(), '|',
                    list->toStrep(), '|', streamed(list), appended, list->hash(), list->noExport(),
                    list->noAdvertise(), list->noExportSubconfed()),
                expected);
      return joined(contentsOf(*list));
    };
    // The same of lists from elsewhere, each made anew.
    MoxStash::StoreWriter writer;
    const auto stored = writer.add(listOf<CommList>(appended));
    const Octets octets = octetsOf(listOf<CommList>(appended)->dedup(table()));
    octetsOf(kind().dedupStored(stored, MoxStash::FileStore("NAME", writer.octets())));
    if (octets.empty()) continue;  // an attribute without values is malformed
    octetsOf(kind().dedupWire(octets).list);
    octetsOf(fromWire(octets).list->dedup(table()));
    if (appended.size() != 1) continue;
    EXPECT_EQ(CommList::wellKnownName(appended[0]), std::strcmp(named, numeric) ? named : "");
    ZoFmt::StackBackedBuffer<20, 1024> buffer;
    const U32 length = CommunityFormatter<true>::formatNotWellKnown(buffer, appended[0]);
    EXPECT_EQ(row(length, CommList::getStringValue(appended[0])),
              row(std::strlen(numeric), numeric));
    EXPECT_STREQ(buffer.text().data(), numeric) << "a zero stands behind the text";
  }
  EXPECT_EQ(streamed(CommList::PtrConst()) + streamed(LargeCommList::PtrConst()), "");
}

TEST_F(LargeCommListTest, TextsAndHashOfKnownLists) {
  const std::tuple<Acl::CommunityValue, const char*, const char*, U32> ascending[] = {
      // clang-format off
      {{65000, 1, 2}, "65000:1:2", "65000:1:2", 0x32cc934c}, {{65536, 0, 0}, "65536:0:0", "1.0:0:0", 0x7646f749},
      {{4200000000, 5, 6}, "4200000000:5:6", "64086.59904:5:6", 0x84ae4950}};
  // clang-format on
  std::vector<Acl::CommunityValue> all;
  for (const auto& [value, plain, asdot, hash] : ascending) {
    all.push_back(value);
    const auto one = listOf<LargeCommList>(std::vector{value})->dedup(table());
    EXPECT_EQ(row(one->toStrep(), List::getStringValue(value), List::displayString(value, true),
                  one->hash()),
              row(plain, plain, asdot, hash));
  }
  EXPECT_EQ(LargeCommList::displayString({65535, 0, 9}, true), "65535:0:9");
  const auto list = listOf<LargeCommList>(all)->dedup(table());
  EXPECT_EQ(streamed(list), "65000:1:2 65536:0:0 4200000000:5:6");
  EXPECT_EQ(list->commSnapshot()->toStrep(),
            "{65000:1:2: True, 65536:0:0: True, 4200000000:5:6: True}");
}

// Programs and people find these by name. A class has them besides those of its base.
TEST(Reflection, KnowsValuesListsAndTablesByName) {
  std::ifstream in("tests/community-list/reflected.txt");
  ASSERT_TRUE(in);
  for (Mox::String type, names; in >> type && getline(in, names);) {
    std::set<Mox::String> expected, found;
    std::istringstream words(names);
    for (Mox::String word; words >> word;) expected.insert(word);
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
    EXPECT_EQ(row(buffer.capacity(), buffer.text()), row(capacity, Mox::String(used, 'x')));
  }
}

TEST_F(CommListTest, SnapshotIsACopyThatCanChange) {
  const auto snapshot = listOf<CommList, U32>({7, noExport, 1})->dedup(table())->commSnapshot();
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

TEST_F(CommListDeathTest, FlagsAreOfInternedLists) {
  const auto sorted = fromWire(Octets{0, 0, 0, 1}).list;
  expectDeaths(
      ": __null == \\( this \\) \\|\\| \\( this \\)->dedupState\\(\\) != "
      "Orv::dedupHandleStateNeverDeduped\\(\\)\n",
      {[&] { sorted->noExport(); }, [&] { sorted->noAdvertise(); },
       [&] { sorted->noExportSubconfed(); }});
}

}  // namespace
}  // namespace Routing::Bgp

#include <gtest/gtest.h>

#include <iomanip>
#include <numeric>
#include <random>
#include <set>
#include <sstream>

#include "AllocationCounter.h"
#include "Mox/Trace.h"
#include "attr/ZoBgpGlobals.h"
#include "community-list/ZoBgpCommunityList.h"

namespace Routing::Bgp {
namespace {

constexpr U32 noExport = 0xFFFFFF01, noAdvertise = 0xFFFFFF02, localAs = 0xFFFFFF03;
constexpr U32 gshut = 0xFFFF0000;
using Values = std::vector<U32>;

class CommListTest : public testing::Test {
 protected:
  CommList::PtrConst interned(const Values& values) const {
    const auto list = CommList::CommListIs();
    for (const U32 value : values) list->commIs(value);
    return list->dedup(table);
  }
  CommListDedupTable::Ptr table = commListDedupTableFactory();
};

std::vector<U8> wireOf(const Values& values) {
  std::vector<U8> octets;
  for (const U32 value : values)
    for (const int shift : {24, 16, 8, 0}) octets.push_back(U8(value >> shift));
  return octets;
}

Mox::String hex(const Mox::String& octets) {
  std::ostringstream out;
  for (const char octet : octets)
    out << std::hex << std::setw(2) << std::setfill('0') << unsigned(U8(octet));
  return out.str();
}

TEST_F(CommListTest, TextHashFlagsAndWireOfKnownLists) {
  const struct {
    Values appended;
    const char* numeric;
    const char* named;
    std::optional<U32> hash;
    const char* wire;
  } cases[] = {
      {{}, "", "", 0, "c00800"},
      {{0}, "0:0", "internet", 0, "c0080400000000"},
      {{5, 3, 5, 1}, "0:1 0:3 0:5", "0:1 0:3 0:5", 0x2c28ec16, "c0080c000000010000000300000005"},
      {{noExport, 0},
       "0:0 65535:65281",
       "internet no-export",
       0xd533f173,
       "c0080800000000ffffff01"},
      {{0, 5}, "0:0 0:5", "internet 0:5", 0x667043ea, "c008080000000000000005"},
      {{5}, "0:5", "0:5", 0x667043ea, "c0080400000005"},
      {{1, 1}, "0:1", "0:1", {}, "c0080400000001"},
      {{1, 2, 2, 9}, "0:1 0:2 0:9", "0:1 0:2 0:9", {}, "c0080c000000010000000200000009"},
      {{0xFFFFFFFF, 0xFFFFFF04, 0x00640005},
       "100:5 65535:65284 65535:65535",
       "100:5 65535:65284 65535:65535",
       {},
       "c0080c00640005ffffff04ffffffff"},
      {{localAs, noExport, gshut, 0x00010002},
       "1:2 65535:0 65535:65281 65535:65283",
       "1:2 GSHUT no-export local-as",
       {},
       "c0081000010002ffff0000ffffff01ffffff03"},
      {{noAdvertise}, "65535:65282", "no-advertise", {}, "c00804ffffff02"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.named);
    const auto list = interned(c.appended);
    EXPECT_EQ(list->commsStringForm(), c.numeric);
    EXPECT_EQ(list->commsWellKnownStringForm(), c.named);
    EXPECT_EQ(list->toStrep(), c.named);
    if (c.hash) {
      EXPECT_EQ(list->hash(), *c.hash);
    }
    EXPECT_EQ(hex(list->serialize()), c.wire);
    if (!c.appended.empty()) {
      EXPECT_EQ(CommList::dedupWire(table, wireOf(c.appended)).list, list);
    }
    const std::set<U32> values(c.appended.begin(), c.appended.end());
    EXPECT_EQ(list->comms(), values.size());
    EXPECT_EQ(list->noExport(), values.count(noExport) == 1);
    EXPECT_EQ(list->noAdvertise(), values.count(noAdvertise) == 1);
    EXPECT_EQ(list->noExportSubconfed(), values.count(localAs) == 1);
    // Width, base and fill of a stream are for its numbers, not for our text.
    std::ostringstream out;
    out << std::hex << std::uppercase << std::setfill('*') << std::setw(40) << list;
    EXPECT_EQ(out.str(), c.named);
  }
  std::ostringstream out;
  out << CommList::PtrConst();
  EXPECT_EQ(out.str(), "");
}

TEST_F(CommListTest, SingleValues) {
  const struct {
    U32 value;
    const char* numeric;
    const char* name;
  } cases[] = {{0, "0:0", "internet"},
               {0x00640005, "100:5", ""},
               {0xFFFFFFFF, "65535:65535", ""},
               {gshut, "65535:0", "GSHUT"},
               {noExport, "65535:65281", "no-export"},
               {noAdvertise, "65535:65282", "no-advertise"},
               {localAs, "65535:65283", "local-as"},
               {0xFFFFFF04, "65535:65284", ""},
               {0xFFFE0001, "65534:1", ""}};
  for (const auto& c : cases) {
    EXPECT_EQ(CommList::getStringValue(c.value), c.numeric);
    EXPECT_EQ(CommList::wellKnownName(c.value), c.name);
    ZoFmt::StackBackedBuffer<20, 1024> buffer;
    EXPECT_EQ(CommunityFormatter<true>::formatNotWellKnown(buffer, c.value),
              std::strlen(c.numeric));
    EXPECT_STREQ(buffer.text().data(), c.numeric) << "a zero stands behind the text";
  }
}

TEST(StackBackedBuffer, GrowsByItsRule) {
  // used, required -> max(min(2 x used, 1024), used + required)
  const struct {
    std::size_t used, required, capacity;
  } cases[] = {{0, 20, 20},     {20, 1, 40},     {20, 30, 50},
               {600, 10, 1024}, {1024, 8, 1032}, {5000, 1, 5001}};
  for (const auto& c : cases) {
    ZoFmt::StackBackedBuffer<20, 1024> buffer;
    std::memset(buffer.allocateSpace(c.used), 'x', c.used);
    buffer.written(c.used);
    buffer.allocateSpace(c.required);
    EXPECT_EQ(buffer.capacity(), c.capacity) << c.used << " + " << c.required;
    EXPECT_EQ(buffer.text(), Mox::String(c.used, 'x'));
  }
}

// Lists of random values, appended in random order with repeats, against a std::set.
TEST_F(CommListTest, OrderAndRepeatsDoNotMatter) {
  std::mt19937 random(3);
  for (const U32 size : {1u, 2u, 7u, 40u, 300u, 16383u}) {
    Values values(size);
    for (U32& value : values) value = random() % 3 ? random() : random() % 9 + 0xFFFFFF00;
    const std::set<U32> model(values.begin(), values.end());
    const auto list = interned(values);
    std::shuffle(values.begin(), values.end(), random);
    EXPECT_EQ(interned(values), list);
    ASSERT_TRUE(
        std::equal(model.begin(), model.end(), list->values().begin(), list->values().end()));
    for (int i = 0; i < 100; ++i) {
      const U32 value = i % 2 ? values[random() % size] : random();
      EXPECT_EQ(list->comm(value), model.count(value) == 1);
    }
    Mox::String text;
    for (const U32 value : model) {
      text += text.empty() ? "" : " ";
      text += std::to_string(value >> 16) + ":" + std::to_string(value & 0xFFFF);
    }
    EXPECT_EQ(list->commsStringForm(), text) << "of any length";
    const auto wire = wireOf(values);
    const auto read = CommList::dedupWire(table, wire);
    EXPECT_EQ(read.list, list);
    EXPECT_EQ(read.repeats, values.size() - model.size());
    EXPECT_EQ(CommList::lookupWire(table, wire).list, list);
    const auto fresh = CommList::fromWire(wire);
    ASSERT_TRUE(fresh);
    EXPECT_EQ(fresh.list->hash(), list->hash());
    EXPECT_TRUE(fresh.list->compare(list.get()));
    EXPECT_FALSE(fresh.list->isDeduped());
    EXPECT_EQ(fresh.list->dedup(table), list);
  }
  EXPECT_EQ(table->dedupHashTable()->members(), 0u);
}

TEST_F(CommListTest, AHitAllocatesNothing) {
  for (const U32 size : {1u, 40u, 256u, 257u, 16383u}) {
    Values values(size);
    std::iota(values.rbegin(), values.rend(), 65000u << 16);  // descending: must be sorted
    const auto wire = wireOf(values);
    const auto list = CommList::dedupWire(table, wire).list;
    ASSERT_TRUE(list && list->isDeduped());
    const std::size_t before = allocations;
    EXPECT_EQ(CommList::dedupWire(table, wire).list, list);
    EXPECT_EQ(CommList::lookupWire(table, wire).list, list);
    EXPECT_EQ(allocations, before);
  }
  const auto miss = CommList::lookupWire(table, wireOf({1}));
  EXPECT_TRUE(!miss && !miss.fault);
  EXPECT_EQ(table->dedupHashTable()->members(), 0u);
}

TEST_F(CommListTest, FlagsAreThereAlsoForListsFromTheWire) {
  const auto list = CommList::dedupWire(table, wireOf({localAs, 7, noExport})).list;
  EXPECT_TRUE(list->noExport() && list->noExportSubconfed() && !list->noAdvertise());
}

TEST(WireFaults, SayWhatWhereAndWhatWasExpected) {
  const struct {
    std::size_t octets;
    const char* text;
  } cases[] = {{0, "Community attribute, offset 0: no octets, expected at least one value of 4"},
               {1, "Community attribute, offset 0: 1 octet, expected a value of 4"},
               {11, "Community attribute, offset 8: 3 octets, expected a value of 4"},
               {65536,
                "Community attribute, offset 65535: 1 octet beyond the 65535 that an attribute can "
                "have"}};
  const auto table = commListDedupTableFactory();
  for (const auto& c : cases) {
    const std::vector<U8> octets(c.octets);
    for (const auto& fault :
         {CommList::fromWire(octets).fault, CommList::dedupWire(table, octets).fault,
          CommList::lookupWire(table, octets).fault}) {
      ASSERT_TRUE(fault) << c.text;
      EXPECT_EQ(fault->toStrep(), c.text);
    }
  }
}

TEST_F(CommListTest, FreezingIsOnceAndForAll) {
  const auto list = CommList::CommListIs();
  for (const U32 value : {9u, 9u, 1u}) list->commIs(value);
  std::ostringstream out;
  out << list.get();
  EXPECT_EQ(out.str(), "0:9 0:9 0:1") << "a list being built prints as it is";
  EXPECT_FALSE(list->commVectorSorted());
  const auto frozen = list->dedup(table);
  EXPECT_EQ(frozen, list);
  EXPECT_EQ(list->dedup(table), list) << "once more gives itself";
  EXPECT_EQ(Mox::Type::read(*frozen, "commsStringForm"), "0:1 0:9");
  EXPECT_EQ(Mox::Type::read(*frozen, "isDeduped"), "True");
  EXPECT_EQ(Mox::Type::find("Routing::Bgp::CommList"), &frozen->fwkType());
}

TEST_F(CommListTest, MemoryIsExactAndGivenBack) {
  const auto storage = [] { return Mox::allocationCount("U32 (vector storage)").octets; };
  const std::size_t before = storage();
  auto list = interned({1, 2, 3, 3, 3, 2, 1});
  EXPECT_EQ(storage() - before, 3 * sizeof(U32));
  auto empty = interned({});
  EXPECT_EQ(storage() - before, 3 * sizeof(U32)) << "an empty list has no storage";
  list = empty = nullptr;
  EXPECT_EQ(storage(), before);
  EXPECT_EQ(Mox::allocationCount("Routing::Bgp::CommList").objects, 0u);
}

TEST_F(CommListTest, SnapshotIsACopyThatCanChange) {
  auto list = interned({7, noExport, 1});
  const auto snapshot = list->commSnapshot();
  list = nullptr;  // the copy does not need it
  EXPECT_TRUE(snapshot->hasNotificationActive());
  EXPECT_EQ(Mox::Type::read(*snapshot, "comm"), "{1: True, 7: True, 4294967041: True}");
  EXPECT_EQ(snapshot->comms(), (std::map<U32, bool>{{1, true}, {7, true}, {noExport, true}}));
  EXPECT_FALSE(snapshot->commDel(2)) << "was not there";
  EXPECT_TRUE(snapshot->commDel(7));
  EXPECT_FALSE(snapshot->commHas(7));
  snapshot->commIs(1, false);
  EXPECT_TRUE(snapshot->commHas(1));
  EXPECT_FALSE(snapshot->comm(1));
  EXPECT_FALSE(snapshot->commDel(1)) << "the value it had";
  snapshot->commIs(5, true);
  const auto edited = CommList::CommListIs();
  for (const auto& [value, flag] : snapshot->comms()) edited->commIs(value);
  EXPECT_EQ(edited->dedup(table)->toStrep(), "0:5 no-export");
  snapshot->commDelAll();
  EXPECT_TRUE(snapshot->comms().empty());
}

// A table that placed by part of the content, or by what everybody knows, could be flooded.
TEST_F(CommListTest, PlacesDependOnAllOfTheContentAndOnTheSeed) {
  std::set<U64> places;
  for (U32 last = 100; last < 10100; ++last) {
    const Values values{1, 2, 3, 4, 5, last};
    places.insert(CommList::placeOfMember(*interned(values), 1));
    places.insert(CommList::placeOfMember(*interned(values), 2));
  }
  EXPECT_GT(places.size(), 19990u) << "of 2^32 places, hardly one twice";
}

TEST_F(CommListTest, TablesAreThreadSafeWhenTheAgentIs) {
  using Orv::DedupHashTableUnorderedSet;
  const auto as = [](bool threadSafe) {
    return DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(threadSafe)->octets();
  };
  EXPECT_NE(as(true), as(false));
  EXPECT_EQ(table->dedupHashTable()->octets(), as(ZoBgpGlobals::multiThreaded()));
}

TEST_F(CommListTest, TablesDump) {
  const auto list = interned({1});
  const auto context = Mox::makeNew<Orv::DumpContext>();
  table->dumpState(context, 0);
  table->dumpState(context, 3);
  EXPECT_EQ(context->text(), "DedupTable  members: 1\n   DedupTable     members: 1\n");
}

// A store in memory; offsets count from its start.
class MemoryStore final : public MoxStash::StoreManager {
 public:
  const void* translate(MoxStash::StoreReference at, U64 size, U32 alignment) const override {
    const U64 end = sizeof words_;
    return at % alignment == 0 && at <= end && size <= end - at
               ? reinterpret_cast<const char*>(words_) + at
               : nullptr;
  }
  // A list record at 0, its values from 64 on.
  explicit MemoryStore(const Values& values, bool sorted) {
    const U64 begin = 64, end = begin + values.size() * sizeof(U32);
    record() = {begin, end, end, sorted, 0};
    std::copy(values.begin(), values.end(), reinterpret_cast<U32*>(words_) + begin / 4);
  }
  StoredCommList& record() { return *reinterpret_cast<StoredCommList*>(words_); }

 private:
  alignas(8) char words_[256] = {};
};

TEST_F(CommListTest, DestashKeepsOrderAndFlagAndDoesNotIntern) {
  static std::vector<Mox::String> traced;
  Mox::traceSinkIs([](U32 level, std::string_view line) {
    EXPECT_EQ(level, 8u);
    traced.emplace_back(line);
  });
  Mox::traceLevel = 8;
  const auto unsorted = CommList::destash(0, MemoryStore({9, 1, 9}, false));
  Mox::traceLevel = 0;
  Mox::traceSinkIs(nullptr);
  EXPECT_EQ(traced, (std::vector<Mox::String>{"Destashing Routing::Bgp::CommList",
                                              "  destashed: 0:9 0:1 0:9"}));
  EXPECT_FALSE(unsorted->commVectorSorted());
  EXPECT_EQ(unsorted->toStrep(), "0:9 0:1 0:9");
  EXPECT_EQ(unsorted->dedup(table)->toStrep(), "0:1 0:9");

  const auto sorted = CommList::destash(0, MemoryStore({1, noExport}, true));
  EXPECT_TRUE(sorted->commVectorSorted());
  EXPECT_FALSE(sorted->isDeduped());
  EXPECT_TRUE(sorted->dedup(table)->noExport()) << "flags are made when it is interned";
  EXPECT_EQ(CommList::destash(0, MemoryStore({}, true))->comms(), 0u);
}

TEST_F(CommListTest, DamagedRecordsAreTheStoresError) {
  const struct {
    const char* what;
    void (*damage)(StoredCommList&);
  } cases[] = {{"end before begin", [](auto& r) { r.end = r.begin - 4; }},
               {"half a value", [](auto& r) { r.end -= 2; }},
               {"beyond the store", [](auto& r) { r.end = 260; }},
               {"far beyond the store", [](auto& r) { r.end = ~U64{0} - 3; }},
               {"not aligned", [](auto& r) { r.begin += 2, r.end += 2; }},
               {"not as sorted as it says", [](auto& r) { r.commVectorSorted = 1; }}};
  for (const auto& c : cases) {
    MemoryStore store({9, 1, 9}, false);
    c.damage(store.record());
    EXPECT_THROW(CommList::destash(0, store), MoxStash::StoreException) << c.what;
  }
  EXPECT_THROW(CommList::destash(252, MemoryStore({}, false)), MoxStash::StoreException);
}

TEST(CommListDeathTest, MisuseEndsTheProcess) {
  const auto table = commListDedupTableFactory();
  const auto list = CommList::CommListIs();
  list->commIs(2);
  list->commIs(1);
  const auto shared = CommList::CommListIs();
  shared->dedup(table);
  const auto stored = CommList::destash(0, MemoryStore({1}, true));
  const char* const unsorted = ": commVectorSorted\\(\\)\n";
  const char* const neverDeduped =
      ": __null == \\( this \\) \\|\\| \\( this \\)->dedupState\\(\\) != "
      "Orv::dedupHandleStateNeverDeduped\\(\\)\n";
  EXPECT_DEATH(list->comm(1), unsorted);
  EXPECT_DEATH(list->hash(), unsorted);
  EXPECT_DEATH(list->compare(shared.get()), unsorted);
  EXPECT_DEATH(list->serialize(), unsorted);
  EXPECT_DEATH(list->commSnapshot(), unsorted);
  EXPECT_DEATH(table->dedup(list), unsorted) << "the table takes frozen lists only";
  EXPECT_DEATH(shared->commIs(1), ": !commVectorSorted\\(\\)\n");
  EXPECT_DEATH(stored->noExport(), neverDeduped) << "sorted, but not interned";
  EXPECT_DEATH(list->noAdvertise(), neverDeduped);
  EXPECT_DEATH(list->noExportSubconfed(), neverDeduped);
}

}  // namespace
}  // namespace Routing::Bgp

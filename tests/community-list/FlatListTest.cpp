// Standard and large lists alike. A further list type is a further traits struct here.
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "Mox/Trace.h"
#include "attr/ZoBgpGlobals.h"
#include "community-list/ZoBgpCommunityList.h"
#include "tests/AllocationCounter.h"
#include "tests/MemoryStore.h"

namespace Routing::Bgp {
namespace {

/// A value as its words on the wire; the order of values is that of these.
template <class List>
using Words = std::array<U32, sizeof(typename List::Value) / sizeof(U32)>;

struct Standard {
  using List = CommList;
  static constexpr auto makeTable = &commListDedupTableFactory;
  static constexpr char attribute = 8;
  static constexpr const char *faults = "Community attribute, offset ",
                              *storage = "U32 (vector storage)";
  static Mox::String text(const Words<List>& value) {
    return std::to_string(value[0] >> 16) + ':' + std::to_string(value[0] & 0xFFFF);
  }
};
struct Large {
  using List = LargeCommList;
  static constexpr auto makeTable = &largeCommListDedupTableFactory;
  static constexpr char attribute = 32;
  static constexpr const char *faults = "Large Community attribute, offset ",
                              *storage = "Acl::CommunityValue (vector storage)";
  static Mox::String text(const Words<List>& value) {
    return std::to_string(value[0]) + ':' + std::to_string(value[1]) + ':' +
           std::to_string(value[2]);
  }
};
using ListTypes = testing::Types<Standard, Large>;

template <class Traits>
class FlatList : public testing::Test {
 public:
  using List = typename Traits::List;
  using Value = Words<List>;
  using Values = std::vector<Value>;
  static constexpr U32 size = sizeof(Value), most = 65535 / size;

  static auto plain(const Value& words) { return std::bit_cast<typename List::Value>(words); }
  auto building(const Values& values) const {
    const auto list = Mox::makeNew<List>();
    for (const Value& value : values) list->commIs(plain(value));
    return list;
  }
  auto interned(const Values& values) const { return building(values)->dedup(table); }
  /// Values with these as their last words.
  Values numbered(std::initializer_list<U32> numbers) const {
    Values values;
    for (const U32 number : numbers) values.emplace_back().back() = number;
    return values;
  }
  /// Random values, more of them than differ.
  Values drawn(std::size_t count) {
    Values values(count);
    for (Value& value : values) {
      for (U32& word : value) word = random() % 3 ? random() : random() % 9 - 4;
      if (random() % 3 == 0) value = values[random() % count];
    }
    return values;
  }
  std::vector<U8> wireOf(const Values& values) const {
    std::vector<U8> wire;
    for (const Value& value : values)
      for (const U32 word : value)
        for (const int shift : {24, 16, 8, 0}) wire.push_back(U8(word >> shift));
    return wire;
  }
  Mox::String textOf(const Values& values) const {
    Mox::String text;
    for (const Value& value : values) text += (text.empty() ? "" : " ") + Traits::text(value);
    return text;
  }
  static auto store(const Values& values, bool sorted) {
    const U64 end = 64 + values.size() * size;
    return MemoryStore(typename List::Stored{64, end, end, sorted, 0}, values);
  }

  std::mt19937 random{3};
  typename List::Table table = Traits::makeTable();
};
TYPED_TEST_SUITE(FlatList, ListTypes);

TYPED_TEST(FlatList, AgreesWithASetOfItsValues) {
  using List = typename TypeParam::List;
  const auto storage = [] { return Mox::allocationCount(TypeParam::storage).octets; };
  for (const U32 count : {0u, 1u, 2u, 7u, 40u, 300u, this->most}) {
    auto values = this->drawn(count);
    const std::set model(values.begin(), values.end());
    const typename TestFixture::Values ascending(model.begin(), model.end());
    const auto list = this->interned(values);
    std::shuffle(values.begin(), values.end(), this->random);
    EXPECT_EQ(this->interned(values), list) << "order and repeats do not matter";
    EXPECT_EQ(storage(), ascending.size() * this->size) << "exact";
    EXPECT_TRUE(std::equal(ascending.begin(), ascending.end(), list->values().begin(),
                           list->values().end(),
                           [this](auto& a, auto& b) { return this->plain(a) == b; }));
    for (const auto& probes : {this->drawn(100), values})
      for (const auto& probe : probes)
        EXPECT_EQ(list->comm(this->plain(probe)), model.contains(probe));
    Orv::HashMix mix;
    for (const auto& value : ascending)
      for (const U32 word : value) mix.feed(word);
    EXPECT_EQ(list->hash(), count ? mix.finish() : 0);
    EXPECT_EQ(Mox::Type::read(*list, "commsStringForm"), this->textOf(ascending));

    auto wire = this->wireOf(ascending);
    std::vector<U8> handedOut;
    list->forEachValue([&](const auto& value) {
      for (const U8 octet : wireOctets(value)) handedOut.push_back(octet);
    });
    EXPECT_EQ(handedOut, wire);
    const bool extended = wire.size() > 255;
    Mox::String sent{char(extended ? 0xD0 : 0xC0), TypeParam::attribute, char(wire.size() >> 8)};
    if (!extended) sent.pop_back();
    sent += char(wire.size());
    EXPECT_EQ(list->serialize(), sent.append(wire.begin(), wire.end()));
    if (!count) continue;  // an attribute without values is malformed
    wire = this->wireOf(values);
    const auto read = List::dedupWire(this->table, wire);
    EXPECT_EQ(read.list, list);
    EXPECT_EQ(read.repeats, values.size() - model.size());
    const auto found = List::lookupWire(this->table, wire);
    EXPECT_TRUE(found.list == list && found.repeats == read.repeats);
    std::sort(values.begin(), values.end());
    const auto [fresh, fault, repeats] = List::fromWire(this->wireOf(values));
    EXPECT_TRUE(fresh->compare(list.get()) && !fresh->isDeduped());
    EXPECT_TRUE(fresh->dedup(this->table) == list && repeats == read.repeats);
    EXPECT_TRUE(fresh->hasNotificationActive() && list->hasNotificationActive());
    EXPECT_EQ(this->building(values)->dedup(TypeParam::makeTable())->hash(), list->hash());
  }
  EXPECT_FALSE(this->interned(this->numbered({1, 2}))
                   ->compare(this->interned(this->numbered({1, 3})).get()));
  EXPECT_EQ(storage(), 0u);
  EXPECT_EQ(this->table->dedupHashTable()->members(), 0u);
  EXPECT_EQ(Mox::allocationCount(List::type.name()).objects, 0u);
}

TYPED_TEST(FlatList, AHitAllocatesNothing) {
  using List = typename TypeParam::List;
  for (const U32 count : {1u, 40u, 1024 / this->size, 1024 / this->size + 1, this->most}) {
    typename TestFixture::Values descending(count);
    for (U32 at = 0; at < count; ++at) descending[at].back() = count - at;
    const auto wire = this->wireOf(descending);
    const auto missed = List::lookupWire(this->table, wire);
    EXPECT_TRUE(!missed && !missed.fault);
    const auto list = List::dedupWire(this->table, wire).list;
    EXPECT_EQ(list, this->interned(descending));
    const std::size_t before = allocations;
    EXPECT_EQ(List::dedupWire(this->table, wire).list, list);
    EXPECT_EQ(List::lookupWire(this->table, wire).list, list);
    EXPECT_EQ(allocations, before);
  }
}

TYPED_TEST(FlatList, WireFaultsSayWhatWhereAndWhatWasExpected) {
  using List = typename TypeParam::List;
  const Mox::String size = std::to_string(this->size), expected = ", expected a value of " + size;
  const std::pair<std::size_t, Mox::String> cases[] = {
      {0, "0: no octets, expected at least one value of " + size},
      {1, "0: 1 octet" + expected},
      {this->size + 3, size + ": 3 octets" + expected},
      {65536, "65535: 1 octet beyond the 65535 that an attribute can have"}};
  for (const auto& [length, text] : cases) {
    const std::vector<U8> wire(length);
    for (const auto& fault : {List::fromWire(wire).fault, List::dedupWire(this->table, wire).fault,
                              List::lookupWire(this->table, wire).fault})
      EXPECT_EQ(fault.value().toStrep(), TypeParam::faults + text);
  }
}

// A table that placed by part of the content, or by what everybody knows, could be flooded.
TYPED_TEST(FlatList, PlacesDependOnAllOfTheContentAndOnTheSeed) {
  std::set<U64> places;
  for (U32 last = 100; last < 10100; ++last)
    for (const U64 seed : {1, 2})
      places.insert(TypeParam::List::placeOfMember(
          *this->interned(this->numbered({1, 2, 3, 4, 5, last})), seed));
  EXPECT_GT(places.size(), 19990u) << "of 2^32 places, hardly one twice";
}

TYPED_TEST(FlatList, TablesDumpAndAreThreadSafeWhenTheAgentIs) {
  const auto octets = [](bool threadSafe) {
    return Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(threadSafe)->octets();
  };
  EXPECT_NE(octets(true), octets(false));
  EXPECT_EQ(this->table->dedupHashTable()->octets(), octets(ZoBgpGlobals::multiThreaded()));
  const auto context = Mox::makeNew<Orv::DumpContext>();
  for (const U32 indent : {0, 3}) this->table->dumpState(context, indent);
  EXPECT_EQ(context->text(), "DedupTable  members: 0\n   DedupTable     members: 0\n");
}

TYPED_TEST(FlatList, DestashKeepsOrderAndFlagAndDoesNotIntern) {
  using List = typename TypeParam::List;
  static Mox::String traced;
  Mox::traceSinkIs([](U32 level, auto line) { (traced += char('0' + level)).append(line); });
  Mox::traceLevel = 8;
  const auto unsorted = List::destash(0, this->store(this->numbered({9, 1, 9}), false));
  Mox::traceLevel = 0;
  Mox::traceSinkIs(nullptr);
  const Mox::String text = this->textOf(this->numbered({9, 1, 9}));
  EXPECT_EQ(unsorted->toStrep(), text) << "as in any list that is being built";
  EXPECT_EQ(std::exchange(traced, {}),
            "8Destashing " + List::type.name() + "8  destashed: " + text);
  const auto sorted = List::destash(0, this->store(this->numbered({1, 9}), true));
  EXPECT_TRUE(sorted->commVectorSorted() && !unsorted->commVectorSorted() && !sorted->isDeduped());
  const auto interned = unsorted->dedup(this->table);
  EXPECT_EQ(interned, sorted->dedup(this->table));
  EXPECT_EQ(interned, unsorted->dedup(this->table)) << "once more gives itself";
  EXPECT_TRUE(List::destash(0, this->store({}, true))->empty());
}

TYPED_TEST(FlatList, DamagedRecordsAreTheStoresError) {
  using Stored = typename TypeParam::List::Stored;
  const std::pair<const char*, void (*)(Stored&)> cases[] = {
      {"end before begin", [](auto& r) { r.end = r.begin - TestFixture::size; }},
      {"half a value", [](auto& r) { r.end -= 2; }},
      {"beyond the store", [](auto& r) { r.end += 192; }},
      {"far beyond the store", [](auto& r) { r.end = r.begin + (~U64{0} - 64) / 24 * 24; }},
      {"not aligned", [](auto& r) { r.begin += 2, r.end += 2; }},
      {"not as sorted as it says", [](auto& r) { r.commVectorSorted = 1; }}};
  for (const auto& [what, damage] : cases) {
    auto store = this->store(this->numbered({9, 1, 9}), false);
    damage(store.record());
    for (const U64 at : {0, 252})
      EXPECT_THROW(TypeParam::List::destash(at, store), MoxStash::StoreException) << what;
  }
}

TYPED_TEST(FlatList, MisuseEndsTheProcess) {
  const auto list = this->building(this->numbered({2, 1}));
  const auto shared = this->interned({});
  const std::function<void()> reads[] = {
      [&] { list->comm({}); },       [&] { list->hash(); },
      [&] { list->serialize(); },    [&] { list->compare(shared.get()); },
      [&] { list->commSnapshot(); }, [&] { this->table->dedup(list); }};
  for (const auto& read : reads) EXPECT_DEATH(read(), ": commVectorSorted\\(\\)\n");
  list->dedup(this->table);
  EXPECT_DEATH(list->commIs({}), ": !commVectorSorted\\(\\)\n");
}

}  // namespace
}  // namespace Routing::Bgp

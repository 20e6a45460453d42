// Checks that hold of lists of every type. A further list type is a further struct in Lists.h.
#include "Lists.h"
#include "Restored.h"
#include "attr/ZoBgpGlobals.h"

namespace Routing::Bgp {
namespace {

template <class T>
using EveryList = ListsOf<T>;
using ListTypes = testing::Types<Standard, Large, EightOctets, TwentyOctets>;
TYPED_TEST_SUITE(EveryList, ListTypes);

/// The attribute, header and value.
Mox::String attribute(U32 type, const Octets& value) {
  const bool extended = value.size() > 255;
  const Octets all =
      Octets{U8(extended ? 0xD0 : 0xC0), U8(type)} + number(value.size(), extended ? 2 : 1) + value;
  return {all.begin(), all.end()};
}

template <class T>
void expectContents(const typename T::List& list, const Contents& sorted) {
  EXPECT_EQ(contentsOf(list), sorted);
  EXPECT_EQ(std::tuple(list.comms(), list.empty()), std::tuple(sorted.size(), sorted.empty()));
  for (const Octets& octets : sorted) EXPECT_TRUE(list.comm(T::content(octets)));
  for (U32 n = 0; n < 20; ++n)
    EXPECT_EQ(bool(list.comm(T::content(T::some(n)))),
              std::ranges::binary_search(sorted, T::some(n)));
  if constexpr (InternsValues<typename T::List>) {
    Contents transitive = sorted;
    std::erase_if(transitive, [](const Octets& octets) { return octets[0] & 0x40; });
    EXPECT_EQ(list.totalTransitiveCommunities(), transitive.size());
    for (const auto& [all, sent] : {std::pair(true, sorted), std::pair(false, transitive)})
      EXPECT_EQ(list.serialize(all), sent.empty() ? "" : attribute(T::attribute, joined(sent)));
    const typename T::List::Value::StrepFormat classified(strepFormatClassification);
    Mox::String policy, show = sorted.empty() ? " " : "";
    for (const auto& comm : list.commVector()) {
      policy += comm->toStrepForPolicy(classified) + ' ';
      show += ' ' + comm->toStrep();
    }
    EXPECT_EQ(list.commsStringForm(), policy);
    for (const auto& text : {list.toStrep(), streamed(&list)}) EXPECT_EQ(text, '[' + show + " ]");
  } else {
    EXPECT_EQ(list.serialize(), attribute(T::attribute, joined(sorted)));
    Mox::String text = sorted.empty() ? " " : "";
    for (const Octets& octets : sorted) text += T::List::getStringValue(T::content(octets)) + ' ';
    EXPECT_EQ(list.commsStringForm() + ' ', text);
    EXPECT_EQ(Mox::Type::read(list, "commsStringForm"), list.commsStringForm());
    Mox::String all = ">";
    list.appendCommsStringForm(all);
    EXPECT_EQ(all, ">" + list.commsStringForm());
  }
}

/// The groups of the lists, of which there are so many different ones.
template <class List>
void expectGroups(const std::vector<std::pair<Mox::Ptr<const List>, Contents>>& lists, U64 count) {
  std::map<std::pair<U32, Contents>, const void*> known;
  for (const auto& [list, sorted] : lists) {
    std::map<U32, Contents> groups;
    for (U32 i = 0; i < list->comms(); ++i)
      groups[list->commVector()[i]->classification()].push_back(sorted[i]);
    EXPECT_EQ(list->classificationLists().size(), groups.empty() ? 0 : groups.rbegin()->first + 1);
    Orv::HashMix identities;
    Mox::String texts;
    for (U32 c = 0; c <= 12; ++c) {
      const auto group = list->classificationList(ExtCommClassification(c));
      ASSERT_EQ(bool(group), groups.contains(c)) << c;
      if (!group) continue;
      const auto& [at, isNew] = known.insert({{c, groups[c]}, group.get()});
      EXPECT_TRUE(isNew || at->second == group.get()) << "equal groups are one";
      EXPECT_TRUE(group->classification() == c && group->hasNotificationActive());
      ASSERT_EQ(group->comms(), groups[c].size());
      Orv::HashMix members;
      Mox::String show = stringValue(group->classification()) + " :";
      for (U32 i = 0; i < group->comms(); ++i) {
        const auto& comm = group->commVector()[i];
        EXPECT_TRUE(std::ranges::equal(comm->getContent().octets(), groups[c][i]));
        EXPECT_EQ(group->comm(comm->getContent()), comm);
        members.feed(reinterpret_cast<std::uintptr_t>(comm.get()));
        show += ' ' + comm->toStrep();
      }
      EXPECT_EQ(row(group, group->hash()), row(show, members.finish()));
      texts += (texts.empty() ? "" : "; ") + show;
      identities.feed(reinterpret_cast<std::uintptr_t>(group.get()));
    }
    EXPECT_EQ(Mox::Type::read(*list, "classificationList"), texts);
    EXPECT_EQ(list->hash(), groups.empty() ? 0 : identities.finish());
  }
  EXPECT_EQ(count, known.size());
}

// The model is a set of octet strings: it shares neither order nor equality with what it checks.
TYPED_TEST(EveryList, IsOneObjectWhateverTheOrderTheRepeatsAndTheWay) {
  using List = typename TypeParam::List;
  constexpr U32 room = 65535 / TypeParam::size, most = std::min(TypeParam::values, room);
  const auto& table = this->table();
  std::mt19937 random(4);
  std::vector<std::pair<Mox::Ptr<const List>, Contents>> held(30);
  for (U32 round = 0; round < 300; ++round) {
    SCOPED_TRACE(round);
    const U32 count = round % 100 == 99 ? most : round % 50 == 0 ? 60 : random() % 5;
    const U32 values = count > 5 ? TypeParam::values : 20;
    std::set<Octets> model;
    while (model.size() < count) model.insert(TypeParam::some(U32(random() % values)));
    auto& now = held[round % held.size()] = {nullptr, {model.begin(), model.end()}};
    auto& list = now.first;
    const Contents& sorted = now.second;
    Contents wild = sorted;
    for (const Octets& octets : sorted)
      if (random() % 4 == 0 && wild.size() < room) wild.push_back(octets);
    std::shuffle(wild.begin(), wild.end(), random);

    list = this->interned(wild);
    expectContents<TypeParam>(*list, sorted);
    if (wild.empty()) continue;  // an attribute without values is malformed
    const Octets wire = joined(wild);
    if (round % 2) {  // made anew, of octets
      list = nullptr;
      const auto missed = List::lookupWire(table, wire);
      const auto equal = [&](const auto& other) { return other.first && other.second == sorted; };
      EXPECT_EQ(bool(missed), std::ranges::any_of(held, equal)) << "a look-up makes nothing";
      list = this->kind().dedupWire(wire).list;
      EXPECT_TRUE(!missed.fault && (!missed || missed.list == list));
      expectContents<TypeParam>(*list, sorted);
    }
    const auto [fresh, fault, repeats] = this->fromWire(wire);
    EXPECT_TRUE(!fresh->isDeduped() && fresh->hasNotificationActive());
    EXPECT_EQ(repeats, wild.size() - sorted.size());
    EXPECT_EQ(fresh->dedup(table), list);
    if constexpr (!InternsValues<List>) {
      EXPECT_EQ(fresh->dedup(table), list) << "once more";
    }
    const std::size_t before = allocations;
    for (const auto& found : {List::lookupWire(table, wire), this->kind().dedupWire(wire)})
      EXPECT_TRUE(found.list == list && found.repeats == repeats);
    EXPECT_EQ(allocations, before) << "a hit allocates nothing";
    EXPECT_TRUE(list->hasNotificationActive());
  }
  std::set<Contents> lists;
  for (const auto& [list, sorted] : held) lists.insert(sorted);
  EXPECT_EQ(table->dedupHashTable()->members(), lists.size());
  if constexpr (InternsValues<List>) expectGroups(held, this->groups());
}

// Few lists, so that one thread finds what another lets go; the table grows and shrinks all the
// time.
TYPED_TEST(EveryList, IsOneObjectUnderThreads) {
  using List = typename TypeParam::List;
  const auto& table = this->table();
  std::vector<std::jthread> threads;
  for (U32 thread = 0; thread < 4; ++thread)
    threads.emplace_back([&, thread] {
      std::mt19937 random(thread);
      std::array<Mox::Ptr<const List>, 6> mine;
      for (U32 round = 0; round < 5000; ++round) {
        const U32 n = random() % 12;
        Contents contents = {TypeParam::some(n), TypeParam::some(n + 1 + random() % 2)};
        std::ranges::sort(contents);
        auto& list = mine[round % mine.size()];
        list = nullptr;
        list = random() % 2 ? this->kind().dedupWire(joined(contents)).list
                            : this->fromWire(joined(contents)).list->dedup(table);
        ASSERT_EQ(List::lookupWire(table, joined(contents)).list, list);
        ASSERT_EQ(contentsOf(*list), contents);
      }
    });
  threads.clear();
  EXPECT_EQ(table->dedupHashTable()->members(), 0u);
}

TYPED_TEST(EveryList, TakesNoMoreStorageThanItsValues) {
  const auto storage = [] {
    U64 octets = 0;
    for (const auto& count : Mox::allocationCounts())
      if (count.type.ends_with("(vector storage)")) octets += count.octets;
    return octets;
  };
  constexpr bool pointers = InternsValues<typename TypeParam::List>;
  Contents contents;
  for (U32 n = 0; n < 40; ++n) contents.push_back(TypeParam::some(n / 2));
  auto list = this->interned(contents);
  U64 expected = 20 * (pointers ? sizeof(void*) : TypeParam::size);
  if constexpr (pointers) expected += list->classificationLists().present().size_bytes();
  EXPECT_EQ(storage(), expected);
  list = nullptr;
  list = this->kind().dedupWire(joined(contents)).list;
  EXPECT_EQ(storage(), 0u) << "values stand behind the object";
}

TYPED_TEST(EveryList, MalformedAttributesGiveAReason) {
  constexpr U32 rest = 65535 % TypeParam::size;
  const auto size = std::to_string(TypeParam::size), expected = ", expected a value of " + size;
  const std::pair<std::size_t, Mox::String> cases[] = {
      {0, "0: no octets, expected at least one value of " + size},
      {1, "0: 1 octet" + expected},
      {TypeParam::size + 3, size + ": 3 octets" + expected},
      {65535, std::to_string(65535 - rest) + ": " + std::to_string(rest) + " octets" + expected},
      {65536, "65535: 1 octet beyond the 65535 that an attribute can have"},
      {65540, "65535: 5 octets beyond the 65535 that an attribute can have"}};
  for (const auto& [length, text] : cases) {
    const auto expectRefusal = [&, length = length, text = text](const auto& read) {
      EXPECT_TRUE(!read && read.repeats == 0);
      EXPECT_EQ(read.fault.value().toStrep(), TypeParam::name + (" attribute, offset " + text));
      EXPECT_EQ(read.fault->offset + read.fault->found, length);
    };
    const Octets octets(length);
    expectRefusal(this->fromWire(octets));
    expectRefusal(this->kind().dedupWire(octets));
    expectRefusal(TypeParam::List::lookupWire(this->table(), octets));
  }
  Octets longest(65535 / TypeParam::size * TypeParam::size);
  EXPECT_EQ(this->kind().dedupWire(longest).list->comms(), 1u);
}

// A table that placed by part of the content, or by what everybody knows, could be flooded.
TYPED_TEST(EveryList, PlacesDependOnAllOfTheContentAndOnTheSeed) {
  std::set<U64> places;
  const U32 lists = std::min(TypeParam::values, 10000u) - 1;
  for (U32 n = 1; n <= lists; ++n)
    for (const U64 seed : {0x9E3779B97F4A7C15, 0xC2B2AE3D27D4EB4E})
      places.insert(TypeParam::List::placeOfMember(
          *this->fromWire(TypeParam::some(0) + TypeParam::some(n)).list, seed));
  EXPECT_GE(places.size(), 2 * lists - 2) << "of 2^32 places, hardly one twice";
  EXPECT_LT(*places.rbegin(), U64{1} << 32);
}

TYPED_TEST(EveryList, StoresKeepTheOrderAndRefuseAFalseOne) {
  using List = typename TypeParam::List;
  const Octets a = TypeParam::some(5), b = TypeParam::some(17);
  const Contents contents = {std::max(a, b), std::min(a, b), std::max(a, b)};
  const Contents ascending = {contents[1], contents[0]};
  const auto list = this->interned(contents);
  MoxStash::StoreWriter writer, again;
  const auto unsorted = writer.add(this->built(contents)), sorted = writer.add(list);
  EXPECT_NE(writer.add(this->built(contents)), unsorted) << "a private list may change";
  const HeardStore store(writer);
  Mox::Ptr<List> restored;
  const auto lines = traced(8, [&] { restored = List::destash(unsorted, store); });
  if constexpr (InternsValues<List>) {
    EXPECT_EQ(store.heard, TypeParam::size == 20 ? 4u : 3u) << "values, and lists of one family";
    EXPECT_EQ(contentsOf(*restored), contents);
    const auto& plain = *restored->commVector()[1];  // as it was made, but for the class
    EXPECT_EQ(row(plain.fwkType().name(), plain.classification(), plain.hasNotificationActive()),
              row(List::Value::type.name(), list->commVector()[0]->classification(), 1));
  } else {
    const auto text = this->built(contents)->toStrep();
    EXPECT_EQ(restored->toStrep(), text);
    EXPECT_EQ(lines, "8Destashing " + List::type.name() + "\n8  destashed: " + text + '\n');
  }
  EXPECT_TRUE(!restored->commVectorSorted() && !restored->isDeduped());
  EXPECT_EQ(contentsOf(*List::destash(sorted, store)), ascending);
  EXPECT_TRUE(List::destash(sorted, store)->commVectorSorted());
  for (const auto reference : {unsorted, sorted})
    EXPECT_EQ(this->kind().dedupStored(reference, store), list);
  const auto saved = again.add(restored);
  EXPECT_EQ(this->kind().dedupStored(saved, HeardStore(again)), list);
  std::string octets = writer.octets();
  octets[unsorted + offsetof(StoredCommList, commVectorSorted)] = 1;
  const MoxStash::FileStore claimed("NAME", sealed(octets));
  EXPECT_THROW(List::destash(unsorted, claimed), MoxStash::StoreException) << "it is not sorted";
}

TYPED_TEST(EveryList, MisuseEndsTheProcess) {
  using List = typename TypeParam::List;
  const Octets a = TypeParam::some(0), b = TypeParam::some(1);
  const auto list = this->built({std::max(a, b), std::min(a, b)});
  const char* const unsorted = ": commVectorSorted(\\(\\))?\n";
  const char* const noTable = ": __null != (table|.*values)\n";
  expectDeaths(unsorted,
               {[&] { list->comm(TypeParam::content(a)); }, [&] { this->table()->dedup(list); }});
  expectDeaths(noTable, {[&] { list->dedup(nullptr); }, [&] { List::lookupWire(nullptr, a); }});
  if constexpr (InternsValues<List>) {
    expectDeaths(unsorted, {[&] { list->serialize(false); }, [&] { list->totalCommunities(); }});
    expectDeaths(noTable, {[&] { List::fromWire(nullptr, a); },
                           [&] { List::dedupWire(this->table(), nullptr, a); },
                           [&] { list->dedupContents(this->table(), nullptr); }});
  } else {
    expectDeaths(unsorted, {[&] { list->serialize(); }, [&] { list->hash(); },
                            [&] { list->commSnapshot(); }, [&] { list->compare(list.get()); }});
  }
  list->dedup(this->table());
  EXPECT_DEATH(list->commIs(this->value(a)),
               ": (!commVectorSorted\\(\\)\n|.*dedupHandleStateNever)");
}

TEST_F(ListTest, TablesDumpAndAreThreadSafeWhenTheAgentIs) {
  tables->forEachKind([&](const auto& kind) {
    EXPECT_EQ(kind.lists()->dedupHashTable()->threadSafe(), ZoBgpGlobals::multiThreaded());
  });
  const auto& extended = tables->of<ExtCommList>();
  const auto list = extended.dedupWire(hexOctets("0002fde800000064 030b000000000007")).list;
  const auto context = Mox::makeNew<Orv::DumpContext>();
  tables->forEachKind([&](const auto& kind) { kind.lists()->dumpState(context, 1); });
  extended.lists()->notifyingRtExtCommListCollection()->dumpState(context, 0);
  // clang-format off
  EXPECT_EQ(context->text(),
            " DedupTable   members: 0\n"
            " ExtCommListDedupTable\n   extComm\n     members: 1\n   extCommClassification\n     members: 1\n"
            "   rtExtCommClassification\n     members: 1\n"
            " ExtCommListDedupTable\n   extComm\n     members: 0\n   extCommClassification\n     members: 0\n"
            " DedupTable   members: 0\n"
            "NotifyingRtExtCommListCollection rtExtCommLists #1;\n  rtExtCommList "
            "extCommClassificationRouteTarget : <RouteTarget2ByteASN 65000:100 0x0002fde800000064>\n");
  // clang-format on
}

}  // namespace
}  // namespace Routing::Bgp

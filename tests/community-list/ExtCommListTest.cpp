#include <gmock/gmock.h>

#include <iomanip>
#include <map>
#include <sstream>

#include "ExtCommFamilies.h"
#include "Restored.h"
#include "tests/AllocationCounter.h"
#include "tests/MemoryStore.h"

namespace Routing::Bgp {
namespace {

template <class Family>
class EveryExtCommList : public ExtCommLists<Family> {};
using Families = testing::Types<EightOctets, TwentyOctets>;
TYPED_TEST_SUITE(EveryExtCommList, Families);

using Contents = std::vector<Octets>;

Octets joined(const Contents& contents) {
  Octets all;
  for (const Octets& octets : contents) all = all + octets;
  return all;
}

/// The attribute, header and value.
Mox::String attribute(U8 type, const Octets& value) {
  const Octets header = value.size() > 255 ? Octets{0xD0, type} + number(value.size(), 2)
                                           : Octets{0xC0, type, U8(value.size())};
  const Octets all = value.empty() ? value : header + value;
  return {all.begin(), all.end()};
}

using Groups = std::map<U32, Contents>;

template <class Family>
void expectContents(const typename Family::List& list, const Contents& sorted, Groups& groups) {
  Contents transitive;
  for (const Octets& octets : sorted) {
    if (!(octets[0] & 0x40)) transitive.push_back(octets);
    const auto comm = list.lookupExtComm(Family::content(octets));
    ASSERT_TRUE(comm && comm->getContent() == Family::content(octets));
    groups[comm->classification()].push_back(octets);
  }
  EXPECT_EQ(list.serialize(true), attribute(Family::attribute, joined(sorted)));
  EXPECT_EQ(list.serialize(false), attribute(Family::attribute, joined(transitive)));
  Octets handedOut;
  list.forEachValue([&](const auto& content) {
    for (const U8 octet : content.octets()) handedOut.push_back(octet);
  });
  EXPECT_EQ(handedOut, joined(sorted));
  EXPECT_EQ(list.totalCommunities(), sorted.size());
  EXPECT_EQ(list.totalTransitiveCommunities(), transitive.size());
  EXPECT_FALSE(list.comm(Family::content(number(0x3f, 1) + number(0, Family::size - 1))));
  EXPECT_EQ(list.classificationLists().size(), groups.empty() ? 0 : groups.rbegin()->first + 1);
  Orv::HashMix identities;
  for (U32 c = 0; c <= 12; ++c) {
    const auto group = list.classificationList(ExtCommClassification(c));
    ASSERT_EQ(bool(group), groups.contains(c)) << c;
    if (!group) continue;
    EXPECT_EQ(group->classification(), c);
    ASSERT_EQ(group->comms(), groups[c].size());
    Orv::HashMix members;
    for (const Octets& octets : groups[c]) {
      const auto comm = group->comm(Family::content(octets));
      ASSERT_TRUE(comm);
      members.feed(reinterpret_cast<std::uintptr_t>(comm.get()));
    }
    EXPECT_EQ(group->hash(), members.finish());
    identities.feed(reinterpret_cast<std::uintptr_t>(group.get()));
  }
  EXPECT_EQ(list.hash(), groups.empty() ? 0 : identities.finish());
}

// The model is a set of octet strings: it shares neither order nor equality with what it checks.
TYPED_TEST(EveryExtCommList, OneObjectPerSetWhateverTheOrderTheRepeatsAndTheWay) {
  using List = typename TypeParam::List;
  struct Held {
    Mox::Ptr<const List> list;
    Contents sorted;
    Groups groups;
  };
  std::mt19937 random(4);
  std::vector<Held> held(30);
  auto& f = this->family();
  for (std::size_t round = 0; round < 300; ++round) {
    std::set<Octets> model;
    for (U32 count = random() % 5 + (round % 50 ? 0 : 60); model.size() < count;)
      model.insert(TypeParam::some(U32(random() % (round % 2 ? 20 : 4000))));
    Held& now = held[round % held.size()] = {{}, {model.begin(), model.end()}, {}};
    Contents wild = now.sorted;
    for (const Octets& octets : now.sorted)
      if (random() % 4 == 0) wild.push_back(octets);
    std::shuffle(wild.begin(), wild.end(), random);

    now.list = this->interned(wild);
    expectContents<TypeParam>(*now.list, now.sorted, now.groups);
    const auto appended = TypeParam::make();
    appended->expectedCommunityCountIs(3);
    for (const auto& group : now.list->classificationLists().present())
      appended->appendClassificationList(group);
    appended->append(this->built(wild));
    appended->append(appended);
    appended->append(nullptr);
    EXPECT_EQ(appended->dedup(f.table), now.list);
    if (!wild.empty()) {
      const Octets wire = joined(wild);
      const auto read = List::dedupWire(f.table, f.values, wire);
      EXPECT_EQ(read.list, now.list);
      EXPECT_EQ(read.repeats, wild.size() - now.sorted.size());
      const auto [fresh, fault, repeats] = List::fromWire(f.values, wire);
      EXPECT_TRUE(!fresh->isDeduped() && repeats == read.repeats);
      EXPECT_TRUE(fresh->hasNotificationActive());
      for (const auto& group : now.list->classificationLists().present())
        EXPECT_TRUE(group->hasNotificationActive());
      EXPECT_EQ(fresh->dedup(f.table), now.list);
      const std::size_t before = allocations;
      const auto found = List::lookupWire(f.table, wire);
      EXPECT_TRUE(found.list == now.list && found.repeats == read.repeats);
      EXPECT_EQ(List::dedupWire(f.table, f.values, wire).list, now.list);
      EXPECT_EQ(allocations, before) << "a hit allocates nothing";
    }
    // Lists made of octets are shared with those built by hand, so half are made anew from them.
    if (round % 2 && !wild.empty()) {
      now.list = nullptr;
      now.list = List::dedupWire(f.table, f.values, joined(wild)).list;
    }
  }
  std::set<Contents> lists;
  std::map<std::pair<U32, Contents>, const void*> groups;
  for (const Held& one : held) {
    lists.insert(one.sorted);
    for (const auto& group : one.list->classificationLists().present()) {
      const auto& [at, isNew] = groups.insert(
          {{group->classification(), one.groups.at(group->classification())}, group.get()});
      EXPECT_TRUE(isNew || at->second == group.get()) << "equal groups are one";
    }
  }
  EXPECT_EQ(f.table->dedupHashTable()->members(), lists.size());
  EXPECT_EQ(f.groups(), groups.size());
}

TYPED_TEST(EveryExtCommList, BuildsSortsAndLooksUpBeforeItIsInterned) {
  const Octets a = TypeParam::some(5), b = TypeParam::some(17);
  const auto list = this->built({b, a, b});
  EXPECT_EQ(list->totalTransitiveCommunities(), 0u);
  EXPECT_EQ(list->comms(), 3u);
  list->sortComms();
  EXPECT_EQ(list->comms(), 2u);
  EXPECT_EQ(list->comm(TypeParam::content(a)), this->value(a));
  EXPECT_EQ(list->serialize(true), attribute(TypeParam::attribute, a < b ? a + b : b + a));
  list->commIs(this->value(a));
  EXPECT_TRUE(list->commVectorSorted()) << "the flag is set, not checked";
  EXPECT_EQ(list->comms(), 3u);
  EXPECT_EQ(list->dedup(this->family().table), this->interned({a, b}));
  EXPECT_EQ(Mox::Type::read(*list, "totalCommunities"), "2");
  EXPECT_EQ(list->fwkType().name(), TypeParam::name);
}

// Equal contents are one object, unless somebody makes objects by hand.
TYPED_TEST(EveryExtCommList, TheFirstOfEqualContentsStays) {
  TypeParam others;
  for (const U32 more : {0, 40}) {  // lists of every length
    const auto list = TypeParam::make();
    for (U32 at = 0; at < more; ++at) list->commIs(this->value(TypeParam::some(100 + 7 * at)));
    const auto first = others.values->dedupContent(TypeParam::content(TypeParam::some(1)));
    list->commIs(first);
    list->commIs(this->value(TypeParam::some(1)));
    list->commIs(this->value(TypeParam::some(0)));
    list->sortComms();
    EXPECT_EQ(list->comm(first->getContent()), first);
  }
}

TYPED_TEST(EveryExtCommList, GroupsAreEqualByMembersWhateverTheirClassification) {
  using Group = typename TypeParam::List::Group;
  const auto one = Mox::makeNew<Group>(extCommClassificationColor);
  const auto other = Mox::makeNew<Group>(extCommClassificationUnSpecified);
  const auto third = Mox::makeNew<Group>(extCommClassificationColor);
  for (const auto& group : {one, other}) group->commIs(this->value(TypeParam::some(4)));
  const auto interned = one->dedup(this->family().table);
  EXPECT_EQ(other->dedup(this->family().table), interned);
  EXPECT_NE(third->dedup(this->family().table), interned);
}

TYPED_TEST(EveryExtCommList, StoresKeepTheOrderAndRefuseAFalseOne) {
  const Octets a = TypeParam::some(5), b = TypeParam::some(17), c = TypeParam::some(29);
  const auto contents = [&](const auto& list, bool sorted) {
    Contents contents;
    list->forEachValue([&](const auto& content) {
      const auto octets = content.octets();
      contents.emplace_back(octets.begin(), octets.end());
    });
    EXPECT_EQ(list->commVectorSorted(), sorted);
    return contents;
  };
  const auto list = this->built({b, a});
  MoxStash::StoreWriter building, writer;
  list->sortComms();
  const auto sorted = writer.add(list);
  std::string octets = writer.octets();
  const MoxStash::FileStore store("NAME", octets);
  EXPECT_EQ(contents(TypeParam::List::destash(sorted, store), true), contents(list, true));
  list->commIs(this->value(a < b ? a : b));  // sorted no more, whatever the flag says
  const auto unsorted = building.add(list);
  const MoxStash::FileStore other("NAME", building.octets());
  EXPECT_EQ(contents(TypeParam::List::destash(unsorted, other), false), contents(list, true));
  const U64 begin = store.record<StoredCommList>(sorted).begin;
  std::swap_ranges(&octets[begin], &octets[begin + 8], &octets[begin + 8]);
  const MoxStash::FileStore swapped("NAME", sealed(octets));
  EXPECT_THROW(TypeParam::List::destash(sorted, swapped), MoxStash::StoreException);

  // The manager hears of each value, and of lists of one family.
  const MemoryStore empty(StoredCommList{64, 64, 64, 1, 0});
  EXPECT_TRUE(TypeParam::List::destash(0, empty)->commVectorSorted());
  EXPECT_EQ(empty.restoredObjects, TypeParam::size == 20);
}

TYPED_TEST(EveryExtCommList, MalformedAttributesGiveAReason) {
  auto& f = this->family();
  const auto size = std::to_string(TypeParam::size);
  const std::pair<std::size_t, Mox::String> cases[] = {
      {0, "offset 0: no octets, expected at least one value of " + size},
      {TypeParam::size + 3, "offset " + size + ": 3 octets, expected a value of " + size},
      {65540, "offset 65535: 5 octets beyond the 65535 that an attribute can have"}};
  for (const auto& [length, text] : cases) {
    const Octets octets(length);
    for (const auto& fault : {TypeParam::List::fromWire(f.values, octets).fault,
                              TypeParam::List::lookupWire(f.table, octets).fault,
                              TypeParam::List::dedupWire(f.table, f.values, octets).fault})
      EXPECT_TRUE(fault && fault->toStrep().ends_with(" attribute, " + text)) << length;
  }
  const Octets longest = TypeParam::some(1), unknown = TypeParam::some(2);
  Octets full;
  while (full.size() + TypeParam::size <= 65535) full = full + longest;
  EXPECT_EQ(TypeParam::List::dedupWire(f.table, f.values, full).list->comms(), 1u);
  const auto nothing = TypeParam::List::lookupWire(f.table, unknown);
  EXPECT_TRUE(!nothing && !nothing.fault) << "a look-up that finds nothing";
}

TYPED_TEST(EveryExtCommList, SnapshotsAreCopiesThatCanChange) {
  const Octets a = TypeParam::some(0), b = TypeParam::some(11), c = TypeParam::some(23);
  auto list = this->interned({a, b});
  const auto snapshot = list->commSnapshot();
  const auto group = list->classificationLists().present()[0]->commSnapshot();
  EXPECT_TRUE(snapshot->hasNotificationActive() && group->hasNotificationActive());
  EXPECT_EQ(group->classification(), list->classificationLists().present()[0]->classification());
  EXPECT_EQ(group->comms().size(), list->classificationLists().present()[0]->comms());
  EXPECT_EQ(snapshot->classificationLists().size(), list->classificationLists().present().size());
  list = nullptr;  // the copy does not need it
  EXPECT_EQ(snapshot->comm(TypeParam::content(a)), this->value(a));

  // Another object of a content takes the place of the first.
  const auto other =
      Mox::makeNew<typename TypeParam::Value>(extCommClassificationColor, TypeParam::content(a));
  snapshot->commIs(other);
  EXPECT_EQ(snapshot->comm(TypeParam::content(a)), other);
  snapshot->commDel(TypeParam::content(a));
  snapshot->commDel(TypeParam::content(c));
  EXPECT_FALSE(snapshot->commHas(TypeParam::content(a)) || snapshot->comm(TypeParam::content(c)));
  const auto edited = TypeParam::make();
  for (const auto& [content, comm] : snapshot->comms()) edited->commIs(comm);
  EXPECT_EQ(edited->dedup(this->family().table), this->interned({b}));

  const auto taken = snapshot->classificationLists().begin()->second;
  snapshot->classificationListDel(taken->classification());
  EXPECT_FALSE(snapshot->classificationListHas(taken->classification()) ||
               snapshot->classificationList(taken->classification()));
  snapshot->classificationListIs(taken);
  snapshot->classificationListDelAll();
  snapshot->commDelAll();
  group->commDelAll();
  EXPECT_TRUE(snapshot->comms().empty() && snapshot->classificationLists().empty());

  const auto expectRefusal = [](const char* attribute, const char* owner, auto act) {
    Mox::String name(TypeParam::name);
    name.replace(name.size() - 4, 4, owner);
    EXPECT_THAT(act, testing::ThrowsMessage<Mox::RangeException>(
                         Mox::String("null _") + attribute + " parameter to mutator for " + name +
                         "::" + attribute + " not allowed\""));
  };
  expectRefusal("comm", "ListSnapshot", [&] { snapshot->commIs(nullptr); });
  expectRefusal("classificationList", "ListSnapshot",
                [&] { snapshot->classificationListIs(nullptr); });
  expectRefusal("comm", "ClassificationListSnapshot", [&] { group->commIs(nullptr); });
}

TYPED_TEST(EveryExtCommList, TableDiesBeforeItsMembers) {
  const Octets a = TypeParam::some(0), b = TypeParam::some(11);
  auto list = this->interned({a, b});
  auto group = list->classificationLists().present()[0];
  this->family().table = nullptr;
  EXPECT_EQ(list->comm(TypeParam::content(a)), this->value(a));
  EXPECT_EQ(list->classificationList(group->classification()), group);
  list = nullptr;
  EXPECT_GT(group->comms(), 0u);
  group = nullptr;
  this->family() = TypeParam();
}

class ExtCommListTest : public ExtCommLists<EightOctets> {};
class ExtCommIp6ListTest : public ExtCommLists<TwentyOctets> {};

template <class T>
Mox::String streamed(const T* object, std::ios::fmtflags flags = {}) {
  std::ostringstream out;
  out.setf(flags);
  out << std::setw(9) << std::setfill('*') << object;
  return out.str();
}

TEST_F(ExtCommListTest, TextsOfKnownLists) {
  const struct {
    std::vector<U64> contents;
    const char* policy;
    const char* plain;
    const char* show;
  } cases[] = {
      {{}, "", "", "[  ]"},
      {{0x0002FDE800000064},
       "RT:65000:100 ",
       "65000:100 ",
       "[ <RouteTarget2ByteASN 65000:100 0x0002fde800000064> ]"},
      // A validation state shows nothing under either flag: one lone space.
      {{0x4300000000000000, 0x030b000000000007, 0x0002FDE800000064},
       "RT:65000:100 Color:CO(00):7  ",
       "65000:100 Color:CO(00):7  ",
       nullptr},
      {{0x0400000000000001}, " ", " ", "[ <extCommPktTypeTransQosMarking 0x0400000000000001> ]"},
  };
  for (const auto& c : cases) {
    Contents contents;
    for (const U64 value : c.contents) contents.push_back(number(value, 8));
    const auto list = interned(contents);
    EXPECT_EQ(list->commsStringForm(), c.policy);
    EXPECT_EQ(list->commsWithoutClassificationStringForm(), c.plain);
    if (c.show) {
      EXPECT_EQ(list->toStrep(), c.show);
    }
    EXPECT_EQ(streamed(list.get()), list->toStrep());
  }
  const auto two = interned({number(0x0002FDE800000064, 8), number(0x0002FDE800000065, 8)});
  EXPECT_EQ(streamed(two->classificationList(extCommClassificationRouteTarget).get()),
            "extCommClassificationRouteTarget : <RouteTarget2ByteASN 65000:100 0x0002fde800000064> "
            "<RouteTarget2ByteASN 65000:101 0x0002fde800000065>");
  EXPECT_NE(streamed(two.get(), std::ios::uppercase).find("0X0002FDE800000064"), Mox::String::npos);
  EXPECT_EQ(streamed<ExtCommList>(nullptr), "NULL");
  EXPECT_EQ(streamed<ExtCommClassificationList>(nullptr), "");
  EXPECT_EQ(ExtCommList::getStringValue({1, 65000, 100}), "65000:100");
}

TEST_F(ExtCommIp6ListTest, TextsOfKnownLists) {
  const auto route = [](U8 host, U16 local) {
    return number(0x0002, 2) + number(0x20010db800000000, 8) + number(host, 8) + number(local, 2);
  };
  const auto list = interned({route(2, 7), route(1, 100)});
  const Mox::String each =
      "<extCommIp6PktTypeTransIpv6Address extCommIp6PktSubtypeRouteTarget addr=2001:db8::1 "
      "localAdmin=100> <extCommIp6PktTypeTransIpv6Address extCommIp6PktSubtypeRouteTarget "
      "addr=2001:db8::2 localAdmin=7>";
  EXPECT_EQ(list->commsStringForm(), "2001:db8::1:100 2001:db8::2:7 ");
  EXPECT_EQ(streamed(list.get()), "[ " + each + " ]");
  EXPECT_EQ(streamed(list->classificationList(extCommClassificationUnSpecified).get()),
            "extCommClassificationUnSpecified : " + each);
  EXPECT_EQ(interned({})->toStrep(), "[  ]");
  EXPECT_EQ(streamed<ExtCommIp6List>(nullptr), "NULL");
  EXPECT_EQ(streamed<ExtCommIp6ClassificationList>(nullptr), "");
  EXPECT_EQ(list->commVectorRawPtr()->size(), 2u);
  auto more = extCommIp6ListFactory();
  more->commVectorRawPtrNonConst()->add(value(route(1, 100)));
  EXPECT_EQ(more->dedup(family().table), interned({route(1, 100)}));
}

TEST_F(ExtCommListTest, OneLinkBandwidthPerPath) {
  const Octets fast = number(0x4004FDE84E000000, 8), slow = number(0x4004FDE84D000000, 8);
  const Octets target = number(0x0002FDE800000064, 8);
  EXPECT_EQ(interned({fast, target, fast})->classificationLists().size(), 8u);
  const Octets wire = joined({target, fast, target, fast, slow});
  for (const auto& fault : {ExtCommList::fromWire(family().values, wire).fault,
                            ExtCommList::dedupWire(family().table, family().values, wire).fault}) {
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->reason, WireFault::Reason::linkBandwidth);
    EXPECT_EQ(fault->toStrep(),
              "Extended Community attribute, offset 32: a second link bandwidth, expected at most "
              "one");
  }
  EXPECT_FALSE(ExtCommList::lookupWire(family().table, wire).fault) << "a look-up finds nothing";
  EXPECT_DEATH(interned({fast, slow}), ": comms\\(\\) <= 1\n");
}

TEST_F(ExtCommIp6ListTest, LinkBandwidthsAreAsManyAsThereAre) {
  std::vector<ExtCommIp6::PtrConst> held;
  const auto list = extCommIp6ListFactory();
  for (const U32 seed : {0, 5}) {  // as a plug-in would classify them
    auto made = extCommIp6Factory(extCommClassificationLinkBandwidth,
                                  TwentyOctets::content(TwentyOctets::some(seed)));
    family().values->dedupHashTable()->dedup(Mox::Ptr<Orv::DedupHandle>(made.get()));
    list->commIs(held.emplace_back(made));
  }
  const auto wire = joined({TwentyOctets::some(0), TwentyOctets::some(5)});
  EXPECT_EQ(ExtCommIp6List::fromWire(family().values, wire).list->comms(), 2u);
  const auto interned = ExtCommIp6List::dedupWire(family().table, family().values, wire).list;
  EXPECT_EQ(interned->classificationList(extCommClassificationLinkBandwidth)->comms(), 2u);
  EXPECT_EQ(list->dedup(family().table), interned);
}

TEST_F(ExtCommListTest, DumpsNameTheTables) {
  const auto list = interned({number(0x0002FDE800000064, 8), number(0x030b000000000007, 8)});
  const auto context = Mox::makeNew<Orv::DumpContext>();
  family().table->dumpState(context, 1);
  family().table->notifyingRtExtCommListCollection()->dumpState(context, 0);
  EXPECT_EQ(context->text(),
            " ExtCommListDedupTable\n   extComm\n     members: 1\n   extCommClassification\n"
            "     members: 1\n   rtExtCommClassification\n     members: 1\n"
            "NotifyingRtExtCommListCollection rtExtCommLists #1;\n"
            "  rtExtCommList extCommClassificationRouteTarget : "
            "<RouteTarget2ByteASN 65000:100 0x0002fde800000064>\n");
}

TEST_F(ExtCommIp6ListTest, DumpsUnderTheSameName) {
  const auto context = Mox::makeNew<Orv::DumpContext>();
  family().table->dumpState(context, 0);
  EXPECT_EQ(context->text(),
            "ExtCommListDedupTable\n  extComm\n    members: 0\n  extCommClassification\n"
            "    members: 0\n");
}

TYPED_TEST(EveryExtCommList, MisuseEndsTheProcess) {
  using Value = typename TypeParam::Value;
  const Octets a = TypeParam::some(0), b = TypeParam::some(11);
  const auto& table = this->family().table;
  const auto building = this->built({b, a});
  const auto shared = this->built({a, b});
  const auto kept = shared->dedup(table);
  const auto group = kept->classificationLists().present()[0];
  auto& sharedGroup = const_cast<typename TypeParam::List::Group&>(*group);
  const auto stranger = Mox::makeNew<Value>(extCommClassificationColor, TypeParam::content(a));
  const char* const notYet = "\\( this \\)->dedupState\\(\\) == Orv::dedupHandleStateNeverDeduped";
  const char* const never = "\\( this \\)->dedupState\\(\\) != Orv::dedupHandleStateNeverDeduped";
  EXPECT_DEATH(building->commIs(nullptr), ": __null != comm\n");
  EXPECT_DEATH(building->expectedCommunityCountIs(1u << 29), ": size < 2\\^29\n");
  EXPECT_DEATH(building->commIs(stranger),
               ": __null == \\( comm \\) \\|\\| \\( comm \\)->dedupState\\(\\) != Orv::");
  EXPECT_DEATH(building->comm(TypeParam::content(a)), ": commVectorSorted\n");
  EXPECT_DEATH(building->totalCommunities(), ": commVectorSorted\\(\\)\n");
  EXPECT_DEATH(building->serialize(false), ": commVectorSorted\\(\\)\n");
  EXPECT_DEATH(building->classificationList(extCommClassificationColor), never);
  EXPECT_DEATH(table->dedup(building), ": commVectorSorted\\(\\)\n");
  EXPECT_DEATH(shared->dedup(table), notYet);
  EXPECT_DEATH(shared->commIs(this->value(a)), notYet);
  EXPECT_DEATH(shared->append(kept), notYet);
  EXPECT_DEATH(shared->appendClassificationList(group), notYet);
  EXPECT_DEATH(shared->sortComms(), notYet);
  EXPECT_DEATH(sharedGroup.commIs(this->value(a)), notYet);
  const auto equal = this->built({a, b});
  equal->dedup(table);
  EXPECT_DEATH(equal->dedup(table), "\\( _classificationList \\)->dedupState\\(\\) == Orv::");
}

TEST_F(ExtCommListTest, GroupsOfRouteTargetsAreOfTheirClass) {
  const auto plain = Mox::makeNew<ExtCommClassificationList>(extCommClassificationRouteTarget);
  EXPECT_DEATH(plain->dedup(family().table), ": rtExtCommClassificationList\n");
  const auto beyond =
      ExtComm::PtrConst(extCommFactory(extCommClassificationOneBeyondLast, ExtCommContent(0xAB)));
  const auto list = built({});
  list->commIs(Mox::staticCast<const ExtComm>(family().values->dedupHashTable()->dedup(
      Mox::Ptr<Orv::DedupHandle>(const_cast<ExtComm*>(beyond.get())))));
  EXPECT_DEATH(list->dedup(family().table),
               ": classification < extCommClassificationOneBeyondLast\n");
}

}  // namespace
}  // namespace Routing::Bgp

// Lists of extended communities: their groups, snapshots, texts, link bandwidths, misuse.
#include "Lists.h"

namespace Routing::Bgp {
namespace {

template <class T>
using EveryExtCommList = ListsOf<T>;
using Families = testing::Types<EightOctets, TwentyOctets>;
TYPED_TEST_SUITE(EveryExtCommList, Families);

TYPED_TEST(EveryExtCommList, BuildsSortsAndLooksUpBeforeItIsInterned) {
  const Octets a = TypeParam::some(5), b = TypeParam::some(17), c = TypeParam::some(29);
  const auto other = this->built({c, a}), appended = this->built({});
  appended->expectedCommunityCountIs(3);
  const auto held = this->interned({a, b});
  for (const auto& group : held->classificationLists().present())
    appended->appendClassificationList(group);
  appended->append(other);
  appended->append(appended);
  appended->append(nullptr);
  EXPECT_EQ(appended->comms(), 8u);
  EXPECT_EQ(appended->dedup(this->table()), this->interned({a, b, c}));
  const auto list = this->built({b, a, b});
  EXPECT_EQ(row(list->totalTransitiveCommunities(), list->comms()), "0 3");
  list->sortComms();
  EXPECT_EQ(contentsOf(*list), (Contents{std::min(a, b), std::max(a, b)}));
  EXPECT_EQ(list->lookupExtComm(TypeParam::content(a)), this->value(a));
  EXPECT_TRUE(list->serialize(true).ends_with(Mox::String(b.begin(), b.end())) == (a < b));
  list->commIs(this->value(a));
  EXPECT_EQ(list->comms(), 3u);
  EXPECT_TRUE(list->commVectorSorted()) << "the flag is set, not checked";
  MoxStash::StoreWriter writer;
  const auto stored = writer.add(list);
  const MoxStash::FileStore store("NAME", writer.octets());
  EXPECT_EQ(TypeParam::List::destash(stored, store)->commVectorSorted(), a > b) << "checked here";
  EXPECT_EQ(list->dedup(this->table()), this->interned({a, b}));
  EXPECT_EQ(Mox::Type::read(*list, "totalCommunities"), "2");
}

// Equal contents are one object, unless somebody makes objects by hand.
TYPED_TEST(EveryExtCommList, TheFirstOfEqualContentsStays) {
  const CommunityTables others;
  for (const U32 more : {0, 40}) {  // lists of every length
    const auto list = Mox::makeNew<typename TypeParam::List>();
    for (U32 at = 0; at < more; ++at) list->commIs(this->value(TypeParam::some(100 + 7 * at)));
    const auto first = others.of<typename TypeParam::List>().values()->dedupContent(
        TypeParam::content(TypeParam::some(1)));
    for (const auto& comm : {first, this->value(TypeParam::some(1))}) list->commIs(comm);
    list->commIs(this->value(TypeParam::some(0)));
    list->sortComms();
    EXPECT_EQ(list->comm(first->getContent()), first);
  }
}

TYPED_TEST(EveryExtCommList, GroupsAreEqualByMembersWhateverTheirClassification) {
  const auto group = [&](ExtCommClassification classification, const Contents& contents) {
    const auto made = Mox::makeNew<typename TypeParam::List::Group>(classification);
    for (const Octets& octets : contents) made->commIs(this->value(octets));
    return made->dedup(this->table());
  };
  const Octets a = TypeParam::some(4), b = TypeParam::some(14);
  const auto interned = group(extCommClassificationColor, {a, b, a});
  EXPECT_EQ(group(extCommClassificationUnSpecified, {b, a}), interned);
  EXPECT_NE(group(extCommClassificationColor, {a}), interned);
  EXPECT_EQ(group(extCommClassificationColor, {})->hash(), 0u);
}

TYPED_TEST(EveryExtCommList, SnapshotsAreCopiesThatCanChange) {
  const Octets a = TypeParam::some(0), b = TypeParam::some(11), c = TypeParam::some(23);
  const auto contentA = TypeParam::content(a);
  auto list = this->interned({a, b});
  auto first = list->classificationLists().present()[0];
  const U32 members = first->comms(), groups = U32(list->classificationLists().present().size());
  const auto snapshot = list->commSnapshot();
  const auto group = first->commSnapshot();
  const auto classification = group->classification();
  EXPECT_TRUE(snapshot->hasNotificationActive() && group->hasNotificationActive());
  EXPECT_EQ(classification, first->classification());
  EXPECT_EQ(snapshot->classificationList(classification), first);
  list = nullptr;  // the copies do not need it
  EXPECT_EQ(row(group->comms().size(), snapshot->classificationLists().size()),
            row(members, groups));
  EXPECT_EQ(snapshot->comm(contentA), this->value(a));

  // Another object of a content takes the place of the first.
  const auto other = Mox::makeNew<typename TypeParam::List::Value>(classification, contentA);
  snapshot->commIs(other);
  EXPECT_EQ(snapshot->comm(contentA), other);
  for (const Octets& octets : {a, c}) {
    snapshot->commDel(TypeParam::content(octets));
    EXPECT_FALSE(snapshot->commHas(TypeParam::content(octets)) ||
                 snapshot->comm(TypeParam::content(octets)));
  }
  const auto edited = Mox::makeNew<typename TypeParam::List>();
  for (const auto& [content, comm] : snapshot->comms()) edited->commIs(comm);
  EXPECT_EQ(edited->dedup(this->table()), this->interned({b}));

  snapshot->classificationListDel(classification);
  EXPECT_FALSE(snapshot->classificationListHas(classification) ||
               snapshot->classificationList(classification));
  snapshot->classificationListIs(first);
  EXPECT_TRUE(snapshot->classificationListHas(classification));
  snapshot->classificationListDelAll();
  snapshot->commDelAll();
  EXPECT_TRUE(snapshot->comms().empty() && snapshot->classificationLists().empty());

  const Mox::String family = TypeParam::size == 8 ? "ExtComm" : "ExtCommIp6";
  EXPECT_EQ(raised([&] { snapshot->commIs(nullptr); }), nullRefused(family + "ListSnapshot::comm"));
  EXPECT_EQ(raised([&] { snapshot->classificationListIs(nullptr); }),
            nullRefused(family + "ListSnapshot::classificationList"));
  EXPECT_EQ(raised([&] { group->commIs(nullptr); }),
            nullRefused(family + "ClassificationListSnapshot::comm"));
}

TYPED_TEST(EveryExtCommList, TableDiesBeforeItsMembers) {
  const Octets a = TypeParam::some(0);
  auto list = this->interned({a, TypeParam::some(11)});
  const auto group = list->classificationLists().present()[0];
  this->tables.reset();
  EXPECT_TRUE(list->comm(TypeParam::content(a)));
  EXPECT_EQ(list->classificationList(group->classification()), group);
  list = nullptr;
  EXPECT_GT(group->comms(), 0u);
}

// Room behind an object is counted in 16 bits: longer lists and groups have theirs elsewhere.
TYPED_TEST(EveryExtCommList, ListsOfTheStoreMayBeOfAnyLength) {
  for (const U32 length : {65533u, 65534u, 65535u, 65536u}) {
    const auto list = Mox::makeNew<typename TypeParam::List>();
    for (U32 n = 0; n < length; ++n)
      list->commIs(this->value(number(0x0002, 2) + number(n, TypeParam::size - 2)));
    const auto interned = list->dedupContents(this->table(), this->kind().values());
    EXPECT_EQ(interned->classificationLists().present()[0]->comms(), length);
    EXPECT_EQ(list->dedup(this->table()), interned);
  }
}

struct ExtCommListTest : ListsOf<EightOctets> {};
struct ExtCommIp6ListTest : ListsOf<TwentyOctets> {};

TEST_F(ExtCommListTest, TextsOfKnownLists) {
  const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
      // clang-format off
      {"", "", "", "[  ]"},
      // A validation state shows nothing under either flag: one lone space.
      {"4300000000000000 030b000000000007 0002fde800000064",
       "RT:65000:100 Color:CO(00):7  ", "65000:100 Color:CO(00):7  ", nullptr},
      {"0400000000000001", " ", " ", "[ <extCommPktTypeTransQosMarking 0x0400000000000001> ]"},
      {"0002fde800000065 0002fde800000064", "RT:65000:100 RT:65000:101 ", "65000:100 65000:101 ",
       "[ <RouteTarget2ByteASN 65000:100 0x0002fde800000064> "
       "<RouteTarget2ByteASN 65000:101 0x0002fde800000065> ]"}};
  // clang-format on
  for (const auto& [octets, policy, plain, show] : cases) {
    const auto list = *octets ? kind().dedupWire(hexOctets(octets)).list : interned({});
    EXPECT_EQ(list->commsStringForm(), policy);
    EXPECT_EQ(list->commsWithoutClassificationStringForm(), plain);
    EXPECT_EQ(list->toStrep(), show ? show : list->toStrep());
    EXPECT_EQ(streamed(list), list->toStrep());
  }
  const auto two = interned({number(0x0002FDE800000064, 8), number(0x0002FDE800000065, 8)});
  EXPECT_EQ("[ " + streamed(two->classificationList(extCommClassificationRouteTarget)) + " ]",
            two->toStrep().insert(2, "extCommClassificationRouteTarget : "));
  const auto mixed = interned({number(0x0002FDE800000064, 8), number(0x030b000000000007, 8)});
  EXPECT_EQ(Mox::Type::read(*mixed, "classificationList"),
            mixed->classificationList(extCommClassificationRouteTarget)->toStrep() + "; " +
                mixed->classificationList(extCommClassificationColor)->toStrep());
  EXPECT_NE(streamed(two, std::ios::uppercase).find("0X0002FDE800000064"), Mox::String::npos);
  EXPECT_EQ(streamed(ExtCommList::PtrConst()), "NULL");
  EXPECT_EQ(streamed(ExtCommClassificationList::PtrConst()), "");
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
  EXPECT_EQ(streamed(list), "[ " + each + " ]");
  EXPECT_EQ(streamed(list->classificationList(extCommClassificationUnSpecified)),
            "extCommClassificationUnSpecified : " + each);
  const auto more = extCommIp6ListFactory();
  for (const auto& comm : *list->commVectorRawPtr()) more->commVectorRawPtrNonConst()->add(comm);
  EXPECT_EQ(more->dedup(table()), list);
  const auto frozen = extCommIp6ListFactory();
  EXPECT_EQ(frozen->dedup(table()), frozen);
  EXPECT_DEATH(frozen->commVectorRawPtrNonConst(), "dedupState\\(\\) == Orv::.*NeverDeduped\\(\\)");
}

TEST_F(ExtCommListTest, OneLinkBandwidthPerPath) {
  const Octets fast = number(0x4004FDE84E000000, 8), slow = number(0x4004FDE84D000000, 8);
  const Octets target = number(0x0002FDE800000064, 8);
  EXPECT_EQ(interned({fast, target, fast})->classificationLists().size(), 8u);
  const Octets wire = joined({target, fast, target, fast, slow});
  for (const auto& fault : {fromWire(wire).fault, kind().dedupWire(wire).fault})
    EXPECT_THAT(fault.value().toStrep(), testing::HasSubstr("offset 32: a second link bandwidth,"));
  EXPECT_FALSE(ExtCommList::lookupWire(table(), wire).fault) << "a look-up finds nothing";
  EXPECT_DEATH(interned({fast, slow}), ": comms\\(\\) <= 1\n");
}

TEST_F(ExtCommIp6ListTest, LinkBandwidthsAreAsManyAsThereAre) {
  std::vector<ExtCommIp6::PtrConst> held;
  const auto list = extCommIp6ListFactory();
  for (const U32 seed : {0, 5}) {  // as a plug-in would classify them
    auto made = extCommIp6Factory(extCommClassificationLinkBandwidth,
                                  TwentyOctets::content(TwentyOctets::some(seed)));
    kind().values()->dedupHashTable()->dedup(Mox::Ptr<Orv::DedupHandle>(made.get()));
    list->commIs(held.emplace_back(made));
  }
  const auto wire = joined({TwentyOctets::some(0), TwentyOctets::some(5)});
  EXPECT_EQ(fromWire(wire).list->comms(), 2u);
  const auto interned = kind().dedupWire(wire).list;
  EXPECT_EQ(interned->classificationList(extCommClassificationLinkBandwidth)->comms(), 2u);
  EXPECT_EQ(list->dedup(table()), interned);
}

TYPED_TEST(EveryExtCommList, MisuseEndsTheProcess) {
  using Value = typename TypeParam::List::Value;
  const Octets a = TypeParam::some(0), b = TypeParam::some(11);
  const auto& table = this->table();
  const auto building = this->built({b, a}), shared = this->built({a, b});
  const auto equal = this->built({a, b});
  const auto kept = shared->dedup(table);
  equal->dedup(table);
  const auto group = kept->classificationLists().present()[0];
  const auto stranger = Mox::makeNew<Value>(extCommClassificationColor, TypeParam::content(a));
  EXPECT_DEATH(building->commIs(nullptr), ": __null != comm\n");
  EXPECT_DEATH(building->expectedCommunityCountIs(1u << 29), ": size < 2\\^29\n");
  EXPECT_DEATH(building->commIs(stranger),
               ": __null == \\( comm \\) \\|\\| \\( comm \\)->.* != Orv::");
  EXPECT_DEATH(building->classificationList(extCommClassificationColor),
               "\\( this \\)->dedupState\\(\\) != Orv::dedupHandleStateNeverDeduped");
  EXPECT_DEATH(equal->dedup(table), "\\( _classificationList \\)->dedupState\\(\\) == Orv::");
  expectDeaths(
      "\\( this \\)->dedupState\\(\\) == Orv::dedupHandleStateNeverDeduped",
      {[&] { shared->dedup(table); }, [&] { shared->append(kept); },
       [&] { shared->appendClassificationList(group); },
       [&] { shared->expectedCommunityCountIs(9); }, [&] { shared->sortComms(); },
       [&] { const_cast<typename TypeParam::List::Group&>(*group).commIs(this->value(a)); }});
}

TEST_F(ExtCommListTest, GroupsOfRouteTargetsAreOfTheirClass) {
  const auto plain = Mox::makeNew<ExtCommClassificationList>(extCommClassificationRouteTarget);
  EXPECT_DEATH(plain->dedup(table()), ": rtExtCommClassificationList\n");
  const auto beyond =
      ExtComm::PtrConst(extCommFactory(extCommClassificationOneBeyondLast, ExtCommContent(0xAB)));
  const auto list = built({});
  list->commIs(Mox::staticCast<const ExtComm>(kind().values()->dedupHashTable()->dedup(
      Mox::Ptr<Orv::DedupHandle>(const_cast<ExtComm*>(beyond.get())))));
  EXPECT_DEATH(list->dedup(table()), ": classification < extCommClassificationOneBeyondLast\n");
}

}  // namespace
}  // namespace Routing::Bgp

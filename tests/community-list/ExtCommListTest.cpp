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
  for (const auto& more : {other, appended, decltype(other)()}) appended->append(more);
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
  EXPECT_EQ(list->dedup(this->table()), held);
  EXPECT_EQ(Mox::Type::read(*list, "totalCommunities"), "2");
}

// Equal contents are one object, unless somebody makes objects by hand.
TYPED_TEST(EveryExtCommList, TheFirstOfEqualContentsStays) {
  const CommunityTables others;
  const auto one = TypeParam::content(TypeParam::some(1));
  for (const U32 more : {0, 40}) {  // lists of every length
    const auto list = this->built({});
    for (U32 at = 0; at < more; ++at) list->commIs(this->value(TypeParam::some(100 + 7 * at)));
    const auto first = others.of<typename TypeParam::List>().values()->dedupContent(one);
    list->commIs(first);
    for (const U32 n : {1, 0}) list->commIs(this->value(TypeParam::some(n)));
    list->sortComms();
    EXPECT_EQ(list->comm(one), first);
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
  const auto first = list->classificationLists().present()[0];
  const auto classification = first->classification();
  const auto expected =
      row(classification, first->comms(), list->classificationLists().present().size());
  const auto snapshot = list->commSnapshot();
  const auto group = first->commSnapshot();
  EXPECT_TRUE(snapshot->hasNotificationActive() && group->hasNotificationActive());
  list = nullptr;  // the copies do not need it
  EXPECT_EQ(
      row(group->classification(), group->comms().size(), snapshot->classificationLists().size()),
      expected);
  EXPECT_EQ(snapshot->classificationList(classification), first);
  EXPECT_EQ(snapshot->comm(contentA), this->value(a));

  // Another object of a content takes the place of the first.
  const auto other = Mox::makeNew<typename TypeParam::List::Value>(classification, contentA);
  snapshot->commIs(other);
  EXPECT_EQ(snapshot->comm(contentA), other);
  for (const auto& content : {contentA, TypeParam::content(c)}) {
    snapshot->commDel(content);
    EXPECT_FALSE(snapshot->commHas(content) || snapshot->comm(content));
  }
  const auto edited = this->built({});
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

// Room behind an object is counted in 16 bits: longer lists and groups have theirs elsewhere.
TYPED_TEST(EveryExtCommList, ListsOfTheStoreMayBeOfAnyLength) {
  for (const U32 length : {65533u, 65534u, 65535u, 65536u}) {
    const auto list = this->built({});
    for (U32 n = 0; n < length; ++n)
      list->commIs(this->value(number(0x0002, 2) + number(n, TypeParam::size - 2)));
    const auto interned = list->dedupContents(this->table(), this->kind().values());
    EXPECT_EQ(interned->classificationLists().present()[0]->comms(), length);
    EXPECT_EQ(list->dedup(this->table()), interned);
  }
}

struct ExtCommListTest : ListsOf<EightOctets> {};
struct ExtCommIp6ListTest : ListsOf<TwentyOctets> {};

TEST_F(ExtCommListTest, TextsWithAndWithoutClassification) {
  // A validation state shows nothing under either flag: one lone space.
  const auto list =
      kind().dedupWire(hexOctets("4300000000000000 030b000000000007 0002fde800000064")).list;
  EXPECT_EQ(list->commsStringForm(), "RT:65000:100 Color:CO(00):7  ");
  EXPECT_EQ(list->commsWithoutClassificationStringForm(), "65000:100 Color:CO(00):7  ");
  EXPECT_THAT(streamed(list, std::ios::uppercase), testing::HasSubstr("0X0002FDE800000064"));
  EXPECT_EQ(streamed(ExtCommClassificationList::PtrConst()) + streamed(ExtCommList::PtrConst()),
            "NULL");
  EXPECT_EQ(ExtCommList::getStringValue({1, 65000, 100}), "65000:100");
}

TEST_F(ExtCommIp6ListTest, GivesItsCommunitiesAwayAndTakesOthersUntilItIsInterned) {
  const auto list = interned({TwentyOctets::some(5), TwentyOctets::some(0)});
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
  const auto list = extCommIp6ListFactory();
  Octets wire;
  for (const U32 n : {0, 5}) {  // as a plug-in would classify them
    wire = wire + TwentyOctets::some(n);
    const auto made = extCommIp6Factory(extCommClassificationLinkBandwidth,
                                        TwentyOctets::content(TwentyOctets::some(n)));
    kind().values()->dedupHashTable()->dedup(Mox::Ptr<Orv::DedupHandle>(made.get()));
    list->commIs(made);
  }
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
  const auto list = built({});
  const auto beyond = extCommFactory(extCommClassificationOneBeyondLast, ExtCommContent(0xAB));
  kind().values()->dedupHashTable()->dedup(Mox::Ptr<Orv::DedupHandle>(beyond.get()));
  list->commIs(beyond);
  EXPECT_DEATH(list->dedup(table()), ": classification < extCommClassificationOneBeyondLast\n");
}

}  // namespace
}  // namespace Routing::Bgp

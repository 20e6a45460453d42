#include "Orv/DedupHashTableUnorderedSet.h"

#include <algorithm>
#include <new>
#include <utility>

namespace Orv {

const Mox::Type DedupHashTableUnorderedSet::type{
    "Orv::DedupHashTableUnorderedSet", &DedupHashTable::type, {}};

namespace {

U64 placeByHash(const DedupHandle& member, U64 seed) { return placeOf(member.hash(), seed); }

constexpr U32 fewestPlaces = 8;
constexpr U32 fewestKept = 64;  // a shard as small as this is not worth giving back

// At most two thirds of the places are taken, so a probe always meets a free one.
constexpr bool isFull(U32 size, U32 places) { return U64(size) * 3 > U64(places) * 2; }

}  // namespace

DedupHashTableUnorderedSet::Ptr DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(
    bool threadSafe) {
  return DedupHashTableUnorderedSetIs(threadSafe, {placeByHash, nullptr});
}

DedupHashTableUnorderedSet::Ptr DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(
    bool threadSafe, const DedupPlacement& placement) {
  return Mox::makeNew<DedupHashTableUnorderedSet>(threadSafe, placement);
}

DedupHashTableUnorderedSet::DedupHashTableUnorderedSet(bool threadSafe,
                                                       const DedupPlacement& placement)
    : placement_(placement),
      seed_(placementSeed()),
      threadSafe_(threadSafe),
      shards_(new Shard[1 << shardBits]) {}

Mox::Ptr<DedupHandle> DedupHashTableUnorderedSet::lookupByContent(const DedupContentHandle& content,
                                                                  U32 hash) const {
  const U64 place =
      placement_.ofContent ? placement_.ofContent(content, seed_) : placeOf(hash, seed_);
  auto found = lookup(place, [&](const DedupHandle& m) { return m.compareByContent(content); });
  if (found && found->hash() != hash) found = nullptr;
  return found;
}

Mox::Ptr<DedupHandle> DedupHashTableUnorderedSet::dedup(Mox::Ptr<DedupHandle> object) {
  MOX_ASSERT(object, "dedupHandle");
  assertMayEnter(*object);
  const U64 place = placement_.ofMember(*object, seed_);
  // The notifiee takes its memory only for an object that seems to be new: most are not.
  if (notifiee_)
    if (auto member = lookup(place, [&](const DedupHandle& m) { return m.compare(object.get()); }))
      return member;
  return dedup(std::move(object), place);
}

void DedupHashTableUnorderedSet::assertMayEnter(const DedupHandle& object) const {
  MOX_ASSERT(object.dedupState() == dedupHandleStateNeverDeduped() || object.dedupTable() == this,
             "dedupState() == Orv::dedupHandleStateNeverDeduped() || dedupTable() == this");
}

Mox::Ptr<DedupHandle> DedupHashTableUnorderedSet::enterUnlessEqual(DedupHandle& object, U64 place) {
  assertMayEnter(object);
  const U32 tag = tagOf(place);
  std::unique_ptr<DedupHashTableLifeTimeNotifiee::PreparedInsert> prepared;
  if (notifiee_) prepared = notifiee_->prepareInsert();  // while nothing has changed
  {
    Shard& shard = shardOf(place);
    const Guard guard(*this, shard);
    if (DedupHandle* member =
            find(shard, tag, [&](const DedupHandle& member) { return member.compare(&object); }))
      return Mox::Ptr<DedupHandle>::adopt(member);
    if (!reserveOne(shard)) throw std::bad_alloc();
    enter(object, bool(notifiee_));
    this->place(shard, Entry(tag, &object));
    ++shard.size;
  }
  interleave();
  // A member without its notifier could never leave: an exception ends the process.
  if (notifiee_)
    [&]() noexcept {
      const Mox::Ptr<DedupHandle> member(&object);
      notifiee_->handlePreparedInsert(member, std::move(prepared));
    }();
  return nullptr;
}

void DedupHashTableUnorderedSet::remove(DedupHandle* member) {
  const bool notified = member->haveLifeTimeNotifier();
  MOX_ASSERT(!notified || notifiee_, "__null != lifeTimeNotifiee");
  const U64 place = placement_.ofMember(*member, seed_);
  {
    Shard& shard = shardOf(place);
    const Guard guard(*this, shard);
    erase(shard, Entry(tagOf(place), member));
    leave(*member);
  }
  interleave();
  if (notified) notifiee_->handleRemove(member);
  interleave();
  end(*member);
}

void DedupHashTableUnorderedSet::lifeTimeNotifieeIs(
    Mox::Ptr<const DedupHashTableLifeTimeNotifiee> notifiee) {
  MOX_ASSERT(members() == 0 && !notifiee_, "members() == 0 && __null == lifeTimeNotifiee");
  notifiee_ = std::move(notifiee);
}

// Members are left to their holders first, so that the notifiers' releases count plainly; then the
// notifiee hears of the end, and last the table's own references go.
DedupHashTableUnorderedSet::~DedupHashTableUnorderedSet() {
  visitMembers([](DedupHandle& member) { detach(member); });
  if (notifiee_) {
    const ConstructionGuard guard(*this);  // or the pointer made next would end the table once more
    notifiee_->handleNotificationStop(Mox::Ptr<const DedupHashTable>(this));
  }
  visitMembers([](DedupHandle& member) { member.referencesDec(); });
}

void DedupHashTableUnorderedSet::visitMembers(
    const std::function<void(DedupHandle&)>& visit) const {
  for (const Shard& shard : shards())
    for (U32 i = 0; shard.size && i < shard.places; ++i)
      if (shard.entries[i]) visit(*shard.entries[i].pointer());
}

U64 DedupHashTableUnorderedSet::members() const {
  U64 sum = 0;
  for (Shard& shard : shards()) {
    const Guard guard(*this, shard);
    sum += shard.size;
  }
  return sum;
}

U64 DedupHashTableUnorderedSet::octets() const {
  U64 sum = sizeof *this + shards().size_bytes();
  for (Shard& shard : shards()) {
    const Guard guard(*this, shard);
    sum += U64(shard.places) * sizeof(Entry);
  }
  return sum;
}

void DedupHashTableUnorderedSet::place(Shard& shard, Entry entry) {
  U32 i = shard.home(entry.tag());
  while (shard.entries[i]) i = shard.next(i);
  shard.entries[i] = entry;
}

bool DedupHashTableUnorderedSet::reserveOne(Shard& shard) {
  if (!isFull(shard.size + 1, shard.places)) return true;
  return resize(shard, std::max(shard.places + shard.places / 2, fewestPlaces));
}

// False, and nothing changed, when there is no memory: growing fails then, shrinking is put off.
bool DedupHashTableUnorderedSet::resize(Shard& shard, U32 places) {
  std::unique_ptr<Entry[]> entries(new (std::nothrow) Entry[places]);
  if (!entries) return false;
  entries.swap(shard.entries);
  const U32 oldPlaces = std::exchange(shard.places, places);
  for (U32 i = 0; i < oldPlaces; ++i)
    if (entries[i]) place(shard, entries[i]);
  return true;
}

// Takes the member out and moves back every later one of the same run that may stand further
// forward, so that no probe meets a hole before its goal.
void DedupHashTableUnorderedSet::erase(Shard& shard, Entry entry) {
  U32 hole = shard.home(entry.tag());
  while (shard.entries[hole] != entry) {
    MOX_ASSERT(shard.entries[hole], "member is in its table");
    hole = shard.next(hole);
  }
  for (U32 i = shard.next(hole); shard.entries[i]; i = shard.next(i)) {
    const U32 home = shard.home(shard.entries[i].tag());
    if (shard.steps(home, i) < shard.steps(hole, i)) continue;
    shard.entries[hole] = shard.entries[i];
    hole = i;
  }
  shard.entries[hole] = {};
  --shard.size;
  // A quarter of the places at a sixteenth leaves a quarter taken: no step back and forth.
  if (shard.places > fewestKept && U64(shard.size) * 16 <= shard.places)
    resize(shard, shard.places / 4);
}

}  // namespace Orv

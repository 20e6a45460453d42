#include "Orv/DedupHashTableUnorderedSet.h"

#include <new>

namespace Orv {

const Mox::Type DedupHashTableUnorderedSet::type{
    "Orv::DedupHashTableUnorderedSet", &DedupHashTable::type, {}};

namespace {

U64 placeByHash(const DedupHandle& member, U64 seed) { return placeOf(member.hash(), seed); }

constexpr U32 threadSafeShardBits = 6;
constexpr U32 fewestPlaces = 8;
constexpr U32 fewestKept = 64;  // a shard as small as this is not worth giving back

// At most seven eighths of the places are taken, so a probe always meets a free one.
constexpr bool isFull(U32 size, U32 places) { return U64(size) * 8 > U64(places) * 7; }

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
      shardBits_(threadSafe ? threadSafeShardBits : 0),
      shards_(new Shard[shardCount()]) {}

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
  const U64 place = placement_.ofMember(*object, seed_);
  return dedup(std::move(object), place);
}

Mox::Ptr<DedupHandle> DedupHashTableUnorderedSet::dedup(Mox::Ptr<DedupHandle> object, U64 place) {
  MOX_ASSERT(object, "dedupHandle");
  MOX_ASSERT(object->dedupState() == dedupHandleStateNeverDeduped() || object->dedupTable() == this,
             "dedupState() == Orv::dedupHandleStateNeverDeduped() || dedupTable() == this");
  const DedupHandle* const raw = object.get();
  const U32 tag = tagOf(place);
  const auto isEqual = [raw](const DedupHandle& member) { return member.compare(raw); };
  std::unique_ptr<DedupHashTableLifeTimeNotifiee::PreparedInsert> prepared;
  if (notifiee_) {
    // The notifiee takes its memory while nothing has changed, and only for an object that seems
    // to be new: most are not.
    if (Mox::Ptr<DedupHandle> member = lookup(place, isEqual)) return member;
    prepared = notifiee_->prepareInsert();
  }
  {
    Shard& shard = shardOf(place);
    const Guard guard(*this, shard);
    if (DedupHandle* member = find(shard, tag, isEqual))
      return Mox::Ptr<DedupHandle>::adopt(member);  // `object` dies with the call, unlocked
    if (!reserveOne(shard)) throw std::bad_alloc();
    enter(*object, bool(notifiee_));
    this->place(shard, tag, object.get());
    ++shard.size;
  }
  interleave();
  // A member without its notifier could never leave: an exception ends the process.
  if (notifiee_) [&]() noexcept { notifiee_->handlePreparedInsert(object, std::move(prepared)); }();
  return object;
}

void DedupHashTableUnorderedSet::remove(DedupHandle* member) {
  const bool notified = member->haveLifeTimeNotifier();
  MOX_ASSERT(!notified || notifiee_, "__null != lifeTimeNotifiee");
  const U64 place = placement_.ofMember(*member, seed_);
  {
    Shard& shard = shardOf(place);
    const Guard guard(*this, shard);
    erase(shard, tagOf(place), member);
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
  for (U32 s = 0; s < shardCount(); ++s)
    for (U32 i = 0; shards_[s].size && i <= shards_[s].mask; ++i)
      if (shards_[s].tags[i]) visit(*shards_[s].members[i]);
}

U64 DedupHashTableUnorderedSet::members() const {
  U64 sum = 0;
  for (U32 s = 0; s < shardCount(); ++s) {
    const Guard guard(*this, shards_[s]);
    sum += shards_[s].size;
  }
  return sum;
}

U64 DedupHashTableUnorderedSet::octets() const {
  U64 sum = sizeof *this + shardCount() * sizeof(Shard);
  for (U32 s = 0; s < shardCount(); ++s) {
    const Guard guard(*this, shards_[s]);
    if (shards_[s].tags) sum += (U64(shards_[s].mask) + 1) * (sizeof(U32) + sizeof(DedupHandle*));
  }
  return sum;
}

void DedupHashTableUnorderedSet::place(Shard& shard, U32 tag, DedupHandle* member) {
  U32 i = tag & shard.mask;
  while (shard.tags[i]) i = (i + 1) & shard.mask;
  shard.tags[i] = tag;
  shard.members[i] = member;
}

bool DedupHashTableUnorderedSet::reserveOne(Shard& shard) {
  const U32 places = shard.tags ? shard.mask + 1 : 0;
  if (places && !isFull(shard.size + 1, places)) return true;
  return resize(shard, places ? 2 * places : fewestPlaces);
}

// False, and nothing changed, when there is no memory: growing fails then, shrinking is put off.
bool DedupHashTableUnorderedSet::resize(Shard& shard, U32 places) {
  std::unique_ptr<U32[]> tags(new (std::nothrow) U32[places]());
  std::unique_ptr<DedupHandle*[]> members(new (std::nothrow) DedupHandle*[places]);
  if (!tags || !members) return false;
  const U32 oldPlaces = shard.tags ? shard.mask + 1 : 0;
  tags.swap(shard.tags);
  members.swap(shard.members);
  shard.mask = places - 1;
  for (U32 i = 0; i < oldPlaces; ++i)
    if (tags[i]) place(shard, tags[i], members[i]);
  return true;
}

// Takes the member out and moves back every later one of the same run that may stand further
// forward, so that no probe meets a hole before its goal.
void DedupHashTableUnorderedSet::erase(Shard& shard, U32 tag, const DedupHandle* member) {
  U32 hole = tag & shard.mask;
  while (shard.tags[hole] != tag || shard.members[hole] != member) {
    MOX_ASSERT(shard.tags[hole], "member is in its table");
    hole = (hole + 1) & shard.mask;
  }
  for (U32 i = (hole + 1) & shard.mask; shard.tags[i]; i = (i + 1) & shard.mask) {
    const U32 home = shard.tags[i] & shard.mask;
    if (((i - home) & shard.mask) < ((i - hole) & shard.mask)) continue;
    shard.tags[hole] = shard.tags[i];
    shard.members[hole] = shard.members[i];
    hole = i;
  }
  shard.tags[hole] = 0;
  --shard.size;
  // A quarter of the places at a sixteenth leaves a quarter taken: no step back and forth.
  if (shard.mask + 1 > fewestKept && U64(shard.size) * 16 <= shard.mask)
    resize(shard, (shard.mask + 1) / 4);
}

}  // namespace Orv

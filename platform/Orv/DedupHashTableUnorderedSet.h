// The intern table there is: shards, each an open-addressing set with linear probing.
//
// A shard keeps two arrays side by side, 32-bit tags and members; a probe runs along the tags and
// touches an object only where the tag is right. Tag 0 is a free place. Deletion shifts back, so
// there are no tombstones and a table that has seen much is as quick as a new one.
//
// Cost: one lock and one or two cache lines of tags for a look-up; growing doubles a shard, so an
// insertion costs a constant on average. Octets: 12 for each place on 64 bits, at most seven
// eighths of the places taken.
//
// Lock order: a shard's lock is taken with nothing held, and while it is held nothing is called but
// the equality of members. It guards the three steps that nobody may see half done: a look-up takes
// its reference, an object becomes a member, a member is erased.
#pragma once

#include <memory>

#include "Orv/DedupHashTable.h"
#include "Orv/Placement.h"
#include "Orv/ShardLock.h"

namespace Orv {

class DedupHashTableUnorderedSet final
    : public Mox::Entity<DedupHashTableUnorderedSet, DedupHashTable> {
 public:
  static const Mox::Type type;

  /// A new table. Thread-safe ones have 64 shards, each with a lock; others one and none. Without
  /// a placement, members are placed by their `hash()`. A table whose placement has no `ofContent`
  /// looks contents up by the hash too, and so finds none that `ofMember` placed otherwise.
  static Ptr DedupHashTableUnorderedSetIs(bool threadSafe);
  static Ptr DedupHashTableUnorderedSetIs(bool threadSafe, const DedupPlacement& placement);

  DedupHashTableUnorderedSet(bool threadSafe, const DedupPlacement& placement);
  ~DedupHashTableUnorderedSet() override;

  Mox::Ptr<DedupHandle> lookupByContent(const DedupContentHandle& content, U32 hash) const override;
  Mox::Ptr<DedupHandle> dedup(Mox::Ptr<DedupHandle> object) override;
  void lifeTimeNotifieeIs(Mox::Ptr<const DedupHashTableLifeTimeNotifiee> notifiee) override;
  void visitMembers(const std::function<void(DedupHandle&)>& visit) const override;
  U64 members() const override;
  U64 octets() const override;

  // For callers that know how the table places: one place serves look-up and insertion.
  // REQUIRES: `place` is that of the table's placement under `seed()`.

  /// The seed for placing in this table.
  U64 seed() const { return seed_; }
  /// The member at `place` for which `equal(member)` holds, or null. Allocates nothing. `equal`
  /// runs under a lock. REQUIRES: it reads the member, no more.
  template <class Equal>
  Mox::Ptr<DedupHandle> lookup(U64 place, Equal equal) const {
    Shard& shard = shardOf(place);
    const Guard guard(*this, shard);
    return Mox::Ptr<DedupHandle>::adopt(find(shard, tagOf(place), equal));
  }
  /// As `dedup(object)`, whose place is known.
  Mox::Ptr<DedupHandle> dedup(Mox::Ptr<DedupHandle> object, U64 place);

 private:
  // `mask` is the number of places less one. All is zero and null until the first member comes. A
  // shard has a cache line of its own, so that locks of two threads do not share one.
  struct alignas(64) Shard {
    ShardLock lock;
    U32 mask = 0;
    U32 size = 0;
    std::unique_ptr<U32[]> tags;
    std::unique_ptr<DedupHandle*[]> members;
  };
  class Guard {
   public:
    Guard(const DedupHashTableUnorderedSet& table, Shard& shard)
        : lock_(table.shardBits_ ? &shard.lock : nullptr) {
      if (lock_) lock_->lock();
    }
    ~Guard() {
      if (lock_) lock_->unlock();
    }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

   private:
    ShardLock* lock_;
  };

  // The lower 32 bits of a place are the tag; the upper ones of these choose the shard.
  Shard& shardOf(U64 place) const {
    return shards_[shardBits_ ? U32(place) >> (32 - shardBits_) : 0];
  }
  static U32 tagOf(U64 place) { return U32(place) ? U32(place) : 1; }
  U32 shardCount() const { return 1u << shardBits_; }

  // A member that is dying is passed by. The reference taken belongs to the caller.
  template <class Equal>
  static DedupHandle* find(Shard& shard, U32 tag, Equal equal) {
    if (!shard.size) return nullptr;
    for (U32 i = tag & shard.mask; shard.tags[i]; i = (i + 1) & shard.mask)
      if (shard.tags[i] == tag && equal(*shard.members[i]) &&
          shard.members[i]->referencesIncIfAlive())
        return shard.members[i];
    return nullptr;
  }
  static bool reserveOne(Shard& shard);
  static bool resize(Shard& shard, U32 places);
  static void place(Shard& shard, U32 tag, DedupHandle* member);
  static void erase(Shard& shard, U32 tag, const DedupHandle* member);
  void remove(DedupHandle* member) override;

  const DedupPlacement placement_;
  const U64 seed_;
  const U32 shardBits_;
  const std::unique_ptr<Shard[]> shards_;
  Mox::Ptr<const DedupHashTableLifeTimeNotifiee> notifiee_;  // set before the first member
};

}  // namespace Orv

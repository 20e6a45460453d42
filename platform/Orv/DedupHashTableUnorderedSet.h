// The intern table there is: shards, each an open-addressing set with linear probing.
//
// Each place of a shard is one word, a member's address with the member's tag in front of it. A
// probe runs along the words and touches an object only where the tag is right. Deletion shifts
// back, so there are no tombstones and a table that has seen much is as quick as a new one.
//
// Cost: one lock and one or two cache lines of places for a look-up; a shard grows by half, so an
// insertion costs a constant on average. Octets: 8 for each place, of which four ninths to two
// thirds are taken in a table that has only grown: 12 to 18 a member.
//
// Lock order: a shard's lock is taken with nothing held, and while it is held nothing is called but
// the equality of members, and `operator new` and `delete` for the places. It guards the three
// steps that nobody may see half done: a look-up takes its reference, an object becomes a member, a
// member is erased.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "Mox/TaggedPointer.h"
#include "Orv/DedupHashTable.h"
#include "Orv/Placement.h"
#include "Orv/ShardLock.h"

namespace Orv {

class DedupHashTableUnorderedSet final
    : public Mox::Entity<DedupHashTableUnorderedSet, DedupHashTable> {
 public:
  static const Mox::Type type;

  /// A new table of 64 shards, each with a lock, which only thread-safe tables take. Without a
  /// placement, members are placed by their `hash()`. A table whose placement has no `ofContent`
  /// looks contents up by the hash too, and so finds none that `ofMember` placed otherwise.
  static Ptr DedupHashTableUnorderedSetIs(bool threadSafe);
  /// The same with a placement.
  static Ptr DedupHashTableUnorderedSetIs(bool threadSafe, const DedupPlacement& placement);

  /// As `DedupHashTableUnorderedSetIs`, which turns notifications on as well.
  DedupHashTableUnorderedSet(bool threadSafe, const DedupPlacement& placement);
  ~DedupHashTableUnorderedSet() override;

  Mox::Ptr<DedupHandle> lookupByContent(const DedupContentHandle& content, U32 hash) const override;
  Mox::Ptr<DedupHandle> dedup(Mox::Ptr<DedupHandle> object) override;
  void lifeTimeNotifieeIs(Mox::Ptr<const DedupHashTableLifeTimeNotifiee> notifiee) override;
  void visitMembers(const std::function<void(DedupHandle&)>& visit) const override;
  U64 members() const override;
  U64 octets() const override;
  /// Whether it takes its locks.
  bool threadSafe() const { return threadSafe_; }

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
  /// As `dedup(object)`, whose place is known and at which nothing equal was found.
  Mox::Ptr<DedupHandle> dedup(Mox::Ptr<DedupHandle> object, U64 place) {
    MOX_ASSERT(object, "dedupHandle");
    if (Mox::Ptr<DedupHandle> equal = enterUnlessEqual(*object, place)) return equal;
    return object;
  }
  /// The same for an object that stays with the caller: makes it a member and returns null, or
  /// returns the member that is equal.
  Mox::Ptr<DedupHandle> enterUnlessEqual(DedupHandle& object, U64 place);

 private:
  // 64 shards times 2^19 tags: beyond 33 million members several share a tag, and probes get
  // longer.
  /// A place of a shard: free, or a member with its tag.
  using Entry = Mox::TaggedPointer<DedupHandle>;
  static constexpr U32 shardBits = 6, tagBits = Entry::tagBits;
  static_assert(alignof(DedupHandle) % alignof(void*) == 0);

  // All is zero and null until the first member comes. A shard has a cache line of its own, so that
  // locks of two threads do not share one.
  struct alignas(64) Shard {
    ShardLock lock;
    U32 places = 0;
    U32 size = 0;
    std::unique_ptr<Entry[]> entries;

    /// The place at which a probe for a tag begins. Tags that rise have homes that rise, so a shard
    /// grows from its first place to its last, and may have any number of places.
    U32 home(U32 tag) const { return U32(U64{tag} * places >> tagBits); }
    U32 next(U32 i) const { return i + 1 == places ? 0 : i + 1; }
    /// How many steps lead from one place to another.
    U32 steps(U32 from, U32 to) const { return to - from + (to < from ? places : 0); }
  };
  class Guard {
   public:
    Guard(const DedupHashTableUnorderedSet& table, Shard& shard)
        : lock_(table.threadSafe_ ? &shard.lock : nullptr) {
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

  // The lower 32 bits of a place count. The upper six of these choose the shard, the next are the
  // tag.
  Shard& shardOf(U64 place) const { return shards_[U32(place) >> (32 - shardBits)]; }
  static U32 tagOf(U64 place) { return U32(place) << shardBits >> (32 - tagBits); }
  std::span<Shard> shards() const { return {shards_.get(), std::size_t{1} << shardBits}; }

  // A member that is dying is passed by. The reference taken belongs to the caller.
  template <class Equal>
  static DedupHandle* find(const Shard& shard, U32 tag, Equal equal) {
    if (!shard.size) return nullptr;
    for (U32 i = shard.home(tag); shard.entries[i]; i = shard.next(i)) {
      if (shard.entries[i].tag() != tag) continue;
      DedupHandle* const member = shard.entries[i].pointer();
      if (equal(*member) && member->referencesIncIfAlive()) return member;
    }
    return nullptr;
  }
  void assertMayEnter(const DedupHandle& object) const;
  static bool reserveOne(Shard& shard);
  static bool resize(Shard& shard, U32 places);
  static void place(Shard& shard, Entry entry);
  static void erase(Shard& shard, Entry entry);
  void remove(DedupHandle* member) override;

  const DedupPlacement placement_;
  const U64 seed_;
  const bool threadSafe_;
  const std::unique_ptr<Shard[]> shards_;
  Mox::Ptr<const DedupHashTableLifeTimeNotifiee> notifiee_;  // set before the first member
};

}  // namespace Orv

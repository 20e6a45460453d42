// All that tests of the platform include, and the simplest interned value: a number.
#pragma once

#include <algorithm>
#include <bit>
#include <cstring>
#include <latch>
#include <mutex>
#include <random>
#include <set>
#include <thread>

#include "Mox/NotifieeList.h"
#include "Mox/ValueText.h"
#include "MoxStash/DedupHandle.h"
#include "Orv/DedupHashTableUnorderedSet.h"
#include "tests/AllocationCounter.h"
#include "tests/ClassShape.h"
#include "tests/Texts.h"

using Mox::U8, Mox::U16, Mox::U32, Mox::U64;

struct Thing final : Mox::Entity<Thing, MoxStash::DedupHandle> {
  static inline const Mox::Type type{"test::Thing", &MoxStash::DedupHandle::type, {}};
  static inline std::atomic<int> alive{0};
  static inline U32 hashes = ~0u;  ///< so many are in use; with 1, all things collide

  using PtrInterface::deletionMarkIs;

  explicit Thing(U64 number) : content(number) { ++alive; }
  ~Thing() override {
    MOX_ASSERT(deletionMark(), "it is marked before it ends");
    content = ~U64{0};
    --alive;
  }
  U32 hash() const override { return U32(content % hashes); }
  bool compare(const Orv::DedupHandle* other) const override {
    return static_cast<const Thing*>(other)->content == content;
  }
  bool compareByContent(const Orv::DedupContentHandle& other) const override {
    return *static_cast<const U64*>(other.octets) == content;
  }

  U64 content;
};

using Table = Mox::Ptr<Orv::DedupHashTableUnorderedSet>;

/// Things are placed by content, as the library's own values are; all in the first shard if the
/// upper bits of their places are cleared.
template <U32 cleared = 0>
Table newTable(bool threadSafe = true) {
  return Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(
      threadSafe,
      {[](const Orv::DedupHandle& member, U64 seed) {
         return U64{U32(Orv::placeOf(static_cast<const Thing&>(member).content, seed)) >> cleared};
       },
       [](const Orv::DedupContentHandle& content, U64 seed) {
         return U64{U32(Orv::placeOf(*static_cast<const U64*>(content.octets), seed)) >> cleared};
       }});
}

inline Thing::Ptr lookup(const Table& table, U64 content) {
  return Mox::staticCast<Thing>(
      table->lookupByContent({&content, sizeof content}, U32(content % Thing::hashes)));
}

/// The way of every value: look up, and on a miss make one and hand it in.
inline Thing::Ptr intern(const Table& table, U64 content) {
  if (auto found = lookup(table, content)) return found;
  return Mox::staticCast<Thing>(table->dedup(Mox::makeNew<Thing>(content)));
}

/// Objects of a type that are alive, and their octets.
inline std::string counted(std::string_view type) {
  const Mox::AllocationCount count = Mox::allocationCount(type);
  return row(count.objects, count.octets);
}

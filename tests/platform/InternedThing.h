// The simplest interned value, for tests of the interning core: a number, and how it hashes.
#pragma once

#include <atomic>
#include <vector>

#include "MoxStash/DedupHandle.h"
#include "Orv/DedupHashTableUnorderedSet.h"

namespace interning {

using Mox::U32;
using Mox::U64;

class Thing : public Mox::Entity<Thing, MoxStash::DedupHandle> {
 public:
  static inline const Mox::Type type{"test::Thing", &MoxStash::DedupHandle::type, {}};
  static inline std::atomic<int> alive{0};

  /// Things of one table hash by content modulo this; 1 makes them all collide.
  explicit Thing(U64 content, U32 hashes = ~0u) : content_(content), hashes_(hashes) { ++alive; }
  ~Thing() override {
    content_ = ~U64{0};
    --alive;
  }

  U64 content() const { return content_; }
  U32 hash() const override { return U32(content_ % hashes_); }
  bool compare(const Orv::DedupHandle* other) const override {
    return static_cast<const Thing*>(other)->content_ == content_;
  }
  bool compareByContent(const Orv::DedupContentHandle& content) const override {
    return *static_cast<const U64*>(content.octets) == content_;
  }

 private:
  U64 content_;
  U32 hashes_;
};

using Table = Mox::Ptr<Orv::DedupHashTableUnorderedSet>;

/// Things placed by content, as the library's own values are.
inline const Orv::DedupPlacement byContent{
    [](const Orv::DedupHandle& member, U64 seed) {
      return Orv::placeOf(static_cast<const Thing&>(member).content(), seed);
    },
    [](const Orv::DedupContentHandle& content, U64 seed) {
      return Orv::placeOf(*static_cast<const U64*>(content.octets), seed);
    }};

inline Table newTable(bool threadSafe = true) {
  return Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(threadSafe, byContent);
}

inline Thing::Ptr lookup(const Table& table, U64 content, U32 hashes = ~0u) {
  return Mox::staticCast<Thing>(
      table->lookupByContent({&content, sizeof content}, U32(content % hashes)));
}

/// The way of every value: look up, and on a miss make one and hand it in.
inline Thing::Ptr intern(const Table& table, U64 content, U32 hashes = ~0u) {
  if (auto found = lookup(table, content, hashes)) return found;
  return Mox::staticCast<Thing>(table->dedup(Mox::makeNew<Thing>(content, hashes)));
}

}  // namespace interning

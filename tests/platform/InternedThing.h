// The simplest interned value, for tests of the interning core: a number.
#pragma once

#include <atomic>

#include "MoxStash/DedupHandle.h"
#include "Orv/DedupHashTableUnorderedSet.h"

namespace interning {

using Mox::U32, Mox::U64;

class Thing : public Mox::Entity<Thing, MoxStash::DedupHandle> {
 public:
  static inline const Mox::Type type{"test::Thing", &MoxStash::DedupHandle::type, {}};
  static inline std::atomic<int> alive{0};
  static inline U32 hashes = ~0u;  ///< so many are in use; with 1, all things collide

  static U32 hashOf(U64 content) { return U32(content % hashes); }

  using PtrInterface::deletionMarkIs;

  explicit Thing(U64 content) : content_(content) { ++alive; }
  ~Thing() override {
    MOX_ASSERT(deletionMark(), "it is marked before it ends");
    content_ = ~U64{0};
    --alive;
  }
  U64 content() const { return content_; }
  U32 hash() const override { return hashOf(content_); }
  bool compare(const Orv::DedupHandle* other) const override {
    return static_cast<const Thing*>(other)->content_ == content_;
  }
  bool compareByContent(const Orv::DedupContentHandle& content) const override {
    return *static_cast<const U64*>(content.octets) == content_;
  }

 private:
  U64 content_;
};

using Table = Mox::Ptr<Orv::DedupHashTableUnorderedSet>;

/// Things are placed by content, as the library's own values are.
inline Table newTable(bool threadSafe = true) {
  return Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(
      threadSafe, {[](const Orv::DedupHandle& member, U64 seed) {
                     return Orv::placeOf(static_cast<const Thing&>(member).content(), seed);
                   },
                   [](const Orv::DedupContentHandle& content, U64 seed) {
                     return Orv::placeOf(*static_cast<const U64*>(content.octets), seed);
                   }});
}

inline Thing::Ptr lookup(const Table& table, U64 content) {
  return Mox::staticCast<Thing>(
      table->lookupByContent({&content, sizeof content}, Thing::hashOf(content)));
}

/// The way of every value: look up, and on a miss make one and hand it in.
inline Thing::Ptr intern(const Table& table, U64 content) {
  if (auto found = lookup(table, content)) return found;
  return Mox::staticCast<Thing>(table->dedup(Mox::makeNew<Thing>(content)));
}

}  // namespace interning

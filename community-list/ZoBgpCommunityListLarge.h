// The large communities of a path (RFC 8092): one ascending list of values of three 32-bit words,
// shared by all paths that carry the same ones.
//
//   LargeCommListDedupTable::Ptr table = largeCommListDedupTableFactory();
//   LargeCommList::Ptr list = LargeCommList::LargeCommListIs();
//   list->commIs({4200000000, 5, 6});
//   list->commIs({65000, 1, 2});
//   LargeCommList::PtrConst shared = list->dedup(table);
//   shared->commsStringForm();  // "65000:1:2 4200000000:5:6"
//
// Invariants and threads are those of standard lists; see ZoBgpCommunityListStandard.h.
//
//   octets    0 ... 3            4 ... 7         8 ... 11
//            [global admin    ][local data 1 ][local data 2 ]
#pragma once

#include <ostream>

#include "ZoFmt/StackBackedBuffer.h"
#include "agent/CommunitySnapshotFlags.h"
#include "community-list/ZoBgpCommunityListFlat.h"

namespace Routing::Bgp {

class LargeCommList;

/// The traits of large lists.
struct LargeCommTraits {
  using Value = Acl::CommunityValue;
  using Table = LargeCommListDedupTable;
  static constexpr BgpPathAttrType attribute = BgpPathAttrType::largeCommunity;

  /// Nothing: a list keeps no answers.
  struct Cached {
    Cached() = default;
    /// As the base of flat lists calls it.
    explicit Cached(const LargeCommList&) {}
  };
};

extern template class FlatCommList<LargeCommList, LargeCommTraits>;

class LargeCommList final : public FlatCommList<LargeCommList, LargeCommTraits> {
 public:
  static const Mox::Type type;

  /// A new, empty list.
  static Ptr LargeCommListIs() { return Mox::makeNew<LargeCommList>(); }
  /// A private list as it lies in the store, its order and flag kept; the caller interns it.
  /// StoreException when the record is damaged.
  static Ptr destash(MoxStash::StoreReference stored, const MoxStash::StoreManager& manager);

  /// `65000:1:2 4200000000:5:6`: decimal numbers, values separated by single spaces.
  Mox::String commsStringForm() const;
  /// The same, appended to a string of the caller's, which saves a string for each list.
  void appendCommsStringForm(Mox::String& to) const;
  /// The same, also of a list still being built, in its present order.
  Mox::String toStrep() const;

  /// One value. With `asdot`, a global administrator of 65536 and more as two halves with a dot
  /// between them (RFC 5396): `64086.59904:5:6`.
  static Mox::String displayString(const Acl::CommunityValue& value, bool asdot);
  /// One value in decimal: `4200000000:5:6`.
  static Mox::String getStringValue(const Acl::CommunityValue& value) {
    return displayString(value, false);
  }

  /// A mutable copy, of policy's own type.
  Mox::Ptr<RouteMap::CommListSnapshot> commSnapshot() const;
};

/// Writes `toStrep()`; nothing for a null list. The stream's format has no effect.
std::ostream& operator<<(std::ostream& stream, const LargeCommList* list);

/// Text of single large communities.
struct LargeCommunityFormatter {
  /// Appends what `displayString` gives and returns the number of characters, at most 33.
  static U32 format(ZoFmt::DynamicBufferInterface& buffer, const Acl::CommunityValue& value,
                    bool asdot);
};

}  // namespace Routing::Bgp

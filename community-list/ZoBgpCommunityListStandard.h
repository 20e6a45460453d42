// The standard communities of a path (RFC 1997): one ascending list of 32-bit values, shared by all
// paths that carry the same ones.
//
//   CommListDedupTable::Ptr table = commListDedupTableFactory();
//   CommList::Ptr list = CommList::CommListIs();
//   list->commIs(0xFFFFFF01);
//   list->commIs(65000u << 16 | 100);
//   CommList::PtrConst shared = list->dedup(table);
//   shared->commsWellKnownStringForm();  // "65000:100 no-export"
//   shared->noExport();                  // true
//
// 1. A list is private and grows until `dedup`; then it is sorted, without repeats, immutable.
// 2. Lists of one table are equal exactly when they are the same object.
// 3. Text is never cut, whatever its length; `serialize` gives the attribute that all paths of the
//    list send.
//
// Threads: a list being built belongs to one thread; an interned one may be read from any.
#pragma once

#include <ostream>

#include "ZoFmt/StackBackedBuffer.h"
#include "community-list/ZoBgpCommunityListFlat.h"
#include "community/ZoBgpCommunityWellKnown.h"

namespace Routing::Bgp {

class CommList;
class CommListSnapshot;

/// The traits of standard lists.
struct StandardCommTraits {
  using Value = U32;  ///< AS number times 65536 plus a value of that AS's choosing
  using Table = CommListDedupTable;
  static constexpr BgpPathAttrType attribute = BgpPathAttrType::community;

  /// The answers that a list keeps, found once.
  struct Cached {
    Cached() = default;
    /// Looks for the three values.
    explicit Cached(const CommList& list);
    bool noExport = false, noAdvertise = false, noExportSubconfed = false;
  };
};

extern template class FlatCommList<CommList, StandardCommTraits>;

class CommList final : public FlatCommList<CommList, StandardCommTraits> {
 public:
  static const Mox::Type type;

  /// A new, empty list.
  static Ptr CommListIs() { return Mox::makeNew<CommList>(); }
  /// A private list as it lies in the store, its order and flag kept; the caller interns it.
  /// StoreException when the record is damaged.
  static Ptr destash(MoxStash::StoreReference stored, const MoxStash::StoreManager& manager);

  // Whether the list holds 0xFFFFFF01, 02 or 03; O(1). REQUIRES: the list is interned. Asserts
  // "... dedupState() != Orv::dedupHandleStateNeverDeduped()".
  bool noExport() const { return cached().noExport; }
  bool noAdvertise() const { return cached().noAdvertise; }
  bool noExportSubconfed() const { return cached().noExportSubconfed; }

  /// `65000:100 65535:65281`: numbers only, separated by single spaces.
  Mox::String commsStringForm() const;
  /// `65000:100 no-export`: the same, but well-known values by name.
  Mox::String commsWellKnownStringForm() const;
  // The same two, appended to a string of the caller's, which saves a string for each list.
  void appendCommsStringForm(Mox::String& to) const;
  void appendCommsWellKnownStringForm(Mox::String& to) const;
  /// As `commsWellKnownStringForm`, and also of a list still being built, in its present order.
  Mox::String toStrep() const;

  /// The name of a well-known value; empty for every other.
  static Mox::String wellKnownName(U32 value);
  /// One value as numbers: `65000:100`.
  static Mox::String getStringValue(U32 value);

  /// A mutable copy.
  Mox::Ptr<CommListSnapshot> commSnapshot() const;
};

/// Writes `toStrep()`; nothing for a null list. The stream's format has no effect.
std::ostream& operator<<(std::ostream& stream, const CommList* list);

/// Text of single communities. The parameter has one value; others are not defined.
template <bool>
struct CommunityFormatter;
/// With names.
template <>
struct CommunityFormatter<true> {
  /// Appends `65000:100` and returns the number of characters, at most 11.
  static U32 formatNotWellKnown(ZoFmt::DynamicBufferInterface& buffer, U32 value);
};

}  // namespace Routing::Bgp

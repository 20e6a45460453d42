// The IPv6-address-specific extended communities of a path (RFC 5701), in a list that all paths of
// the same ones share.
//
//   ExtCommIp6ListDedupTable::Ptr table = extCommIp6ListDedupTableFactory();
//   ExtCommIp6List::Ptr list = extCommIp6ListFactory();
//   list->commIs(ExtCommIp6::dedupContent(values.get(), {0x00, 0x02, address, 100}));
//   ExtCommIp6List::PtrConst shared = list->dedup(table);
//   shared->commsStringForm();   // "2001:db8::1:100 ", the space behind it too
//
// ZoBgpCommunityListFamilyList.h says what lists do.
#pragma once

#include "ip6/ExtCommIp6ClassificationList.h"

namespace Routing::Bgp {

/// Groups by classification, as long as the highest one that is present plus one.
using ExtCommIp6ClassificationListVector = ExtCommGroupVector<ExtCommIp6ClassificationList>;

class ExtCommIp6List final : public ExtCommListOf<ExtCommIp6ListFamily> {
 public:
  static const Mox::Type type;

  /// The communities themselves. Valid as long as the list.
  const ExtCommVector<ExtCommIp6>* commVectorRawPtr() const { return &comm_; }
  /// The same, to be appended to. REQUIRES: the list is not interned. Asserts
  /// "... dedupState() == Orv::dedupHandleStateNeverDeduped()".
  ExtCommVector<ExtCommIp6>* commVectorRawPtrNonConst();
};

/// A mutable copy of a list.
class ExtCommIp6ListSnapshot final
    : public ExtCommListSnapshotOf<ExtCommIp6ListSnapshot, ExtCommIp6,
                                   ExtCommIp6ClassificationList> {
 public:
  static const Mox::Type type;
};

/// A new, empty list.
ExtCommIp6List::Ptr extCommIp6ListFactory();

}  // namespace Routing::Bgp

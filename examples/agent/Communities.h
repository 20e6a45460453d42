// What an agent keeps of the communities of a path: one pointer per kind, to a list that all paths
// with the same communities share.
//
//   Tables tables;   // once, before the threads start
//   Communities path;
//   if (const auto fault = readCommunities(tables, attributes, path)) log(fault->toStrep());
#pragma once

#include "community-list/ZoBgpCommunityList.h"
#include "ip6/ExtCommIp6DedupTable.h"
#include "ip6/ExtCommIp6ListDedupTable.h"
#include "parse/BgpParseExtComm.h"
#include "tools/bgpcomm/Attributes.h"

namespace example {

using namespace Mox::Words;
using namespace Routing::Bgp;

/// Everything that is shared, each built on what stands before it. All threads use it as it is:
/// unless the environment says otherwise, tables lock inside.
struct Tables {
  // What a single extended community means. Plug-ins of one's own would be added to it here.
  BgpParseExtCommContainerSm::Ptr parser = bgpParseExtCommContainerSmFactory();

  // Extended communities, one object per content; the others are plain numbers inside their lists.
  ExtCommDedupTable::Ptr extComms = extCommDedupTableFactory(parser->extCommParser());
  ExtCommIp6DedupTable::Ptr extCommsIp6 = extCommIp6DedupTableFactory(parser->extCommParser());

  // Lists, one object per set of communities.
  CommListDedupTable::Ptr commLists = commListDedupTableFactory();
  LargeCommListDedupTable::Ptr largeCommLists = largeCommListDedupTableFactory();
  ExtCommListDedupTable::Ptr extCommLists = extCommListDedupTableFactory();
  ExtCommIp6ListDedupTable::Ptr extCommIp6Lists = extCommIp6ListDedupTableFactory();
};

/// Of one path; null where it has none of a kind. Copies are cheap, and the last one to go takes
/// the list with it.
struct Communities {
  CommList::PtrConst standard;
  LargeCommList::PtrConst large;
  ExtCommList::PtrConst extended;
  ExtCommIp6List::PtrConst extendedIp6;
};

/// Of an attribute given twice the first counts (RFC 7606, section 3).
template <class List>
std::optional<WireFault> keepFirst(FromWire<const List> read, Mox::Ptr<const List>& list) {
  if (list) return std::nullopt;
  list = std::move(read.list);
  return read.fault;
}

/// The lists of a path, interned. When they are known already, as those of most paths are, nothing
/// is allocated. What is wrong with the first attribute that no list can be made of, if one is.
inline std::optional<WireFault> readCommunities(const Tables& tables, bgpcomm::Octets attributes,
                                                Communities& path) {
  std::optional<WireFault> fault;
  bgpcomm::Cursor in(attributes);
  while (!in.atEnd() && !fault) {
    const bgpcomm::AttributeHeader header = takeAttributeHeader(in);
    const bgpcomm::Octets value = in.take(header.length);
    if (!in) break;  // none of a list's business: the attributes do not fit their message
    switch (BgpPathAttrType(header.type)) {
      case BgpPathAttrType::community:
        fault = keepFirst(CommList::dedupWire(tables.commLists, value), path.standard);
        break;
      case BgpPathAttrType::largeCommunity:
        fault = keepFirst(LargeCommList::dedupWire(tables.largeCommLists, value), path.large);
        break;
      case BgpPathAttrType::extCommunity:
        fault = keepFirst(ExtCommList::dedupWire(tables.extCommLists, tables.extComms, value),
                          path.extended);
        break;
      case BgpPathAttrType::extCommunityIp6:
        fault =
            keepFirst(ExtCommIp6List::dedupWire(tables.extCommIp6Lists, tables.extCommsIp6, value),
                      path.extendedIp6);
        break;
      default:
        break;
    }
  }
  return fault;
}

/// An import policy. Interned lists do not change: an edit makes another list, of a snapshot.
inline CommList::PtrConst withoutNoExport(const Tables& tables, const CommList::PtrConst& list) {
  if (!list || !list->noExport()) return list;
  const CommListSnapshot::Ptr snapshot = list->commSnapshot();
  snapshot->commDel(communityNoExport);
  if (snapshot->comms().empty()) return nullptr;  // no attribute, rather than one of no octets
  const CommList::Ptr edited = CommList::CommListIs();
  for (const auto& [value, flag] : snapshot->comms()) edited->commIs(value);
  return edited->dedup(tables.commLists);
}

}  // namespace example

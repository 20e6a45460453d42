// The communities of a path: one pointer for each type of list, shared with all other paths that
// carry the same ones.
//
//   PathCommunities path;
//   tables.readAll(attributes, path);       // see ZoBgpCommunityTables.h
//   path.list<CommList>()->noExport();      // null when the path has no such attribute
//   path == other                           // four pointers are compared
//
// 1. Lists of one `CommunityTables` are equal exactly when they are the same object, so paths are
//    equal exactly when they carry the same communities.
// 2. A copy costs four counts. The last path of a list to go takes the list with it.
// 3. The list types stand in `PathCommunities`, and nowhere else: tables, readers and stores follow
//    from it.
//
// Threads: a path belongs to one thread at a time; the lists may be shared by all.
#pragma once

#include <tuple>

#include "community-list/ZoBgpCommunityList.h"
#include "ip6/ExtCommIp6List.h"

namespace Routing::Bgp {

template <class... Lists>
class PathCommunitiesOf {
 public:
  /// The list of a type, or null.
  template <class List>
  const Mox::Ptr<const List>& list() const {
    return std::get<Mox::Ptr<const List>>(lists_);
  }
  /// Replaces the list of a type: by what a policy made of it, or by null for none. An attribute
  /// without communities is none, so an empty list is replaced by null too.
  template <class List>
  void listIs(Mox::Ptr<const List> list) {
    std::get<Mox::Ptr<const List>>(lists_) = list && !list->empty() ? std::move(list) : nullptr;
  }

  bool empty() const { return *this == PathCommunitiesOf(); }
  /// Calls `use(list)` for each list that is there.
  void forEachList(auto use) const { ((list<Lists>() ? use(list<Lists>()) : void()), ...); }
  /// Calls `use(list)` for each list type; with null when the path has none of it.
  void forEachType(auto use) const { (use(list<Lists>()), ...); }

  friend bool operator==(const PathCommunitiesOf&, const PathCommunitiesOf&) = default;

 private:
  std::tuple<Mox::Ptr<const Lists>...> lists_;
};

/// RFC 1997, RFC 4360, RFC 5701, RFC 8092.
using PathCommunities = PathCommunitiesOf<CommList, ExtCommList, ExtCommIp6List, LargeCommList>;

}  // namespace Routing::Bgp

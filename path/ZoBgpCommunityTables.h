// Everything that paths share, made in order: the parser of extended communities, the tables of
// their values, the tables of lists. The one object to begin with.
//
//   const CommunityTables tables;
//   PathCommunities path;
//   const PathFaults faults = tables.readAll(attributes, path);   // of an UPDATE, as received
//   if (faults.approach() == PathFaultApproach::treatAsWithdraw) log(faults.begin()->toStrep());
//   path.list<CommList>()->toStrep();                  // "65000:100 no-export"
//   path == other                                      // four pointers are compared
//   tables.of<CommList>().lists()->dedupHashTable()->members();   // distinct lists in use
//
// 1. Every list and every value exists once in one `CommunityTables`, as long as a path holds it.
//    Paths may outlive the tables.
// 2. Nothing that a peer sends is fatal: faults are values. A path whose communities are all known
//    is read without allocating.
// 3. A further list type stands in `PathCommunities`, and nowhere else.
//
// Threads: every member may be called from any, unless the environment says that there is one only
// (attr/ZoBgpGlobals.h). Plug-ins of one's own come before the first read: `parser()` belongs to
// one thread.
#pragma once

#include <bitset>

#include "Mox/ValueText.h"
#include "MoxStash/StoreFormat.h"
#include "ip6/ExtCommIp6DedupTable.h"
#include "ip6/ExtCommIp6ListDedupTable.h"
#include "parse/BgpParseExtComm.h"
#include "path/ZoBgpPathCommunities.h"
#include "path/ZoBgpPathFault.h"

namespace Routing::Bgp {

/// Whether the values of a list type are objects, interned in a table of their own.
template <class List>
concept InternsValues = requires {
  typename List::ValueTable;
};

namespace detail {
struct NoValueTable {};
template <class List>
auto valueTableOf() {
  if constexpr (InternsValues<List>)
    return typename List::ValueTable();
  else
    return NoValueTable();
}
}  // namespace detail
template <class List>
using ValueTableOf = decltype(detail::valueTableOf<List>());

/// The tables of one list type. Such a type has
///   pathAttribute            its path attribute, which is optional and transitive
///   Table                    pointer to its table, which derives from CommListDedupTableBase
///   ValueTable               pointer to the table of its values, made of a parse rule; without it
///                            values are plain numbers inside the lists
///   Value                    with ValueTable: the interned value, which has `recordType` and
///                            `destash` of its own
///   recordType               what its records in a store are of
///   dedupWire, dedupStored   see FlatCommList and ExtCommListOf
///   empty
template <class L>
class CommunityListTables {
 public:
  using List = L;
  /// Makes both. A table of values keeps the rule and parses new contents by it.
  explicit CommunityListTables(const BgpParseExtendedCommunityRule::Ptr& rule);

  /// The table of the lists.
  const typename List::Table& lists() const { return lists_; }
  /// The table of their values.
  const auto& values() const requires InternsValues<List> { return values_; }

  /// The interned list in an attribute's value, made if there is none, or the fault.
  FromWire<const List> dedupWire(std::span<const U8> octets) const;
  /// The interned list of a record. StoreException when the record is damaged.
  Mox::Ptr<const List> dedupStored(MoxStash::StoreReference stored,
                                   const MoxStash::StoreManager& store) const;
  /// Calls `use` with the interned list or value of a root of this type; says whether it is one.
  bool restore(const MoxStash::StoredRoot& root, const MoxStash::StoreManager& store,
               auto use) const;

 private:
  typename List::Table lists_;
  [[no_unique_address]] ValueTableOf<List> values_;
};

template <class Path>
class CommunityTablesOf;

/// Parser and tables for the list types of a path. ZoBgpCommunityTables.h has an example.
template <class... Lists>
class CommunityTablesOf<PathCommunitiesOf<Lists...>> {
 public:
  using Path = PathCommunitiesOf<Lists...>;
  using Parser = BgpParseExtCommContainerSm::Ptr;

  /// Tables that share a parser with others, by default with none. Each has its own values: the
  /// same list is another object in other tables. RangeException on a null parser.
  explicit CommunityTablesOf(Parser parser = bgpParseExtCommContainerSmFactory())
      : parser_(notNull(std::move(parser))), tables_(makeTables<Lists>(*parser_)...) {}
  CommunityTablesOf(const CommunityTablesOf&) = delete;
  CommunityTablesOf& operator=(const CommunityTablesOf&) = delete;

  /// Reads the value of one attribute, without its header, into the path. Attributes of other types
  /// are left alone; so is the list of a type that the path has already, which is a fault. After a
  /// fault the path is as before.
  std::optional<PathFault> read(BgpPathAttrType type, std::span<const U8> value, Path& path) const;

  /// Reads the path attributes of an UPDATE, without their total length, into the path.
  ///
  /// Attributes of other types are stepped over: their flags, values and repeats are for their own
  /// readers to judge. The path gets each list that can be made, also of an attribute with wrong
  /// flags and in front of an overrun: for a monitor, which looks at what there is; a speaker does
  /// as `PathFaults::approach` says. To withdraw, it needs all prefixes of the message (RFC 7606,
  /// section 3 j).
  PathFaults readAll(std::span<const U8> attributes, Path& path) const;

  /// The tables of a list type.
  template <class List>
  const CommunityListTables<List>& of() const {
    return std::get<CommunityListTables<List>>(tables_);
  }
  /// Calls `use(of<List>())` for each list type.
  void forEachKind(auto use) const { (use(of<Lists>()), ...); }

  /// Calls `use` with the interned list, or value, of a root; says whether the root is of a type
  /// that is known. StoreException when the store is damaged.
  bool restore(const MoxStash::StoredRoot& root, const MoxStash::StoreManager& store,
               auto use) const {
    return (of<Lists>().restore(root, store, use) || ...);
  }

  /// The parser, for plug-ins of one's own.
  const Parser& parser() const { return parser_; }

 private:
  /// Attributes that were there, and those whose repeat was told, by type code.
  struct Seen {
    std::bitset<256> once, twice;
  };
  static Parser notNull(Parser parser) {
    Mox::refuseNull(parser, "Routing::Bgp::CommunityTables", "parser");
    return parser;
  }
  template <class List>
  static CommunityListTables<List> makeTables(const BgpParseExtCommContainerSm& parser) {
    return CommunityListTables<List>(parser.extCommParser());
  }
  template <class List>
  std::optional<PathFault> readValue(std::span<const U8> value, Path& path) const;
  template <class List>
  void readOne(const PathAttribute& attribute, Path& path, Seen& seen, PathFaults& faults) const;

  const Parser parser_;
  const std::tuple<CommunityListTables<Lists>...> tables_;
};

template <class List>
bool CommunityListTables<List>::restore(const MoxStash::StoredRoot& root,
                                        const MoxStash::StoreManager& store, auto use) const {
  if (root.type == List::recordType) return use(dedupStored(root.reference, store)), true;
  if constexpr (InternsValues<List>) {
    using Value = typename List::Value;
    if (root.type == Value::recordType)
      return use(values_->dedupContent(Value::destash(root.reference, store)->getContent())), true;
  }
  return false;
}

extern template class CommunityListTables<CommList>;
extern template class CommunityListTables<ExtCommList>;
extern template class CommunityListTables<ExtCommIp6List>;
extern template class CommunityListTables<LargeCommList>;
extern template class CommunityTablesOf<PathCommunities>;

using CommunityTables = CommunityTablesOf<PathCommunities>;

}  // namespace Routing::Bgp

// The lists of one type that the paths of a file hold.
//
//   FileLists lists;                                  // of all types
//   const auto held = lists[type].hold(value);        // an attribute's value, of one path
//   ListFigures figures;
//   lists[type].figures(figures, 10);                 // with the ten most used values
#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Faults.h"
#include "KindUses.h"
#include "MoxStash/StoreWriter.h"
#include "ReaderNames.h"

namespace bgpcomm {

struct ValueUse {
  std::string text;
  std::string octets;  ///< in hex
  std::string kind;
  std::string description;  ///< empty when none is given
  U64 uses = 0;             ///< paths that carry it
};

struct ListFigures {
  U64 attributes = 0;
  U64 communities = 0;                ///< as on the wire, repeats included
  std::optional<U64> distinctValues;  ///< unknown when memory did not suffice
  U64 distinctLists = 0;              ///< members of the intern table
  U64 internedOctets = 0;
  U64 unsharedOctets = 0;  ///< had each path a list of its own
  std::vector<ValueUse> mostUsed;

  // Extended communities only:
  std::optional<std::map<std::string, U64>> types;  ///< distinct values by `type/subtype` in hex
  std::optional<U64> distinctRouteTargetSets;
};

/// The route targets of a list.
struct RouteTargetSet {
  std::string text;
  U64 lists = 0;  ///< that have just these
  U64 paths = 0;  ///< that carry one of these lists
};

/// Figures of all lists together, which take longer.
struct ListDetails {
  std::vector<KindUse> kinds;
  std::vector<RouteTargetSet> routeTargetSets;  ///< the most used first
};

class HeldLists {
 public:
  virtual ~HeldLists() = default;

  struct Holding {
    std::optional<Fault> fault;
    U32 list = 0;  ///< the number of the list, from 0 on in the order in which lists come
  };
  /// Interns the list in an attribute's value and counts it for one path, or says what is wrong.
  virtual Holding hold(Octets value) = 0;
  /// Adds what the paths of another file hold, with their numbers.
  /// REQUIRES: `other` is of the same type.
  virtual void add(const HeldLists& other) = 0;
  /// The figures of all that is held, with at most so many of the most used values. Octets are
  /// those allocated since this object was made, so none other may fill meanwhile. When memory does
  /// not suffice, std::bad_alloc; all but the values are there then.
  virtual void figures(ListFigures& figures, std::size_t mostUsed) const = 0;
  /// Looks at each value of each distinct list. Throws std::bad_alloc.
  virtual ListDetails details() const = 0;

  // The store.

  struct StoredUse {
    MoxStash::StoreReference list;
    U64 paths;
  };
  /// Adds all lists to the store; says where each is, and how many paths hold it.
  virtual std::vector<StoredUse> save(MoxStash::StoreWriter& writer) const = 0;
  /// The record type of such lists among the roots of a store.
  virtual MoxStash::RecordType recordType() const = 0;
  /// Interns a stored list for so many paths. StoreException when the store is damaged.
  virtual void restore(const MoxStash::StoreManager& store, const StoredUse& use) = 0;
  /// Communities as they were on the wire, repeats included: the lists do not tell.
  U64 communities() const { return communities_; }
  void communitiesIs(U64 communities) { communities_ = communities; }

 protected:
  U64 communities_ = 0;
};

}  // namespace bgpcomm

// The kinds of communities, one row each. The commands know kinds only through these rows and
// through KindTable: a further kind is a row in Kinds.cpp, and a struct as StandardKind.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Faults.h"
#include "MoxStash/StoreWriter.h"
#include "ReaderNames.h"

namespace bgpcomm {

struct ValueUse {
  std::string text;
  U64 uses = 0;  ///< paths that carry it
};

struct KindFigures {
  U64 attributes = 0;
  U64 communities = 0;                ///< as on the wire, repeats included
  std::optional<U64> distinctValues;  ///< unknown when memory did not suffice
  U64 distinctLists = 0;              ///< members of the intern table
  U64 internedOctets = 0;
  U64 unsharedOctets = 0;  ///< had each path a list of its own
  std::vector<ValueUse> mostUsed;

  // Of extended communities only.
  std::optional<std::map<std::string, U64>> types;  ///< distinct values by `type/subtype` in hex
  std::optional<U64> distinctRouteTargetSets;
};

/// The intern table of one kind, and the lists that the paths of a file hold in it.
class KindTable {
 public:
  virtual ~KindTable() = default;

  /// Interns the list in an attribute's value and counts it for one path. Says what is wrong when
  /// the list is refused.
  virtual std::optional<Fault> hold(Octets value) = 0;
  /// Takes over what the paths of another table of this kind hold, with their numbers.
  virtual void add(const KindTable& other) = 0;
  /// The figures of all that is held. Octets are those allocated since this table was made, so
  /// no other may fill meanwhile. When memory does not suffice, std::bad_alloc; everything but the
  /// values is there then.
  virtual void figures(KindFigures& figures) const = 0;

  // Of a single attribute's value; nothing is kept.

  struct Text {
    std::optional<Fault> fault;
    std::string text;  ///< or why the list was refused
  };
  /// `65000:100 no-export`.
  virtual Text text(Octets value, bool names) const = 0;
  /// The same, value by value; empty when the list was refused.
  virtual std::vector<std::string> texts(Octets value, bool names) const = 0;
  /// The attribute that the interned list writes, header included, non-transitive communities too.
  virtual Text serialized(Octets value) const = 0;

  // The store.

  struct StoredUse {
    MoxStash::StoreReference list;
    U64 paths;
  };
  /// Adds all lists to the store; says where each is, and how many paths hold it.
  virtual std::vector<StoredUse> save(MoxStash::StoreWriter& writer) const = 0;
  /// What lists of the kind are among the roots of a store.
  virtual MoxStash::RecordType recordType() const = 0;
  /// Interns a stored list for so many paths. StoreException when the store is damaged.
  virtual void restore(const MoxStash::StoreManager& store, const StoredUse& use) = 0;
  /// What the lists do not say themselves: communities as they were on the wire.
  U64 communities() const { return communities_; }
  void communitiesIs(U64 communities) { communities_ = communities; }

 protected:
  U64 communities_ = 0;
};

struct KindRow {
  std::string_view key;    ///< in JSON
  std::string_view title;  ///< in tables
  U8 attribute;
  std::size_t valueSize;
  std::unique_ptr<KindTable> (*makeTable)();
};

inline constexpr std::size_t kindCount = 4;
extern const std::array<KindRow, kindCount> kindRows;

/// By the number of the kind.
using KindTables = std::array<std::unique_ptr<KindTable>, kindCount>;
KindTables makeKindTables();

/// The number of the kind that has the attribute; `kindCount` when none has.
std::size_t kindOfAttribute(U8 attribute);

}  // namespace bgpcomm

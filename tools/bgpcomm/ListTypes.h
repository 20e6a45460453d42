// The list types of communities, one row each. The commands know them only by these rows: a further
// type stands in PathCommunities, has its words in ListTypes.cpp and its values in ListValues.h.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Faults.h"
#include "HeldLists.h"
#include "ReaderNames.h"
#include "path/ZoBgpCommunityTables.h"

namespace bgpcomm {

using Routing::Bgp::CommunityTables;

/// The parser that all tables of the process share. It makes objects of the kinds in
/// use, unless texts are asked for as they are without these.
const CommunityTables::Parser& sharedParser();

/// A value for people, and the octets that tell it apart from every other.
struct ValueText {
  std::string text;
  std::string octets;       ///< in hex
  std::string description;  ///< empty when none is given
};

/// A list as it was asked for, or why it was refused.
struct ListText {
  std::optional<Fault> fault;
  std::string text;  ///< with a fault: its reason
  std::vector<ValueText> values;
};

struct ListType {
  std::string_view key;    ///< in JSON
  std::string_view title;  ///< in tables
  U8 attribute;
  std::size_t valueSize;

  // Each of these reads the value of one attribute, and keeps nothing.

  /// `65000:100 NO_EXPORT`.
  ListText (*text)(const CommunityTables& tables, Octets value);
  /// The same as `values`.
  ListText (*values)(const CommunityTables& tables, Octets value);
  /// The octets of the attribute that the interned list writes: header included, non-transitive
  /// communities too.
  ListText (*serialized)(const CommunityTables& tables, Octets value);

  /// REQUIRES: the tables live as long as the result.
  std::unique_ptr<HeldLists> (*makeHeld)(const CommunityTables& tables);
};

template <class Path>
inline constexpr std::size_t countListTypes = 0;
template <class... Lists>
inline constexpr std::size_t countListTypes<Routing::Bgp::PathCommunitiesOf<Lists...>> =
    sizeof...(Lists);
inline constexpr std::size_t listTypeCount = countListTypes<Routing::Bgp::PathCommunities>;

/// In the order of PathCommunities.
extern const std::array<ListType, listTypeCount> listTypes;

/// The number of the list type that has the attribute; `listTypeCount` when none has.
std::size_t listTypeOf(U8 attribute);

/// The lists of all types that the paths of a file hold.
class FileLists {
 public:
  /// In tables of its own.
  FileLists() : own_(std::make_unique<CommunityTables>(sharedParser())), tables_(*own_) {}
  /// In tables of others: equal lists are one, and their memory is nobody's alone.
  /// REQUIRES: the tables live longer.
  explicit FileLists(const CommunityTables& tables) : tables_(tables) {}

  const CommunityTables& tables() const { return tables_; }
  HeldLists& operator[](std::size_t type) const { return *held_[type]; }

 private:
  const std::unique_ptr<const CommunityTables> own_;
  const CommunityTables& tables_;
  const std::array<std::unique_ptr<HeldLists>, listTypeCount> held_ = makeHeld();

  std::array<std::unique_ptr<HeldLists>, listTypeCount> makeHeld() const;
};

}  // namespace bgpcomm

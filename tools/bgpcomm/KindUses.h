// The kinds that the values of lists have, and how often.
//
//   KindUses kinds(BgpPathAttrType::extCommunity);
//   kinds.startList(3);       // which three paths carry
//   kinds.add(octets);        // each of its values
//   kinds.all();
#pragma once

#include <string>
#include <vector>

#include "Numbering.h"
#include "ReaderNames.h"
#include "kinds/ZoBgpKindTable.h"

namespace bgpcomm {

/// A kind, or a type and subtype that is not in the table of kinds.
struct KindUse {
  std::string type;  ///< and subtype, in hex: `06/00`; empty of values that have none
  const Routing::Bgp::Kind* kind = nullptr;  ///< null when no row describes it
  U64 values = 0;                            ///< distinct ones
  U64 lists = 0;                             ///< with at least one such value
  U64 paths = 0;                             ///< that carry one of these lists
};

/// `06/00` of an extended community's octets.
std::string typeText(Octets value);

class KindUses {
 public:
  explicit KindUses(Routing::Bgp::BgpPathAttrType attribute) : attribute_(attribute) {}

  void startList(U64 paths) {
    paths_ = paths;
    ++list_;
  }
  /// Counts a value of the list. The kind of each distinct value is looked up once.
  void add(Octets value);
  /// The most paths first, equals by their types and identifiers.
  std::vector<KindUse> all() const;

 private:
  const Routing::Bgp::BgpPathAttrType attribute_;
  U64 paths_ = 0;
  U64 list_ = 0;  // counted from 1
  Numbering<std::string> values_;
  std::vector<U32> kindOfValue_;
  Numbering<std::string> numbers_;  // of kinds, by type and identifier
  std::vector<KindUse> kinds_;
  std::vector<U64> lastList_;  // of each kind, that has it
};

}  // namespace bgpcomm

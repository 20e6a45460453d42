// Single path attributes, header included, as text.
#pragma once

#include "ListTypes.h"
#include "attr/ZoBgpAttributeReader.h"

namespace bgpcomm {

class AttributePrinter {
 public:
  AttributePrinter(bool names, bool json) : names_(names), json_(json) {}

  /// Throws DataError when the octets are not exactly one attribute, or its list is refused.
  void print(Octets attribute) const;

 private:
  void printValue(const Routing::Bgp::PathAttributeHeader& header, Octets value) const;

  bool names_;
  bool json_;
  CommunityTables tables_;
};

}  // namespace bgpcomm

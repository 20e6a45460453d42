// Path attributes, headers included, as text.
#pragma once

#include <functional>
#include <string>

#include "ListTypes.h"
#include "attr/ZoBgpAttributeReader.h"

namespace bgpcomm {

class AttributePrinter {
 public:
  explicit AttributePrinter(bool json) : json_(json) {}

  /// Whether the octets are exactly one attribute.
  static bool isOne(Octets octets);
  /// One attribute after the other, or those of an UPDATE with its header. `refuse` gets why the
  /// list of one is refused. Throws DataError when the octets are none of these. `single` takes
  /// exactly one attribute.
  void print(Octets octets, bool single,
             const std::function<void(const std::string&)>& refuse) const;

 private:
  void printValue(const Routing::Bgp::PathAttributeHeader& header, Octets value) const;

  bool json_;
  CommunityTables tables_;
};

}  // namespace bgpcomm

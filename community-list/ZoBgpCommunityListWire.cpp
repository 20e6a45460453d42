#include "community-list/ZoBgpCommunityListWire.h"

namespace Routing::Bgp {

Mox::String WireFault::toStrep() const {
  const Mox::String where = Mox::String(bgpPathAttrTypeShowString(attribute)) +
                            " attribute, offset " + std::to_string(offset) + ": ";
  const Mox::String there = std::to_string(found) + (found == 1 ? " octet" : " octets");
  switch (reason) {
    case Reason::empty:
      return where + "no octets, expected at least one value of " + std::to_string(valueSize);
    case Reason::notMultiple:
      return where + there + ", expected a value of " + std::to_string(valueSize);
    case Reason::tooLong:
      return where + there + " beyond the " + std::to_string(maxAttributeOctets) +
             " that an attribute can have";
    case Reason::linkBandwidth:
      return where + "a second link bandwidth, expected at most one";
  }
  return where;
}

WireFault wireLengthFault(BgpPathAttrType attribute, std::size_t octets, U32 valueSize) {
  using Reason = WireFault::Reason;
  if (octets == 0) return {attribute, Reason::empty, 0, 0, valueSize};
  if (octets > maxAttributeOctets)
    return {attribute, Reason::tooLong, maxAttributeOctets, U32(octets - maxAttributeOctets),
            valueSize};
  const U32 rest = U32(octets % valueSize);
  return {attribute, Reason::notMultiple, U32(octets) - rest, rest, valueSize};
}

}  // namespace Routing::Bgp

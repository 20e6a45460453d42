#include "path/ZoBgpPathFault.h"

#include <algorithm>

namespace Routing::Bgp {
namespace {

Mox::String flagsText(BgpPathAttrFlag flags) {
  constexpr char digits[] = "0123456789abcdef";
  return Mox::String("flags 0x") + digits[U32(flags) >> 4 & 0xF] + digits[U32(flags) & 0xF];
}

}  // namespace

PathFaultApproach PathFault::approach() const {
  return Mox::enumTableOf<PathFaultReason>.find(U32(reason))->approach;
}

Mox::String PathFault::toStrep() const {
  switch (reason) {
    case PathFaultReason::repeated:
      return pathAttributeName(attribute) + ": given again, the first counts";
    case PathFaultReason::wrongFlags:
      return pathAttributeName(attribute) + ": " + flagsText(flags) +
             ", expected optional and transitive";
    case PathFaultReason::malformedValue:
      return value->toStrep();
    case PathFaultReason::overrun:
      return overrun->toStrep();
  }
  return {};
}

PathFaultApproach PathFaults::approach() const {
  auto strongest = PathFaultApproach::none;
  for (const PathFault& fault : faults_) strongest = std::max(strongest, fault.approach());
  return strongest;
}

}  // namespace Routing::Bgp

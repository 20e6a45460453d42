// What every enumeration of the agent offers; see Mox/Enum.h for how one is written.
#pragma once

#include "Mox/Enum.h"

namespace Routing::Bgp {

using Mox::operator<<;
using Mox::sequenceToValue;
using Mox::stringValue;
using Mox::valueToStrep;

/// Whether the value is a member of its enumeration. A named non-member is none.
template <Mox::Enumeration E>
constexpr bool bgpIsValidEnumMember(E value) {
  return Mox::isEnumMember(value);
}

}  // namespace Routing::Bgp

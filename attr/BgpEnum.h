// The operations that every enumeration of the agent has: text, parsing, output, and the question
// for a member. Mox/Enum.h shows how an enumeration is written.
#pragma once

#include "Mox/Enum.h"

/// The table of an enumeration in Routing::Bgp, and the instance that is named after it. A third
/// argument is the type of its rows:
///
///   BGP_ENUM_TABLE(BgpPathAttrFlag, MOX_ROWS)
///   BGP_ENUM_TABLE(BgpPathAttrType, MOX_ROWS, BgpPathAttrTypeRow)
#define BGP_ENUM_TABLE(Enum, MOX_ROWS, ...)                                          \
  consteval auto enumTable(Enum) {                                                   \
    using enum Enum;                                                                 \
    return Mox::enumRows<Enum __VA_OPT__(, ) __VA_ARGS__>("Routing::Bgp::" #Enum,    \
                                                          {MOX_ROWS(MOX_ENUM_ROW)}); \
  }                                                                                  \
  inline constexpr Mox::EnumInstance<Enum> Enum##Instance {}

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

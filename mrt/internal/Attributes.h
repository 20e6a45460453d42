// The path attributes of one path, one after the other (RFC 4271, section 4.3).
//
//   attribute:  flags 1 (0x10: length of two octets), type 1, length 1 or 2, value
#pragma once

#include <optional>

#include "mrt/Octets.h"

namespace Routing::Mrt {

enum AttributeType : U8 {
  asPathAttribute = 2,
  nextHopAttribute = 3,
  aggregatorAttribute = 7,
  mpReachAttribute = 14,
  mpUnreachAttribute = 15,
  as4PathAttribute = 17,
  as4AggregatorAttribute = 18,
};

struct Attribute {
  U8 type;
  Octets value;
};
/// Fails the cursor when the attribute does not fit.
inline Attribute takeAttribute(Cursor& in) {
  constexpr U8 extendedLength = 0x10;
  const U8 flags = in.u8(), type = in.u8();
  return {type, in.take(flags & extendedLength ? in.u16() : in.u8())};
}

/// The value of the first attribute of a type; nothing when there is none before the first that
/// does not fit.
inline std::optional<Octets> findAttribute(Octets attributes, U8 type) {
  Cursor in(attributes);
  while (!in.atEnd()) {
    const Attribute found = takeAttribute(in);
    if (in && found.type == type) return found.value;
  }
  return std::nullopt;
}

}  // namespace Routing::Mrt

// The headers of path attributes (RFC 4271, section 4.3).
//
//   attribute:  flags (0x10: length of two octets), type, length 1 or 2, value
#pragma once

#include <optional>

#include "mrt/Octets.h"

namespace Routing::Mrt {

struct AttributeHeader {
  U8 flags;
  U8 type;
  std::size_t length;  ///< of the value, in octets
};
/// Takes the next header; the cursor fails when it does not fit.
inline AttributeHeader takeAttributeHeader(Cursor& in) {
  constexpr U8 extendedLength = 0x10;
  AttributeHeader header{in.u8(), in.u8(), 0};
  header.length = header.flags & extendedLength ? in.u16() : in.u8();
  return header;
}

/// The value of the first attribute of a type, well-formed as far as it is known; nothing when
/// there is none.
inline std::optional<Octets> findAttribute(Octets attributes, U8 type) {
  Cursor in(attributes);
  while (!in.atEnd()) {
    const AttributeHeader header = takeAttributeHeader(in);
    const Octets value = in.take(header.length);
    if (!in) break;
    if (header.type == type) return value;
  }
  return std::nullopt;
}

}  // namespace Routing::Mrt

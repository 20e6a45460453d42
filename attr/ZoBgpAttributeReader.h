// Readers of path attributes: the header of one, and all attributes of a message in a row.
//
//   PathAttributeReader in(attributes);   // C0 08 04 FD E8 00 64  40 01 01
//   while (const auto attribute = in.next())
//     use(attribute->type, attribute->value);   // community, FD E8 00 64
//   if (in.overrun()) log(in.overrun()->toStrep());   // Origin attribute: 0 octets left of 1
//
// ZoBgpSerialize.h has the picture of a header, and writes it.
//
// 1. Any octets may be read, from any peer: nothing beyond them is touched, nothing is allocated.
// 2. Flags and type are as they were received; neither need be a member of its enumeration.
// 3. A length that reaches beyond the octets ends the reading. Where the next attribute would begin
//    is not known then (RFC 7606, section 4).
//
// Threads: a reader belongs to one thread.
#pragma once

#include <optional>
#include <span>

#include "attr/BgpPathAttributeEnums.h"

namespace Routing::Bgp {

/// The header in front of an attribute's value (RFC 4271, section 4.3).
struct PathAttributeHeader {
  BgpPathAttrFlag flags = {};
  BgpPathAttrType type = {};
  U32 attrSize = 0;    ///< octets of the value, as announced; it may be shorter
  U32 headerSize = 0;  ///< 4 if the flags have `extLen`, else 3
};

/// The header at the beginning of `octets`; nothing when they end before it does.
std::optional<PathAttributeHeader> readPathAttributeHeader(std::span<const U8> octets);

/// An attribute that is complete.
struct PathAttribute {
  BgpPathAttrFlag flags = {};
  BgpPathAttrType type = {};
  std::size_t offset = 0;     ///< where its header begins
  std::span<const U8> value;  ///< valid as long as the octets that were read
};

/// An attribute that is cut short by the end of the octets.
struct PathAttributeOverrun {
  BgpPathAttrType type = {};         ///< `invalidPathAttr` when the type octet is missing too
  std::size_t offset = 0;            ///< where its header begins
  std::size_t found = 0;             ///< octets of the value; 0 when the header is cut short
  std::optional<U32> attrSize = {};  ///< octets announced; nothing when the header is cut short

  /// One line for people: "Community attribute: 3 octets left of 8".
  Mox::String toStrep() const;
};

/// The path attributes of an UPDATE message, one after the other.
class PathAttributeReader {
 public:
  /// REQUIRES: the octets live as long as what is read.
  explicit PathAttributeReader(std::span<const U8> attributes) : octets_(attributes) {}

  /// The next attribute; nothing at the end, or at an overrun, and then ever after.
  std::optional<PathAttribute> next();
  /// Why `next` gave nothing before the end, if so.
  const std::optional<PathAttributeOverrun>& overrun() const { return overrun_; }

 private:
  std::optional<PathAttribute> stop(const PathAttributeOverrun& overrun);

  std::span<const U8> octets_;
  std::size_t offset_ = 0;  // never beyond the end; at the end after an overrun
  std::optional<PathAttributeOverrun> overrun_;
};

/// How faults name an attribute: "Community attribute", or "Attribute 99" for a type without a
/// name.
Mox::String pathAttributeName(BgpPathAttrType type);

}  // namespace Routing::Bgp

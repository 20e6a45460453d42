// Kinds of communities as rows of a table: how the octets of a value divide into fields, what each
// field is called and how it is written.
//
//   constexpr KindField macMobilityFields[] = {
//       {.name = "flags", .bit = 0, .bits = 8, .form = KindForm::flags, .names = macMobilityFlags},
//       {.name = "reserved", .bit = 8, .bits = 8, .form = KindForm::reserved},
//       {.name = "sequence", .bit = 16, .bits = 32}};
//   constexpr Kind macMobility = {.type = 0x06, .subtype = 0x00, .name = "MAC Mobility",
//                                 .reference = "RFC7432 7.7", .identifier = "mac-mobility",
//                                 .fields = macMobilityFields};
//   static_assert(!checkKind(macMobility));
//
// 1. A row is all that is known about a kind. Its text, the parser of texts, its named fields and
//    the documentation come from the row; a further kind is a further row.
// 2. Rows belong to one of the four attributes: extended communities of 8 octets (RFC 4360) and of
//    20 (RFC 5701) are told apart by type and subtype, well-known standard ones (RFC 1997) by their
//    value. Standard and large communities (RFC 8092) that have no name are one row each.
// 3. Bits are counted from 0, the most significant one of the octet behind type and subtype.
//
// Rows are plain structures that own nothing. REQUIRES: names, fields and arrays live as long as
// the row is used. Threads: constants; read from any.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "attr/BgpPathAttributeEnums.h"

namespace Routing::Bgp {

/// How a field is written, and how many bits it may have.
enum class KindForm : U8 {
  integer,         ///< decimal; 1 to 64 bits
  as2,             ///< an AS number of 16 bits, decimal
  as4,             ///< an AS number of 32 bits, decimal
  ipv4,            ///< 32 bits, `192.0.2.1`
  ipv6,            ///< 128 bits, `[2001:db8::1]` (RFC 5952, never with a dotted tail)
  mac,             ///< 48 bits, two hexadecimal digits for each octet, `:` between them
  hex,             ///< whole octets, as `mac`
  enumeration,     ///< a name, or the decimal number when it has none; 1 to 32 bits
  flags,           ///< the names of the bits that are set, `:` between them; 1 to 64 bits
  float32,         ///< 32 bits, a rate as IEEE 754 has it, decimal without exponent
  label,           ///< 24 bits: a label of 20, `/` and the low four bits unless these are zero
  dataCollection,  ///< 16 bits: region, satellite and country of RFC 4384
  reserved         ///< not written; a value with one of these bits set is malformed
};

/// A number that has a name: a value of an enumeration, or a bit of a field of flags.
struct KindName {
  U32 number = 0;
  std::string_view name;
};

/// A run of bits of a value.
struct KindField {
  std::string_view name;
  U16 bit = 0;
  U16 bits = 0;
  KindForm form = KindForm::integer;
  std::span<const KindName> names = {};  ///< of an enumeration or of flags
  U16 first = 0;                         ///< the number of the first flag
  /// The global administrator, which is readable in a malformed value as well.
  bool globalAdministrator = false;
  /// Left out of the text when it is zero. Flags that are not optional are an empty part then.
  bool optional = false;

  /// The number of the bit behind the last.
  constexpr U32 end() const { return U32(bit) + bits; }
};

/// Where a kind's identifier comes from.
enum class KindSource : U8 {
  registry,  ///< the name in the IANA registry
  draft,     ///< the Internet-Draft on the textual representation of communities
  proposed   ///< this library, where neither has one
};

/// How the layout of a kind is known.
enum class KindEvidence : U8 {
  standard,  ///< read in the standard's text
  family,    ///< only that of the family is known (RFC 4360, RFC 5668, RFC 5701)
  decoders,  ///< two independent decoders agree
  none       ///< not at all: the value is kept as octets
};

/// A row.
struct Kind {
  BgpPathAttrType attribute = BgpPathAttrType::extCommunity;
  std::optional<U8> type = {};     ///< of extended communities
  std::optional<U8> subtype = {};  ///< of extended communities
  std::optional<U32> value = {};   ///< of well-known standard communities
  std::string_view name = {};      ///< in the IANA registry
  std::string_view reference = {};
  std::string_view identifier = {};  ///< empty for plain standard and large communities
  std::span<const KindField> fields = {};
  std::span<const std::string_view> aliases = {};  ///< identifiers that are read as well
  KindSource source = KindSource::proposed;
  KindEvidence evidence = KindEvidence::standard;
  std::string_view example = {};  ///< the octets of a value, two hexadecimal digits each
  std::string_view note = {};

  /// Whether its communities begin with a type and a subtype.
  constexpr bool isExtended() const {
    return attribute == BgpPathAttrType::extCommunity ||
           attribute == BgpPathAttrType::extCommunityIp6;
  }
  /// How many octets a community of the attribute has.
  constexpr U32 octets() const {
    switch (attribute) {
      case BgpPathAttrType::extCommunity:
        return 8;
      case BgpPathAttrType::extCommunityIp6:
        return 20;
      case BgpPathAttrType::largeCommunity:
        return 12;
      default:
        return 4;
    }
  }
  /// The bits that the fields divide: all but those of type and subtype.
  constexpr U32 valueBits() const { return 8 * (octets() - (isExtended() ? 2 : 0)); }
};

}  // namespace Routing::Bgp

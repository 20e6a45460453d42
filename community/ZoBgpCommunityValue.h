// One extended community of eight octets (RFC 4360): the class of communities whose type has no
// rule, and the base of all others.
//
//   auto comm = ExtCommSubtyped::ExtCommSubtypedIs(extCommClassificationUnSpecified,
//                                                  ExtCommContent(0x0002FDE800000064));
//   comm->toStrep()
//       // <extCommPktTypeTransTwoOctetAs extCommPktSubtypeTransTwoOctetAsRouteTarget
//       //  0x0002fde800000064>, on one line
//   comm->toStrepForPolicy(ExtComm::StrepFormat(strepFormatClassification | strepFormatUI))
//       // 0002:0xfd 0xe8 0x00 0x00 0x00 0x64
//
// Every community that the agent holds comes from the intern table: `ExtComm::dedupContent`.
#pragma once

#include "community/ZoBgpCommunityContent.h"
#include "community/ZoBgpCommunityFamilyValue.h"

namespace Routing::Bgp {

class ExtComm;
class ExtCommDedupTable;

/// A community in the store.
struct StoredExtComm {
  U32 classification;
  U32 unused;
  U64 value;

  /// The record of a community.
  static StoredExtComm of(U32 classification, const ExtCommContent& content) {
    return {classification, 0, content.value()};
  }
  /// Any octets are a content.
  ExtCommContent content() const { return ExtCommContent(value); }
};

// The types whose subtypes have names. Columns: the operation that tells the name of an object's
// subtype, the type, the enumeration of its subtypes.
#define ZOBGP_SUBTYPE_STRINGS(ROW)                                                               \
  ROW(TransTwoOctetAs, extCommPktTypeTransTwoOctetAs, BgpExtCommPktSubtypeTransTwoOctetAs)       \
  ROW(TransIpv4Address, extCommPktTypeTransIpv4Address, BgpExtCommPktSubtypeTransIpv4Address)    \
  ROW(TransFourOctetAs, extCommPktTypeTransFourOctetAs, BgpExtCommPktSubtypeTransFourOctetAs)    \
  ROW(TransOpaque, extCommPktTypeTransOpaque, BgpExtCommPktSubtypeTransOpaque)                   \
  ROW(Evpn, extCommPktTypeTransEvpn, BgpExtCommPktSubtypeEvpn)                                   \
  ROW(FlowspecRedirectNexthop, extCommPktTypeTransFlowspecRedirectNexthop,                       \
      BgpExtCommPktSubtypeTransFlowspecRedirectNexthop)                                          \
  ROW(TransGeneric, extCommPktTypeTransGeneric, BgpExtCommPktSubtypeTransGeneric)                \
  ROW(TransGenericPart2, extCommPktTypeTransGenericPart2, BgpExtCommPktSubtypeTransGenericPart2) \
  ROW(TransGenericPart3, extCommPktTypeTransGenericPart3, BgpExtCommPktSubtypeTransGenericPart3) \
  ROW(NonTransTwoOctetAs, extCommPktTypeNonTransTwoOctetAs,                                      \
      BgpExtCommPktSubtypeNonTransTwoOctetAs)                                                    \
  ROW(NonTransIpv4Address, extCommPktTypeNonTransIpv4Address,                                    \
      BgpExtCommPktSubtypeNonTransIpv4Address)                                                   \
  ROW(NonTransFourOctetAs, extCommPktTypeNonTransFourOctetAs,                                    \
      BgpExtCommPktSubtypeNonTransFourOctetAs)                                                   \
  ROW(NonTransOpaque, extCommPktTypeNonTransOpaque, BgpExtCommPktSubtypeNonTransOpaque)

#define ZOBGP_SUBTYPE_NAMES(name, type, subtypes) {type, &extCommSubtypeName<subtypes>},
#define ZOBGP_SUBTYPE_STRING(name, type, subtypes) \
  Mox::String pktSubtype##name##String() const { return subtypeString(type); }

/// The members that this family fills in; see ZoBgpCommunityFamilyValue.h.
struct ExtCommFamily {
  using Content = ExtCommContent;
  using PktType = BgpExtCommPktType;
  using Object = ExtComm;
  using Stored = StoredExtComm;
  static constexpr BgpPathAttrType attribute = BgpPathAttrType::extCommunity;
  static constexpr PktType unknownType = extCommPktTypeUnknown;
  static constexpr ExtCommSubtypeNames subtypeNames[] = {
      ZOBGP_SUBTYPE_STRINGS(ZOBGP_SUBTYPE_NAMES)};
  static constexpr std::string_view strepFormatName = "Routing::Bgp::ExtComm::StrepFormat";
};

extern template class ExtCommValue<ExtCommFamily>;

class ExtComm : public Mox::Entity<ExtComm, ExtCommValue<ExtCommFamily>> {
 public:
  static const Mox::Type type;

  using Entity::Entity;

  /// The one object of this content, made by the table's parser if there is none.
  static PtrConst dedupContent(const ExtCommDedupTable* table, const ExtCommContent& content);

  void formatDerivedType(std::ostream& stream) const override;
  /// The value octets in hexadecimal after type and subtype; empty unless `format.inFull()`.
  Mox::String toStrepForPolicy(StrepFormat format) const override;

  /// The content as its own stream output writes it.
  void formatCommunityValue(std::ostream& stream) const;
  /// `0302`, then `name`, then `(NT)` unless transitive: the type without its bit 0x40, the
  /// subtype.
  static Mox::String extCommTypeAsString(const char* name, unsigned char type,
                                         unsigned char subtype, bool transitive);

  // The name of the subtype octet, or `subtype=` and its number: `pktSubtypeEvpnString()` and kin.
  // REQUIRES: the object is of the operation's type and has a subtype. Asserts "<type>_ ==
  // pktType()" and "!pktSubtype().isUnspecified()".
  ZOBGP_SUBTYPE_STRINGS(ZOBGP_SUBTYPE_STRING)

 protected:
  /// The number of `count` bits whose lowest is bit `lowest` of the content.
  U32 bits(U32 lowest, U32 count) const {
    return U32(content().value() >> lowest & ((1ULL << count) - 1));
  }
  /// Writes a show text: `text`, a space, the content, and `>`.
  void writeShowText(CommText& text, std::ostream& stream) const;
};

#undef ZOBGP_SUBTYPE_STRINGS
#undef ZOBGP_SUBTYPE_NAMES
#undef ZOBGP_SUBTYPE_STRING

/// A new, private object of the plain class.
inline ExtComm::Ptr extCommFactory(ExtCommClassification classification,
                                   const ExtCommContent& content) {
  return Mox::makeNew<ExtComm>(classification, content);
}

/// A community whose second octet is a subtype. The meaning of its other octets is not known.
class ExtCommSubtyped : public Mox::Entity<ExtCommSubtyped, ExtComm> {
 public:
  static const Mox::Type type;

  using Entity::Entity;
  /// A new, private object.
  static Ptr ExtCommSubtypedIs(ExtCommClassification classification,
                               const ExtCommContent& content) {
    return Mox::makeNew<ExtCommSubtyped>(classification, content);
  }

  BgpExtCommPktSubtype pktSubtype() const override {
    return BgpExtCommPktSubtype(content().subtype());
  }
};

}  // namespace Routing::Bgp

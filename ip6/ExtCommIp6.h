// One IPv6-address-specific extended community (RFC 5701): the 20-octet sibling of ExtComm.
//
//   auto comm = Mox::makeNew<ExtCommIp6Subtyped>(extCommClassificationUnSpecified, content);
//   comm->toStrep()
//       // <extCommIp6PktTypeTransIpv6Address extCommIp6PktSubtypeRouteTarget addr=2001:db8::1
//       //  localAdmin=100>, on one line
//   comm->toStrepForPolicy({})   // "2001:db8::1:100"
//
// ZoBgpCommunityFamilyValue.h says what both families do. Every community that the agent holds
// comes from the intern table: `ExtCommIp6::dedupContent`.
#pragma once

#include "community/ZoBgpCommunityFamilyValue.h"
#include "ip6/ExtCommIp6Content.h"

namespace Routing::Bgp {

class ExtCommIp6;
class ExtCommIp6DedupTable;

/// A community in the store: 24 octets. The numbers are in the byte order of the machine, the
/// address is in that of the wire. `content` takes any octets; `destash` refuses an unknown
/// classification.
struct StoredExtCommIp6 {
  U32 classification;
  U8 type;
  U8 subtype;
  Zonet::Ip6Addr addr;
  U16 localAdmin;

  /// The record of a community.
  static StoredExtCommIp6 of(U32 classification, const ExtCommIp6Content& content) {
    return {classification, content.type(), content.subtype(), content.addr(),
            content.localAdmin()};
  }
  /// Any octets are a content.
  ExtCommIp6Content content() const { return {type, subtype, addr, localAdmin}; }
};

/// The members that this family fills in; see ZoBgpCommunityFamilyValue.h.
struct ExtCommIp6Family {
  using Content = ExtCommIp6Content;
  using PktType = BgpExtCommIp6PktType;
  using Object = ExtCommIp6;
  using Stored = StoredExtCommIp6;
  static constexpr BgpPathAttrType attribute = BgpPathAttrType::extCommunityIp6;
  static constexpr PktType unknownType = extCommIp6PktTypeUnknown;
  static constexpr ExtCommSubtypeNames subtypeNames[] = {
      {extCommIp6PktTypeTransIpv6Address,
       &extCommSubtypeName<BgpExtCommIp6PktSubtypeTransIpv6Address>},
      {extCommIp6PktTypeNonTransIpv6Address,
       &extCommSubtypeName<BgpExtCommIp6PktSubtypeNonTransIpv6Address>}};
  static constexpr std::string_view strepFormatName = "Routing::Bgp::ExtCommIp6::StrepFormat";
};

extern template class ExtCommValue<ExtCommIp6Family>;

/// The class of communities whose type has no rule, and the base of all others.
class ExtCommIp6 : public Mox::Entity<ExtCommIp6, ExtCommValue<ExtCommIp6Family>> {
 public:
  static const Mox::Type type;

  using Entity::Entity;

  /// The one object of this content, made by the table's parser if there is none. Asserts
  /// "__null != table".
  static PtrConst dedupContent(const ExtCommIp6DedupTable* table, const ExtCommIp6Content& content);

  /// `<type subtype addr=... localAdmin=...>`, in one write, whatever the stream's format.
  void formatDerivedType(std::ostream& stream) const override;
  /// Address and local administrator, after type and subtype when `format.inFull()`.
  Mox::String toStrepForPolicy(StrepFormat format) const override;

  // The name of the subtype octet, or `subtype=` and its number. REQUIRES: the object is of the
  // operation's type and has a subtype. Asserts "<type>_ == pktType()" and
  // "!pktSubtype().isUnspecified()".
  Mox::String pktSubtypeTransIpv6AddressAsString() const {
    return subtypeString(extCommIp6PktTypeTransIpv6Address);
  }
  Mox::String pktSubtypeNonTransIpv6AddressAsString() const {
    return subtypeString(extCommIp6PktTypeNonTransIpv6Address);
  }
};

/// A new, private object of the plain class.
inline ExtCommIp6::Ptr extCommIp6Factory(ExtCommClassification classification,
                                         const ExtCommIp6Content& content) {
  return Mox::makeNew<ExtCommIp6>(classification, content);
}

/// A community whose second octet is a subtype.
class ExtCommIp6Subtyped : public Mox::Entity<ExtCommIp6Subtyped, ExtCommIp6> {
 public:
  static const Mox::Type type;

  using Entity::Entity;

  BgpExtCommPktSubtype pktSubtype() const override {
    return BgpExtCommPktSubtype(content().subtype());
  }
};

}  // namespace Routing::Bgp

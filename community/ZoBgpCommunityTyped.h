// Typed extended communities: those whose meaning the library knows. Each class fixes its
// classification and says its two texts; everything else it has from its base.
//
//   auto target = extCommRouteTargetAsFactory(ExtCommContent(0x0002FDE800000064), false);
//   target->toStrepForPolicy({})   // "65000:100"; with classification "RT:65000:100"
//   target->toStrep()              // "<RouteTarget2ByteASN 65000:100 0x0002fde800000064>"
//
// A factory returns a new, private object with its notifications on. REQUIRES: type and subtype of
// the content are those of the class; not checked.
#pragma once

#include "community/ZoBgpCommunityAsNumber.h"
#include "community/ZoBgpCommunityIpv4Address.h"

namespace Routing::Bgp {

// --- Route target and route origin (RFC 4360, sections 4 and 5). They differ in words only. ---

class ExtCommRouteTargetAs;
class ExtCommRouteTargetIpv4Address;
class ExtCommRouteOriginAs;
class ExtCommRouteOriginIpv4Address;

/// Classification, classes and words of route targets.
struct RouteTarget {
  using As = ExtCommRouteTargetAs;
  using Ipv4Address = ExtCommRouteTargetIpv4Address;
  static constexpr ExtCommClassification classification = extCommClassificationRouteTarget;
  static constexpr std::string_view shortName = "RT", longName = "Route-Target";
  static constexpr std::string_view showName = "RouteTarget";
};
/// The same of route origins.
struct RouteOrigin {
  using As = ExtCommRouteOriginAs;
  using Ipv4Address = ExtCommRouteOriginIpv4Address;
  static constexpr ExtCommClassification classification = extCommClassificationRouteOrigin;
  static constexpr std::string_view shortName = "SoO", longName = "Route-Origin";
  static constexpr std::string_view showName = "RouteOrigin";
};

/// A target or origin by AS number, of type 0x00 or 0x02. The show text of an object of any other
/// type asserts "0 && "unexpected type"".
template <class Object, class Route>
class ExtCommRouteAs : public Mox::Entity<Object, ExtCommAsNumber> {
 public:
  /// `fourByteAs`: of type 0x02.
  ExtCommRouteAs(const ExtCommContent& content, bool fourByteAs)
      : ExtCommRouteAs::Entity(Route::classification, content, fourByteAs) {}
  void formatDerivedType(std::ostream& stream) const override;
  Mox::String toStrepForPolicy(ExtComm::StrepFormat format) const override;
};

/// A target or origin by IPv4 address, of type 0x01. The show text does not look at the type.
template <class Object, class Route>
class ExtCommRouteIpv4Address : public Mox::Entity<Object, ExtCommIpv4Address> {
 public:
  /// REQUIRES: of type 0x01.
  explicit ExtCommRouteIpv4Address(const ExtCommContent& content)
      : ExtCommRouteIpv4Address::Entity(Route::classification, content) {}
  void formatDerivedType(std::ostream& stream) const override;
  Mox::String toStrepForPolicy(ExtComm::StrepFormat format) const override;
};

extern template class ExtCommRouteAs<ExtCommRouteTargetAs, RouteTarget>;
extern template class ExtCommRouteIpv4Address<ExtCommRouteTargetIpv4Address, RouteTarget>;
extern template class ExtCommRouteAs<ExtCommRouteOriginAs, RouteOrigin>;
extern template class ExtCommRouteIpv4Address<ExtCommRouteOriginIpv4Address, RouteOrigin>;

// The classes that objects are of: names for reflection, and what a cast asks for.

/// A route target of an AS number.
class ExtCommRouteTargetAs final : public ExtCommRouteAs<ExtCommRouteTargetAs, RouteTarget> {
 public:
  static const Mox::Type type;
  using ExtCommRouteAs::ExtCommRouteAs;
};
/// A route target of an IPv4 address.
class ExtCommRouteTargetIpv4Address final
    : public ExtCommRouteIpv4Address<ExtCommRouteTargetIpv4Address, RouteTarget> {
 public:
  static const Mox::Type type;
  using ExtCommRouteIpv4Address::ExtCommRouteIpv4Address;
};
/// A route origin of an AS number.
class ExtCommRouteOriginAs final : public ExtCommRouteAs<ExtCommRouteOriginAs, RouteOrigin> {
 public:
  static const Mox::Type type;
  using ExtCommRouteAs::ExtCommRouteAs;
};
/// A route origin of an IPv4 address.
class ExtCommRouteOriginIpv4Address final
    : public ExtCommRouteIpv4Address<ExtCommRouteOriginIpv4Address, RouteOrigin> {
 public:
  static const Mox::Type type;
  using ExtCommRouteIpv4Address::ExtCommRouteIpv4Address;
};

// --- The others. ---

/// Link bandwidth (draft-ietf-idr-link-bandwidth).
///
///   octets    0    1    2  3  4  5  6  7
///            0x40 0x04 [ AS ][ bandwidth ]   IEEE 754 single precision
class ExtCommLinkBandwidth final : public Mox::Entity<ExtCommLinkBandwidth, ExtCommAsNumber> {
 public:
  static const Mox::Type type;
  /// REQUIRES: type and subtype are those of the class.
  explicit ExtCommLinkBandwidth(const ExtCommContent& content)
      : Entity(extCommClassificationLinkBandwidth, content, false) {}
  /// In octets per second. A peer may send any bits: infinite, negative, no number.
  double bandwidth() const;
  void formatDerivedType(std::ostream& stream) const override;
  Mox::String toStrepForPolicy(StrepFormat format) const override;
};

/// A tunnel type of the encapsulation community (RFC 9012, IANA registry of tunnel types).
#define MOX_ROWS(X)            \
  X(tunnelTypeL2tpv3OverIp, 1) \
  X(tunnelTypeGre, 2)          \
  X(tunnelTypeIpInIp, 7)       \
  X(tunnelTypeVxlan, 8)        \
  X(tunnelTypeNvgre, 9)        \
  X(tunnelTypeMpls, 10)        \
  X(tunnelTypeMplsInGre, 11)   \
  X(tunnelTypeVxlanGpe, 12)
enum TunnelType : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(TunnelType, MOX_ROWS);
#undef MOX_ROWS

/// Tunnel encapsulation (RFC 9012, section 4.1).
///
///   octets    0    1    2  3  4  5  6  7
///            0x03 0x0c [ reserved ][type]   see TunnelType
class ExtCommTunnelEncap final : public Mox::Entity<ExtCommTunnelEncap, ExtCommSubtyped> {
 public:
  static const Mox::Type type;
  /// REQUIRES: type and subtype are those of the class.
  explicit ExtCommTunnelEncap(const ExtCommContent& content)
      : Entity(extCommClassificationTunnelEncap, content) {}
  /// Sixteen bits; many numbers are no members.
  TunnelType tunnelType() const { return TunnelType(bits(0, 16)); }
  void formatDerivedType(std::ostream& stream) const override;
  Mox::String toStrepForPolicy(StrepFormat format) const override;
};

/// Color (RFC 9012, section 4.3).
///
///   octets    0    1    2   3   4  5  6  7
///            0x03 0x0b [flags] [  color   ]   the color-only bits are the highest two flags
class ExtCommColor final : public Mox::Entity<ExtCommColor, ExtCommSubtyped> {
 public:
  static const Mox::Type type;
  /// REQUIRES: type and subtype are those of the class.
  explicit ExtCommColor(const ExtCommContent& content)
      : Entity(extCommClassificationColor, content) {}
  /// All 32 bits; what they stand for is the operator's to say.
  U32 color() const { return bits(0, 32); }
  // The color-only bits (RFC 9256, section 8.8.1), each 0 or 1.
  U32 firstCoBit() const { return bits(47, 1); }
  U32 secondCoBit() const { return bits(46, 1); }
  void formatDerivedType(std::ostream& stream) const override;
  Mox::String toStrepForPolicy(StrepFormat format) const override;
};

/// The result of a router's check of a route's origin (RFC 8097).
#define MOX_ROWS(X)          \
  X(valid, 0, "Valid")       \
  X(notFound, 1, "NotFound") \
  X(invalid, 2, "Invalid")
enum class OriginValidationState : U32 { MOX_ROWS(MOX_ENUMERATOR) };

/// The row of a state also says how texts spell it.
struct OriginValidationStateRow {
  OriginValidationState value;
  std::string_view name;
  std::string_view shownAs;
  bool member = true;
};
BGP_ENUM_TABLE(OriginValidationState, MOX_ROWS, OriginValidationStateRow);
#undef MOX_ROWS

/// Origin validation state (RFC 8097).
///
///   octets    0    1    2  3  4  5  6   7
///            0x43 0x00 [  reserved  ][state]
class ExtCommOriginValidationState final
    : public Mox::Entity<ExtCommOriginValidationState, ExtCommSubtyped> {
 public:
  static const Mox::Type type;
  /// REQUIRES: type and subtype are those of the class.
  explicit ExtCommOriginValidationState(const ExtCommContent& content)
      : Entity(extCommClassificationOriginValidationState, content) {}
  /// The last octet, not always a member. The reserved octets are not looked at.
  OriginValidationState state() const { return OriginValidationState(bits(0, 8)); }
  void formatDerivedType(std::ostream& stream) const override;
  Mox::String toStrepForPolicy(StrepFormat format) const override;
};

/// Default gateway (RFC 7432, section 7.8), of type 0x03, subtype 0x0d. Its value says nothing.
class ExtCommDefaultGateway final : public Mox::Entity<ExtCommDefaultGateway, ExtCommSubtyped> {
 public:
  static const Mox::Type type;
  /// REQUIRES: type and subtype are those of the class.
  explicit ExtCommDefaultGateway(const ExtCommContent& content)
      : Entity(extCommClassificationDefaultGateway, content) {}
  void formatDerivedType(std::ostream& stream) const override;
  Mox::String toStrepForPolicy(StrepFormat format) const override;
};

// --- Factories, one per class. ---

/// Makes objects of a class, each new and with its notifications on. Targets and origins by AS
/// number also take whether that has four octets.
template <class Typed, class... FourByteAs>
struct ExtCommFactory {
  /// A new, private object.
  typename Typed::Ptr operator()(const ExtCommContent& content, FourByteAs... fourByteAs) const {
    return Mox::makeNew<Typed>(content, fourByteAs...);
  }
};
inline constexpr ExtCommFactory<ExtCommRouteTargetAs, bool> extCommRouteTargetAsFactory;
inline constexpr ExtCommFactory<ExtCommRouteTargetIpv4Address> extCommRouteTargetIpv4AddressFactory;
inline constexpr ExtCommFactory<ExtCommRouteOriginAs, bool> extCommRouteOriginAsFactory;
inline constexpr ExtCommFactory<ExtCommRouteOriginIpv4Address> extCommRouteOriginIpv4AddressFactory;
inline constexpr ExtCommFactory<ExtCommLinkBandwidth> extCommLinkBandwidthFactory;
inline constexpr ExtCommFactory<ExtCommTunnelEncap> extCommTunnelEncapFactory;
inline constexpr ExtCommFactory<ExtCommColor> extCommColorFactory;
inline constexpr ExtCommFactory<ExtCommOriginValidationState> extCommOriginValidationStateFactory;
inline constexpr ExtCommFactory<ExtCommDefaultGateway> extCommDefaultGatewayFactory;

}  // namespace Routing::Bgp

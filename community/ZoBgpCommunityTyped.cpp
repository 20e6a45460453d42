#include "community/ZoBgpCommunityTyped.h"

#include <bit>

#include "agent/LinkBandwidth.h"

namespace Routing::Bgp {

using Mox::attribute;
using namespace std::string_view_literals;

namespace {
const Mox::Type enumerations[] = {Mox::enumType<TunnelType>(),
                                  Mox::enumType<OriginValidationState>()};
}  // namespace

// --- Route target and route origin. ---

const Mox::Type ExtCommRouteTargetAs::type{
    "Routing::Bgp::ExtCommRouteTargetAs", &ExtCommAsNumber::type, {}};
const Mox::Type ExtCommRouteTargetIpv4Address::type{
    "Routing::Bgp::ExtCommRouteTargetIpv4Address", &ExtCommIpv4Address::type, {}};
const Mox::Type ExtCommRouteOriginAs::type{
    "Routing::Bgp::ExtCommRouteOriginAs", &ExtCommAsNumber::type, {}};
const Mox::Type ExtCommRouteOriginIpv4Address::type{
    "Routing::Bgp::ExtCommRouteOriginIpv4Address", &ExtCommIpv4Address::type, {}};

template <class Object, class Route>
void ExtCommRouteAs<Object, Route>::formatDerivedType(std::ostream& stream) const {
  const U32 pktType = this->pktType();
  const bool twoOctets = pktType == extCommPktTypeTransTwoOctetAs;
  MOX_ASSERT(twoOctets || pktType == extCommPktTypeTransFourOctetAs, "0 && \"unexpected type\"");
  CommText text;
  text << '<' << Route::showName << (twoOctets ? "2ByteASN " : "4ByteASN ");
  this->appendAsNumber(text, false, false);
  text << ':' << this->localAdmin();
  this->writeShowText(text, stream);
}

template <class Object, class Route>
void ExtCommRouteIpv4Address<Object, Route>::formatDerivedType(std::ostream& stream) const {
  CommText text;
  text << '<' << Route::showName << ' ' << this->ipv4Address() << ':' << this->localAdmin();
  this->writeShowText(text, stream);
}

namespace {

/// Appends the words before the numbers of a target or an origin; `form` says what numbers they
/// are.
template <class Route>
void appendRoutePrefix(CommText& text, ExtComm::StrepFormat format, std::string_view form) {
  if (format.inFull())
    text << Route::longName << form << ':';
  else if (format.has(strepFormatClassification))
    text << Route::shortName << ':';
}

}  // namespace

template <class Object, class Route>
Mox::String ExtCommRouteAs<Object, Route>::toStrepForPolicy(ExtComm::StrepFormat format) const {
  CommText text;
  appendRoutePrefix<Route>(text, format, this->fourByteAs() ? "-AS4"sv : "-AS"sv);
  this->appendAsNumber(text, format.has(strepFormatQualifier), format.has(strepFormatAsdot));
  text << ':' << this->localAdmin();
  return text.str();
}

template <class Object, class Route>
Mox::String ExtCommRouteIpv4Address<Object, Route>::toStrepForPolicy(
    ExtComm::StrepFormat format) const {
  CommText text;
  appendRoutePrefix<Route>(text, format, "-IP");
  text << this->ipv4Address() << ':' << this->localAdmin();
  return text.str();
}

template class ExtCommRouteAs<ExtCommRouteTargetAs, RouteTarget>;
template class ExtCommRouteIpv4Address<ExtCommRouteTargetIpv4Address, RouteTarget>;
template class ExtCommRouteAs<ExtCommRouteOriginAs, RouteOrigin>;
template class ExtCommRouteIpv4Address<ExtCommRouteOriginIpv4Address, RouteOrigin>;

// --- Link bandwidth. ---

const Mox::Type ExtCommLinkBandwidth::type{
    "Routing::Bgp::ExtCommLinkBandwidth",
    &ExtCommAsNumber::type,
    {attribute<&ExtCommLinkBandwidth::bandwidth>("bandwidth")}};

double ExtCommLinkBandwidth::bandwidth() const { return std::bit_cast<float>(bits(0, 32)); }

void ExtCommLinkBandwidth::formatDerivedType(std::ostream& stream) const {
  CommText text;
  appendAsNumber(text << "<LinkBandwidth ", false, false);
  text << ':' << bandwidth();
  writeShowText(text, stream);
}

Mox::String ExtCommLinkBandwidth::toStrepForPolicy(StrepFormat format) const {
  CommText text;
  if (format.inFull())
    text << "Link-Bandwidth-AS:";
  else if (format.has(strepFormatClassification))
    text << "lbw ";
  appendAsNumber(text, format.has(strepFormatQualifier), format.has(strepFormatAsdot));
  text << ':';
  if (format.inFull())
    text << Rib::LinkBandwidth(bandwidth()).toStrep(format.has(strepFormatLinkBwWeighted));
  else
    text << bandwidth();
  return text.str();
}

// --- Tunnel encapsulation. ---

const Mox::Type ExtCommTunnelEncap::type{
    "Routing::Bgp::ExtCommTunnelEncap",
    &ExtCommSubtyped::type,
    {attribute<&ExtCommTunnelEncap::tunnelType>("tunnelType")}};

static constexpr std::string_view tunnelTypeUnknown = "tunnelTypeUnknown";

void ExtCommTunnelEncap::formatDerivedType(std::ostream& stream) const {
  CommText text;
  text << "<TunnelEncap " << U32(tunnelType()) << ':';
  bgpIsValidEnumMember(tunnelType()) ? text << tunnelType() : text << tunnelTypeUnknown;
  writeShowText(text, stream);
}

Mox::String ExtCommTunnelEncap::toStrepForPolicy(StrepFormat format) const {
  CommText text;
  if (format.has(strepFormatClassification)) text << "TunnelEncap:";
  if (!bgpIsValidEnumMember(tunnelType())) text << tunnelTypeUnknown << '-';
  text << tunnelType();
  return text.str();
}

// --- Color. ---

const Mox::Type ExtCommColor::type{
    "Routing::Bgp::ExtCommColor",
    &ExtCommSubtyped::type,
    {attribute<&ExtCommColor::color>("color"), attribute<&ExtCommColor::firstCoBit>("firstCoBit"),
     attribute<&ExtCommColor::secondCoBit>("secondCoBit")}};

void ExtCommColor::formatDerivedType(std::ostream& stream) const {
  CommText text;
  text << "<Color: " << color() << '(' << firstCoBit() << secondCoBit() << ')';
  writeShowText(text, stream);
}

Mox::String ExtCommColor::toStrepForPolicy(StrepFormat) const {
  CommText text;
  text << "Color:CO(" << firstCoBit() << secondCoBit() << "):" << color();
  return text.str();
}

// --- Origin validation state. ---

const Mox::Type ExtCommOriginValidationState::type{
    "Routing::Bgp::ExtCommOriginValidationState",
    &ExtCommSubtyped::type,
    {attribute<&ExtCommOriginValidationState::state>("state")}};

void ExtCommOriginValidationState::formatDerivedType(std::ostream& stream) const {
  CommText text;
  text << "<OriginValidationState ";
  const auto* row = Mox::enumTableOf<OriginValidationState>.find(U32(state()));
  row ? text << row->shownAs : text << "Unknown(" << U32(state()) << ')';
  writeShowText(text, stream);
}

Mox::String ExtCommOriginValidationState::toStrepForPolicy(StrepFormat format) const {
  if (!format.inFull()) return {};
  const auto* row = Mox::enumTableOf<OriginValidationState>.find(U32(state()));
  CommText text;
  text << "Origin-Validation-State:" << (row ? row->shownAs : "Unknown");
  return text.str();
}

// --- Default gateway. ---

const Mox::Type ExtCommDefaultGateway::type{
    "Routing::Bgp::ExtCommDefaultGateway", &ExtCommSubtyped::type, {}};

void ExtCommDefaultGateway::formatDerivedType(std::ostream& stream) const {
  CommText text;
  text << "<DefaultGateway";
  writeShowText(text, stream);
}

Mox::String ExtCommDefaultGateway::toStrepForPolicy(StrepFormat) const { return "DefaultGateway"; }

}  // namespace Routing::Bgp

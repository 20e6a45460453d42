#include "community/ZoBgpCommunityIpv4Address.h"

namespace Routing::Bgp {

using Mox::attribute;

static_assert(sizeof(ExtCommIpv4Address) == sizeof(ExtComm));

const Mox::Type ExtCommIpv4Address::type{
    "Routing::Bgp::ExtCommIpv4Address",
    &ExtCommSubtyped::type,
    {attribute<&ExtCommIpv4Address::ipv4Address>("ipv4Address"),
     attribute<&ExtCommIpv4Address::localAdmin>("localAdmin")}};

void ExtCommIpv4Address::formatDerivedType(std::ostream& stream) const {
  CommText text;
  appendTypeAndSubtype(text << '<');
  text << ' ' << ipv4Address();
  writeShowText(text, stream);
}

Mox::String ExtCommIpv4Address::toStrepForPolicy(StrepFormat format) const {
  CommText text;
  if (format.inFull())
    text.typeAndSubtype("-IP", content().type(), content().subtype(), transitive()) << ':';
  text << ipv4Address() << ':' << localAdmin();
  return text.str();
}

}  // namespace Routing::Bgp

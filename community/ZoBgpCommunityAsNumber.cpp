#include "community/ZoBgpCommunityAsNumber.h"

#include "Zonet/AutonomousSystem.h"

namespace Routing::Bgp {

using Mox::attribute;
using Mox::operation;

static_assert(sizeof(void*) != 8 || sizeof(ExtCommAsNumber) == 48);
static_assert(sizeof(void*) != 4 || sizeof(ExtCommAsNumber) == 36);

const Mox::Type ExtCommAsNumber::type{
    "Routing::Bgp::ExtCommAsNumber",
    &ExtCommSubtyped::type,
    {attribute<&ExtCommAsNumber::fourByteAs>("fourByteAs"),
     attribute<&ExtCommAsNumber::asNumber>("asNumber"),
     attribute<&ExtCommAsNumber::localAdmin2Octets>("localAdmin2Octets"),
     attribute<&ExtCommAsNumber::localAdmin4Octets>("localAdmin4Octets"),
     operation("formatAsNumber")}};

Mox::String ExtCommAsNumber::formatAsNumber(bool qualifier, bool asdot) const {
  const Mox::String number = Zonet::AutonomousSystem(asNumber()).displayString(asdot);
  return fourByteAs_ && qualifier && !asdot ? number + 'L' : number;
}

void ExtCommAsNumber::formatDerivedType(std::ostream& stream) const {
  CommText text;
  appendTypeAndSubtype(text << '<');
  text << " ASN=" << formatAsNumber(false, false);
  writeShowText(text, stream);
}

Mox::String ExtCommAsNumber::toStrepForPolicy(StrepFormat format) const {
  CommText text;
  if (format.inFull())
    text.typeAndSubtype(fourByteAs_ ? "-AS4" : "-AS", content().type(), content().subtype(),
                        transitive())
        << ':';
  text << formatAsNumber(format) << ':' << localAdmin();
  return text.str();
}

}  // namespace Routing::Bgp

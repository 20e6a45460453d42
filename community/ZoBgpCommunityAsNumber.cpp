#include "community/ZoBgpCommunityAsNumber.h"

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

void ExtCommAsNumber::appendAsNumber(CommText& text, bool qualifier, bool asdot) const {
  text.asNumber(asNumber(), asdot);
  if (fourByteAs_ && qualifier && !asdot) text << 'L';
}

Mox::String ExtCommAsNumber::formatAsNumber(bool qualifier, bool asdot) const {
  CommText text;
  appendAsNumber(text, qualifier, asdot);
  return text.str();
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
  text << formatAsNumber(format.has(strepFormatQualifier), format.has(strepFormatAsdot)) << ':'
       << localAdmin();
  return text.str();
}

}  // namespace Routing::Bgp

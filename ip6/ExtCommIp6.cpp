#include "ip6/ExtCommIp6.h"

#include "community/internal/ZoBgpCommunityFamilyValueBodies.h"

namespace Routing::Bgp {

using Mox::attribute;
using Mox::operation;

template class ExtCommValue<ExtCommIp6Family>;

static_assert(sizeof(void*) != 8 || sizeof(ExtCommIp6) == 56);
static_assert(sizeof(void*) != 4 || sizeof(ExtCommIp6) == 44);
static_assert(sizeof(ExtCommIp6Subtyped) == sizeof(ExtCommIp6));
static_assert(sizeof(StoredExtCommIp6) == 24);

const Mox::Type ExtCommIp6::type{
    "Routing::Bgp::ExtCommIp6",
    &MoxStash::DedupHandle::type,
    {attribute<&ExtCommIp6::classification>("classification"),
     attribute<&ExtCommIp6::getContent>("content"), attribute<&ExtCommIp6::pktType>("pktType"),
     attribute<&ExtCommIp6::pktSubtype>("pktSubtype"),
     attribute<&ExtCommIp6::transitive>("transitive"), attribute<&ExtCommIp6::toStrep>("toStrep"),
     operation("toStrepForPolicy"), operation("formatDerivedType"), operation("formatSubtype"),
     attribute<&ExtCommIp6::hash>("hash"), operation("compare"), operation("compareByContent")}};

const Mox::Type ExtCommIp6Subtyped::type{"Routing::Bgp::ExtCommIp6Subtyped", &ExtCommIp6::type, {}};

static const Mox::Type strepFormatType{
    ExtCommIp6Family::strepFormatName,
    nullptr,
    {attribute<&ExtCommIp6::StrepFormat::value>("value"), operation("valueIs")}};

void ExtCommIp6::formatDerivedType(std::ostream& stream) const {
  CommText text;
  appendTypeAndSubtype(text << '<');
  text << " addr=" << content().addr() << " localAdmin=" << content().localAdmin() << '>';
  text.writeTo(stream);
}

Mox::String ExtCommIp6::toStrepForPolicy(StrepFormat format) const {
  CommText text;
  if (format.inFull())
    text.typeAndSubtype("-IP6", content().type(), content().subtype(), transitive()) << ':';
  text << content().addr() << ':' << content().localAdmin();
  return text.str();
}

}  // namespace Routing::Bgp

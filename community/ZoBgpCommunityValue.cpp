#include "community/ZoBgpCommunityValue.h"

#include "community/internal/ZoBgpCommunityFamilyValueBodies.h"

namespace Routing::Bgp {

using Mox::attribute;
using Mox::operation;

template class ExtCommValue<ExtCommFamily>;

static_assert(sizeof(void*) != 8 || sizeof(ExtComm) == 40);
static_assert(sizeof(void*) != 4 || sizeof(ExtComm) == 32);
static_assert(sizeof(ExtCommSubtyped) == sizeof(ExtComm));

const Mox::Type ExtComm::type{
    "Routing::Bgp::ExtComm",
    &MoxStash::DedupHandle::type,
    {attribute<&ExtComm::classification>("classification"),
     attribute<&ExtComm::getContent>("content"), attribute<&ExtComm::pktType>("pktType"),
     attribute<&ExtComm::pktSubtype>("pktSubtype"), attribute<&ExtComm::transitive>("transitive"),
     attribute<&ExtComm::toStrep>("toStrep"), operation("toStrepForPolicy"),
     operation("formatDerivedType"), operation("formatSubtype"), operation("formatCommunityValue"),
     attribute<&ExtComm::hash>("hash"), operation("compare"), operation("compareByContent")}};

const Mox::Type ExtCommSubtyped::type{"Routing::Bgp::ExtCommSubtyped", &ExtComm::type, {}};

static const Mox::Type strepFormatType{
    ExtCommFamily::strepFormatName,
    nullptr,
    {attribute<&ExtComm::StrepFormat::value>("value"), operation("valueIs")}};

void ExtComm::writeShowText(CommText& text, std::ostream& stream) const {
  text << ' ';
  text.content(content(), stream) << '>';
  text.writeTo(stream);
}

void ExtComm::formatDerivedType(std::ostream& stream) const {
  CommText text;
  appendTypeAndSubtype(text << '<');
  writeShowText(text, stream);
}

Mox::String ExtComm::toStrepForPolicy(StrepFormat format) const {
  if (!format.inFull()) return {};
  CommText text;
  text.typeAndSubtype("", content().type(), content().subtype(), transitive());
  for (U32 octet = 2; octet < 8; ++octet)
    (text << (octet == 2 ? ":0x" : " 0x")).hex(content().octet(octet));
  return text.str();
}

void ExtComm::formatCommunityValue(std::ostream& stream) const { stream << content(); }

Mox::String ExtComm::extCommTypeAsString(const char* name, unsigned char type,
                                         unsigned char subtype, bool transitive) {
  CommText text;
  return text.typeAndSubtype(name, type, subtype, transitive).str();
}

}  // namespace Routing::Bgp

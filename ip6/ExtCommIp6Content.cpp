#include "ip6/ExtCommIp6Content.h"

#include "Mox/Type.h"
#include "community/ZoBgpCommunityText.h"
#include "community/ZoBgpCommunityTextReader.h"

namespace Routing::Bgp {

static const Mox::Type extCommIp6ContentType{
    "Routing::Bgp::ExtCommIp6Content",
    nullptr,
    {Mox::attribute<&ExtCommIp6Content::type>("type"),
     Mox::attribute<&ExtCommIp6Content::subtype>("subtype"),
     Mox::attribute<&ExtCommIp6Content::addr>("addr"),
     Mox::attribute<&ExtCommIp6Content::localAdmin>("localAdmin")}};

Mox::String valueToStrep(const ExtCommIp6Content& content) {
  CommText text;
  text << "type=" << char(content.type()) << ";subtype=" << char(content.subtype())
       << ";addr=" << content.addr() << ";localAdmin=" << content.localAdmin();
  return text.str();
}

std::ostream& operator<<(std::ostream& stream, const ExtCommIp6Content& content) {
  return Mox::writeText(stream, valueToStrep(content));
}

void sequenceToValue(std::string_view text, ExtCommIp6Content& content) {
  TextReader reader(text);
  reader.literal("type=");
  const U8 type = reader.octet();
  reader.literal(";subtype=");
  const U8 subtype = reader.octet();
  reader.literal(";addr=");
  Zonet::Ip6Addr addr;
  reader.read(reader.upTo(";localAdmin="), addr);
  reader.literal(";localAdmin=");
  U32 localAdmin = 0;
  reader.read(reader.rest(), localAdmin);
  if (localAdmin > 0xFFFF)
    throw Mox::RangeException("number too large: " + std::to_string(localAdmin));
  content = ExtCommIp6Content(type, subtype, addr, U16(localAdmin));
}

}  // namespace Routing::Bgp

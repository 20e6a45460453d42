#include "ip6/ExtCommIp6Content.h"

#include <algorithm>

#include "Mox/Type.h"
#include "Zonet/NetworkOrder.h"
#include "community/ZoBgpCommunityText.h"
#include "community/internal/ZoBgpCommunityTextReader.h"

namespace Routing::Bgp {

static const Mox::Type extCommIp6ContentType{
    "Routing::Bgp::ExtCommIp6Content",
    nullptr,
    {Mox::attribute<&ExtCommIp6Content::type>("type"),
     Mox::attribute<&ExtCommIp6Content::subtype>("subtype"),
     Mox::attribute<&ExtCommIp6Content::addr>("addr"),
     Mox::attribute<&ExtCommIp6Content::localAdmin>("localAdmin"),
     Mox::operation("ExtCommIp6Content")}};  // the constructor, of these four

ExtCommIp6Content ExtCommIp6Content::fromOctets(std::span<const U8, 20> octets) {
  std::array<U8, 16> address;
  std::copy_n(octets.begin() + 2, address.size(), address.begin());
  return {octets[0], octets[1], Zonet::Ip6Addr(address),
          Zonet::loadNetworkOrder<U16>(octets.data() + 18)};
}

std::array<U8, 20> ExtCommIp6Content::octets() const {
  std::array<U8, 20> octets{type_, subtype_};
  const auto& address = addr_.octets();
  std::copy(address.begin(), address.end(), octets.begin() + 2);
  Zonet::storeNetworkOrder(octets.data() + 18, localAdmin_);
  return octets;
}

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

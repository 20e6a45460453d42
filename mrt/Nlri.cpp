#include "mrt/Nlri.h"

#include <arpa/inet.h>

#include <algorithm>
#include <ctime>
#include <utility>

#include "mrt/internal/Attributes.h"
#include "mrt/internal/Families.h"

namespace Routing::Mrt {
namespace {

/// How many octets an encoded prefix takes, as its first octets say.
enum class LengthForm {
  bits,        ///< 1 octet: bits that follow (RFC 4760, and most families)
  typeOctets,  ///< type 1, length in octets 1 (EVPN, multicast VPN)
  octets16,    ///< length in octets 2 (VPLS)
  type16,      ///< type 2, length in octets 2 (link state)
  archType16,  ///< architecture 1, type 2, length in octets 1 (mobile user plane)
  flow,        ///< length in octets: 1, or 2 beginning with 0xf (RFC 8955)
};

LengthForm lengthForm(AddressFamily family) {
  switch (family.safi) {
    case safiMulticastVpn:
    case safiEvpn:
      return LengthForm::typeOctets;
    case safiVpls:
      return family.afi == afiL2vpn ? LengthForm::octets16 : LengthForm::bits;
    case safiLinkState:
    case safiLinkStateVpn:
      return family.afi == afiLinkState ? LengthForm::type16 : LengthForm::bits;
    case safiMobileUserPlane:
      return LengthForm::archType16;
    case safiFlow:
    case safiFlowVpn:
      return LengthForm::flow;
    default:
      return LengthForm::bits;
  }
}

std::size_t payloadSize(Cursor& in, AddressFamily family) {
  switch (lengthForm(family)) {
    case LengthForm::typeOctets:
      in.take(1);
      return in.u8();
    case LengthForm::octets16:
      return in.u16();
    case LengthForm::type16:
      in.take(2);
      return in.u16();
    case LengthForm::archType16:
      in.take(3);
      return in.u8();
    case LengthForm::flow: {
      const unsigned first = in.u8();
      return first < 0xf0 ? first : (first & 0x0f) << 8 | in.u8();
    }
    case LengthForm::bits:
      break;
  }
  return (in.u8() + 7u) / 8;
}

/// Whether the octets are whole prefixes up to their end.
bool fits(Cursor in, AddressFamily family, bool addPath) {
  while (!in.atEnd()) {
    if (addPath) in.u32();
    if (!takeNlri(in, family)) return false;
  }
  return true;
}

}  // namespace

bool isPlain(AddressFamily family) {
  return (family.afi == afiIpv4 || family.afi == afiIpv6) &&
         (family.safi == safiUnicast || family.safi == safiMulticast);
}

std::optional<Octets> takeNlri(Cursor& in, AddressFamily family) {
  const Octets from = in.left();
  const std::size_t size = payloadSize(in, family);
  in.take(size);
  const bool tooLong = isPlain(family) && size > (family.afi == afiIpv4 ? 4 : 16);
  if (!in || tooLong) return std::nullopt;
  return from.first(from.size() - in.left().size());
}

std::string addressText(Octets address) {
  char text[INET6_ADDRSTRLEN] = "-";
  if (address.size() == 4 || address.size() == 16)
    inet_ntop(address.size() == 4 ? AF_INET : AF_INET6, address.data(), text, sizeof text);
  return text;
}

std::string timeText(const Path& path) {
  const std::time_t seconds = path.seconds;
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  char text[64];
  std::size_t size = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc);
  if (path.microseconds)
    size += std::size_t(
        std::snprintf(text + size, sizeof text - size, ".%06u", unsigned(*path.microseconds)));
  return std::string(text, size) + 'Z';
}

PrefixReader::PrefixReader(const Path& path, Octets nlri, U8 attribute)
    : attributes_(path.attributes), attribute_(attribute), messageAddPath_(path.addPath) {
  start(nlri, path.addressFamily);
}

PrefixReader PrefixReader::announced(const Path& path) {
  if (!path.fromTable) return PrefixReader(path, path.nlri, mpReachAttribute);
  PrefixReader reader(path, {}, 0);
  reader.prefix_ = {path.addressFamily, path.nlri, path.pathId};
  reader.single_ = true;
  return reader;
}

PrefixReader PrefixReader::withdrawn(const Path& path) {
  return PrefixReader(path, path.withdrawn, path.fromTable ? 0 : mpUnreachAttribute);
}

/// Some daemons write messages with ADD-PATH under a subtype without, so whichever reading fits is
/// taken.
void PrefixReader::start(Octets nlri, AddressFamily family) {
  in_ = Cursor(nlri);
  addPath_ = messageAddPath_;
  if (!fits(in_, family, addPath_) && fits(in_, family, !addPath_)) addPath_ = !addPath_;
  prefix_ = {family, {}, {}};
}

//   mpReach:    AFI 2, SAFI 1, next hop 1 + n, reserved 1, prefixes
//   mpUnreach:  AFI 2, SAFI 1, prefixes
/// False when there is no such attribute.
bool PrefixReader::startAttribute() {
  const U8 type = std::exchange(attribute_, 0);
  if (type == 0) return false;
  const std::optional<Octets> value = findAttribute(attributes_, type);
  if (!value) return false;
  Cursor in(*value);
  const AddressFamily family{in.u16(), in.u8()};
  if (type == mpReachAttribute) in.take(in.u8() + 1u);
  cutShort_ |= !in;
  start(in.left(), family);
  return true;
}

const Prefix* PrefixReader::next() {
  if (std::exchange(single_, false)) return &prefix_;
  while (in_.atEnd())
    if (!startAttribute()) return nullptr;
  if (addPath_) prefix_.pathId = in_.u32();
  if (const std::optional<Octets> nlri = takeNlri(in_, prefix_.addressFamily)) {
    prefix_.nlri = *nlri;
    return &prefix_;
  }
  cutShort_ = true;
  in_ = Cursor(Octets());
  return next();
}

}  // namespace Routing::Mrt

#include "mrt/Nlri.h"

#include <arpa/inet.h>

#include <algorithm>

#include "mrt/PathAttributes.h"

namespace Routing::Mrt {
namespace {

constexpr U16 afiL2vpn = 25;
constexpr U16 afiLinkState = 16388;

/// Those whose prefixes are no plain ones.
enum Safi : U8 {
  safiMulticastVpn = 5,
  safiVpls = 65,
  safiEvpn = 70,
  safiLinkState = 71,
  safiLinkStateVpn = 72,
  safiMobileUserPlane = 85,
  safiFlow = 133,
  safiFlowVpn = 134,
};

bool isIp(Family family) {
  return (family.afi == afiIpv4 || family.afi == afiIpv6) &&
         (family.safi == safiUnicast || family.safi == safiMulticast);
}

/// How many octets an encoded prefix takes, as its first octets say.
enum class LengthForm {
  bits,        ///< 1 octet: bits that follow (RFC 4760, and most families)
  typeOctets,  ///< type 1, length in octets 1 (EVPN, multicast VPN)
  octets16,    ///< length in octets 2 (VPLS)
  type16,      ///< type 2, length in octets 2 (link state)
  archType16,  ///< architecture 1, type 2, length in octets 1 (mobile user plane)
  flow,        ///< length in octets: 1, or 2 beginning with 0xf (RFC 8955)
};

LengthForm lengthForm(Family family) {
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

std::size_t payloadSize(Cursor& in, Family family) {
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

std::string hex(Octets octets) {
  constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (const U8 octet : octets) {
    text += digits[octet >> 4];
    text += digits[octet & 15];
  }
  return text;
}

using Visit = std::function<void(const Prefix&)>;

/// Whether the octets are whole prefixes up to their end.
bool fits(Cursor in, Family family, bool addPath) {
  while (!in.atEnd()) {
    if (addPath) in.u32();
    if (!takeNlri(in, family)) return false;
  }
  return true;
}

/// All prefixes up to the end; false when one does not fit. Some daemons write messages with
/// ADD-PATH under a subtype without, so whichever reading fits is taken.
bool visitAll(Cursor in, Family family, bool addPath, const Visit& visit) {
  if (!fits(in, family, addPath) && fits(in, family, !addPath)) addPath = !addPath;
  while (!in.atEnd()) {
    std::optional<U32> id;
    if (addPath) id = in.u32();
    const std::optional<Octets> nlri = takeNlri(in, family);
    if (!nlri) return false;
    visit({family, *nlri, id});
  }
  return true;
}

constexpr U8 mpReach = 14;
constexpr U8 mpUnreach = 15;

//   mpReach:    family 3, next hop 1 + n, reserved 1, prefixes
//   mpUnreach:  family 3, prefixes
bool visitAttribute(const Path& path, U8 type, const Visit& visit) {
  const std::optional<Octets> value = findAttribute(path.attributes, type);
  if (!value) return true;
  Cursor in(*value);
  const Family family{in.u16(), in.u8()};
  if (type == mpReach) in.take(in.u8() + 1u);
  return in && visitAll(in, family, path.addPath, visit);
}

}  // namespace

std::optional<Octets> takeNlri(Cursor& in, Family family) {
  const Octets from = in.left();
  const std::size_t size = payloadSize(in, family);
  in.take(size);
  const bool tooLong = isIp(family) && size > (family.afi == afiIpv4 ? 4 : 16);
  if (!in || tooLong) return std::nullopt;
  return from.first(from.size() - in.left().size());
}

std::string addressText(Octets address) {
  char text[INET6_ADDRSTRLEN] = "-";
  if (address.size() == 4 || address.size() == 16)
    inet_ntop(address.size() == 4 ? AF_INET : AF_INET6, address.data(), text, sizeof text);
  return text;
}

std::string nlriText(Family family, Octets nlri) {
  if (!isIp(family))
    return std::to_string(family.afi) + '/' + std::to_string(family.safi) + ':' + hex(nlri);
  std::array<U8, 16> address{};
  std::copy(nlri.begin() + 1, nlri.end(), address.begin());
  // What stands behind the prefix in its last octet means nothing (RFC 4271, 4.3).
  if (const unsigned bits = nlri[0] % 8) address[nlri[0] / 8] &= U8(0xff00 >> bits);
  return addressText(Octets(address).first(family.afi == afiIpv4 ? 4 : 16)) + '/' +
         std::to_string(nlri[0]);
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

bool visitPrefixes(const Path& path, const Visit& visit) {
  if (path.fromTable) {
    visit({path.family, path.nlri, path.pathId});
    return true;
  }
  const bool whole = visitAll(Cursor(path.nlri), path.family, path.addPath, visit);
  return visitAttribute(path, mpReach, visit) && whole;
}

bool visitWithdrawn(const Path& path, const Visit& visit) {
  if (path.fromTable) return true;
  const bool whole = visitAll(Cursor(path.withdrawn), path.family, path.addPath, visit);
  return visitAttribute(path, mpUnreach, visit) && whole;
}

}  // namespace Routing::Mrt

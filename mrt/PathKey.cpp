#include "mrt/PathKey.h"

#include <algorithm>
#include <optional>

#include "mrt/internal/Families.h"

namespace Routing::Mrt {
namespace {

constexpr std::size_t tagSize = 4;

std::string numberKey(U64 number, int octets) {
  std::string key;
  while (octets-- > 0) key += char(number >> 8 * octets);
  return key;
}

/// A length in bits and the prefix, the bits behind it cleared.
std::string prefixKey(unsigned bits, Octets prefix) {
  std::string key(1, char(bits));
  for (std::size_t i = 0; i < prefix.size(); ++i) {
    const unsigned before = unsigned(8 * i);
    const unsigned kept = bits <= before ? 0 : std::min(bits - before, 8u);
    key += char(prefix[i] & 0xff00 >> kept);
  }
  return key;
}

/// Fields that do not fit leave the octets as they are.
std::string evpnKey(Octets nlri) {
  enum Type : U8 { segment = 1, mac = 2, prefix = 5, selective = 6, join = 7, leave = 8 };
  Cursor in(nlri);
  std::string key(1, char(in.u8()));
  const auto keep = [&](std::size_t size) { key += asText(in.take(size)); };
  in.take(1);
  keep(distinguisherSize);
  switch (nlri[0]) {
    case segment:
      keep(segmentSize + tagSize);
      break;
    case mac: {
      in.take(segmentSize);
      keep(tagSize + 1 + 6);
      const U8 bits = in.u8();
      key += char(bits);
      keep(bits / 8);
      break;
    }
    case prefix: {
      in.take(segmentSize);
      keep(tagSize);
      const U8 bits = in.u8();
      // Prefix and gateway are of one family; the label stands behind.
      const std::size_t size = in.left().size() > 2 * 4 + labelSize ? 16 : 4;
      key += prefixKey(bits, in.take(size));
      break;
    }
    case selective:
    case join:
      keep(in.left().size() - 1);  // flags
      break;
    case leave:
      keep(in.left().size() - 6);  // reserved, response time, flags
      break;
    default:
      keep(in.left().size());
  }
  return in ? key : std::string(asText(nlri));
}

}  // namespace

std::size_t labelsSize(Octets octets, bool distinguisher) {
  if (octets.size() < labelSize || (octets[1] == 0 && octets[2] == 0 && (octets[0] & 0x7f) == 0))
    return labelSize;
  for (std::size_t size = labelSize; size <= octets.size(); size += labelSize) {
    if (!(octets[size - 1] & 1)) continue;
    const Octets behind = octets.subspan(size);
    const bool fits = behind.size() >= distinguisherSize && behind[0] == 0 && behind[1] <= 2;
    if (size == labelSize || !distinguisher || fits) return size;
  }
  return labelSize;
}

std::optional<IpPrefix> ipPrefix(const Prefix& prefix) {
  const auto [afi, safi] = prefix.addressFamily;
  const bool plain = safi == safiUnicast || safi == safiMulticast;
  const bool labels = safi == safiLabels || safi == safiVpn;
  const bool distinguisher = safi == safiVpn || safi == safiVpnMulticast;
  if ((afi != afiIpv4 && afi != afiIpv6) || !(plain || labels || distinguisher))
    return std::nullopt;

  Cursor in(prefix.nlri);
  const unsigned bits = in.u8();
  IpPrefix fields;
  if (labels) fields.labels = in.take(labelsSize(in.left(), distinguisher));
  if (distinguisher) fields.routeDistinguisher = in.take(distinguisherSize);
  const std::size_t before = 8 * (fields.labels.size() + fields.routeDistinguisher.size());
  const Octets address = in.left();
  if (!in || bits < before || bits - before > (afi == afiIpv4 ? 32 : 128)) return std::nullopt;
  fields.length = U8(bits - before);
  std::copy(address.begin(), address.end(), fields.address.begin());
  if (const unsigned rest = fields.length % 8)
    fields.address[fields.length / 8] &= U8(0xff00 >> rest);
  return fields;
}

std::string nlriKey(const Prefix& prefix) {
  const auto [afi, safi] = prefix.addressFamily;
  if (afi == afiL2vpn && safi == safiEvpn) return evpnKey(prefix.nlri);
  if (safi == safiRouteTargets) return prefixKey(prefix.nlri[0], prefix.nlri.subspan(1));
  const std::optional<IpPrefix> fields = ipPrefix(prefix);
  if (!fields) return std::string(asText(prefix.nlri));
  std::string key(asText(fields->routeDistinguisher));
  key += char(fields->length);
  return key.append(fields->address.begin(), fields->address.end());
}

std::string peerKey(const Peer& peer) {
  std::string key = numberKey(peer.address.size(), 1) + std::string(asText(peer.address));
  key.resize(1 + 16);
  return key + numberKey(peer.asNumber, 4);
}

Peer peerOfKey(std::string_view key) {
  Cursor in({reinterpret_cast<const U8*>(key.data()), key.size()});
  const std::size_t size = in.u8();
  const Octets address = in.take(16).first(size);
  return {in.u32(), address};
}

std::string pathKey(const Path& path, const Prefix& prefix) {
  return peerKey(path.peer) + numberKey(path.sent, 1) + numberKey(prefix.addressFamily.afi, 2) +
         numberKey(prefix.addressFamily.safi, 1) + numberKey(prefix.pathId.has_value(), 1) +
         numberKey(prefix.pathId.value_or(0), 4) + nlriKey(prefix);
}

}  // namespace Routing::Mrt

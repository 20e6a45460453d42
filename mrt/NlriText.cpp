// Prefixes as text.
#include <algorithm>
#include <array>
#include <cstdio>

#include "mrt/Nlri.h"
#include "mrt/internal/Families.h"

namespace Routing::Mrt {
namespace {

std::string hex(Octets octets) {
  constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (const U8 octet : octets) {
    text += digits[octet >> 4];
    text += digits[octet & 15];
  }
  return text;
}

/// `02:00:5e:10:00:00:00:00:01`
std::string parted(Octets octets) {
  std::string text;
  for (std::size_t i = 0; i < octets.size(); ++i)
    text += (i ? ":" : "") + hex(octets.subspan(i, 1));
  return text;
}

/// `64600:1`; with an AS number that takes 4 octets and could be taken for one of 2, `64600L:1`; of
/// other types in hex (RFC 4364, section 4.2).
std::string distinguisher(Cursor& in) {
  const Octets octets = in.take(distinguisherSize);
  Cursor fields(octets);
  switch (fields.u16()) {
    case 0: {
      const U32 as = fields.u16();
      return std::to_string(as) + ':' + std::to_string(fields.u32());
    }
    case 1: {
      const Octets address = fields.take(4);
      return addressText(address) + ':' + std::to_string(fields.u16());
    }
    case 2: {
      const U32 as = fields.u32();
      return std::to_string(as) + (as < 0x10000 ? "L:" : ":") + std::to_string(fields.u16());
    }
  }
  return hex(octets);
}

U32 label24(Cursor& in) {
  const U32 high = in.u8();
  return high << 16 | in.u16();
}

/// ` label 100/200`; nothing for the one of a withdrawal, which means nothing (RFC 8277,
/// section 2.4).
std::string labels(Octets octets) {
  std::string text;
  for (Cursor in(octets); !in.atEnd();) {
    const U32 entry = label24(in);
    if (entry == 0 || entry == 0x800000) continue;
    text += (text.empty() ? " label " : "/") + std::to_string(entry >> 4);
  }
  return text;
}

/// An address of so many bits, the rest zero; the cursor fails when it has more than the family.
std::string ipPrefix(Cursor& in, U16 afi, unsigned bits) {
  std::array<U8, 16> address{};
  const std::size_t size = afi == afiIpv4 ? 4 : 16;
  if (bits > 8 * size) in.take(in.left().size() + 1);
  const Octets octets = in.take((bits + 7) / 8);
  std::copy(octets.begin(), octets.end(), address.begin());
  // The bits behind the prefix in its last octet mean nothing (RFC 4271, 4.3).
  if (const unsigned rest = bits % 8; rest && !octets.empty())
    address[bits / 8] &= U8(0xff00 >> rest);
  return addressText(Octets(address).first(size)) + '/' + std::to_string(bits);
}

/// An address with its length in bits in front; ` -` for none.
std::string sizedAddress(Cursor& in) {
  const unsigned bits = in.u8();
  if (bits != 0 && bits != 32 && bits != 128) in.take(in.left().size() + 1);
  return ' ' + addressText(in.take(bits / 8));
}

/// ` esi 00:01:...`, nothing for the one that is all zeros (RFC 7432, section 5).
std::string segment(Cursor& in) {
  const Octets octets = in.take(segmentSize);
  return onlyZeros(octets) ? "" : " esi " + parted(octets);
}
std::string tag(Cursor& in) { return " tag " + std::to_string(in.u32()); }
/// Labels that stand for themselves; those of VXLAN take all 24 bits, which the octets do not say.
std::string evpnLabels(Cursor& in) {
  std::string text;
  while (in && !in.atEnd())
    text += (text.empty() ? " label " : "/") + std::to_string(label24(in) >> 4);
  return text;
}

/// RFC 7432, section 7, and RFC 9136, section 3.
std::string evpnText(Cursor& in) {
  const U8 type = in.u8();
  in.u8();
  std::string text = distinguisher(in);
  switch (type) {
    case 1: {
      text = "auto-discovery " + text + segment(in);
      text += tag(in);
      return text + evpnLabels(in);
    }
    case 2: {
      const std::string esi = segment(in), its = tag(in);
      if (in.u8() != 48) return "";
      text = "mac " + text + ' ' + parted(in.take(6));
      if (std::string address = sizedAddress(in); address != " -") text += address;
      return text + esi + its + evpnLabels(in);
    }
    case 3: {
      const std::string its = tag(in);
      return "inclusive-multicast " + text + sizedAddress(in) + its;
    }
    case 4: {
      const std::string esi = segment(in);
      return "ethernet-segment " + text + sizedAddress(in) + esi;
    }
    case 5: {
      const std::string esi = segment(in), its = tag(in);
      const unsigned bits = in.u8();
      const std::size_t size = in.left().size() >= 32 ? 16 : 4;
      Cursor address(in.take(size));
      text = "prefix " + text + ' ' + ipPrefix(address, size == 4 ? afiIpv4 : afiIpv6, bits);
      if (!address) return "";
      const Octets gateway = in.take(size);
      if (!onlyZeros(gateway)) text += " gateway " + addressText(gateway);
      return text + esi + its + evpnLabels(in);
    }
  }
  return "";
}

/// The values of a component with their operators (RFC 8955, section 4.2.1): `=80`, `>=1024&<2048`;
/// of a bit mask `~0x2` for any of
/// the bits, `=0x12` for all, `!` for not. Several in a row are joined by `,` for or, `&` for and.
std::string flowValues(Cursor& in, bool isMask) {
  std::string text;
  for (bool last = false; !last && in;) {
    const U8 op = in.u8();
    last = op & 0x80;
    if (!text.empty()) text += op & 0x40 ? '&' : ',';
    U64 value = 0;
    for (const U8 octet : in.take(std::size_t{1} << (op >> 4 & 3))) value = value << 8 | octet;
    if (isMask) {
      char digits[20];
      std::snprintf(digits, sizeof digits, "0x%llx", static_cast<unsigned long long>(value));
      text += std::string(op & 2 ? "!" : "") + (op & 1 ? "=" : "~") + digits;
    } else {
      static constexpr const char* comparisons[] = {
          "false:", "=", ">", ">=", "<", "<=", "!=", "true:"};
      text += comparisons[op & 7] + std::to_string(value);
    }
  }
  return text;
}

/// RFC 8955, section 4; RFC 8956, section 3.
std::string flowText(AddressFamily family, Cursor& in) {
  static constexpr const char* names[] = {
      "",          "destination",      "source",      "protocol",
      "port",      "destination-port", "source-port", "icmp-type",
      "icmp-code", "tcp-flags",        "length",      "dscp",
      "fragment",  "flow-label"};
  if (in.u8() >= 0xf0) in.u8();
  std::string text = family.safi == safiFlowVpn ? distinguisher(in) : "";
  while (in && !in.atEnd()) {
    const U8 type = in.u8();
    if (type == 0 || type >= std::size(names)) return "";
    if (!text.empty()) text += ' ';
    text += names[type];
    text += ' ';
    if (type > 2) {
      text += flowValues(in, type == 9 || type == 12);
      continue;
    }
    const unsigned bits = in.u8();
    const unsigned offset = family.afi == afiIpv6 ? in.u8() : 0;
    if (offset) return "";  // a pattern in the middle of an address
    text += ipPrefix(in, family.afi, bits);
  }
  return text.empty() ? "all" : text;
}

/// The text; empty, or the cursor failed, where the octets are none of the family.
std::string textOf(AddressFamily family, Cursor& in) {
  if (family.safi == safiEvpn && family.afi == afiL2vpn) return evpnText(in);
  if (family.afi != afiIpv4 && family.afi != afiIpv6) return "";
  if (family.safi == safiFlow || family.safi == safiFlowVpn) return flowText(family, in);
  const unsigned bits = in.u8();
  switch (family.safi) {
    case safiUnicast:
      return ipPrefix(in, family.afi, bits);
    case safiMulticast:
      return ipPrefix(in, family.afi, bits) + " multicast";
    case safiLabels:
    case safiVpn:
    case safiVpnMulticast: {
      const bool labelled = family.safi != safiVpnMulticast;
      const bool distinguished = family.safi != safiLabels;
      const Octets stack =
          in.take(labelled ? labelsSize(in.left(), distinguished) : std::size_t{0});
      const std::string its = distinguished ? distinguisher(in) + ' ' : "";
      const std::size_t before = 8 * (stack.size() + (distinguished ? distinguisherSize : 0));
      if (!in || bits < before) return "";
      return its + ipPrefix(in, family.afi, unsigned(bits - before)) +
             (labelled ? labels(stack) : " multicast");
    }
  }
  return "";
}

}  // namespace

std::string nlriText(AddressFamily family, Octets nlri) {
  Cursor in(nlri);
  if (std::string text = textOf(family, in); in && in.atEnd() && !text.empty()) return text;
  return std::to_string(family.afi) + '/' + std::to_string(family.safi) + ':' + hex(nlri);
}

void appendPrefix(std::string& text, const Prefix& prefix) {
  const std::string its = nlriText(prefix.addressFamily, prefix.nlri);
  const bool blanks = its.find(' ') != its.npos;
  if (!text.empty()) text += blanks ? ", " : " ";
  text += its;
  if (prefix.pathId) text += (blanks ? " #" : "#") + std::to_string(*prefix.pathId);
}

}  // namespace Routing::Mrt

#include "mrt/NextHop.h"

#include "TestOctets.h"
#include "mrt/Nlri.h"

namespace Routing::Mrt {
namespace {

constexpr AddressFamily ip4{1, 1}, ip6{2, 1}, vpn{1, 128}, flow{1, 133};
const std::string plain = "400304 c0000201 ", global = "20010db8000000000000000000000001",
                  local = "fe800000000000000000000000000001", zeros = "0000000000000000";

/// MP_REACH_NLRI without prefixes.
std::string reach(AddressFamily family, const std::string& nextHop) {
  const Bytes value =
      number(family.afi, 2) + number(family.safi, 1) + counted(octets(nextHop), 1) + '\0';
  return "800e" + hex(view(counted(value, 1)));
}

/// The next hops of the first prefix, and of those of a family.
using NextHops = std::pair<std::string, std::string>;

NextHops nextHops(Path path, const std::string& attributes, AddressFamily family) {
  const Bytes block = octets(attributes);
  path.attributes = view(block);
  return {addressText(nextHop(path)), addressText(nextHop(path, family))};
}

TEST(NextHop, OfAnUpdateIsThatOfItsPrefixes) {
  const Bytes prefixes = octets("08 0a");
  const struct {
    std::string attributes;
    bool prefixes;  // in the message's own field
    AddressFamily family;
    NextHops nextHops;
  } cases[] = {
      {plain, true, ip4, {"192.0.2.1", "192.0.2.1"}},
      {plain, true, ip6, {"192.0.2.1", "-"}},
      {plain, false, ip4, {"-", "-"}},  // nothing is announced
      {"400303 c00002", true, ip4, {"-", "-"}},
      {"400304 c00002", true, ip4, {"-", "-"}},
      {reach(ip6, global), true, ip4, {"-", "-"}},
      {plain + reach(ip6, global), false, ip6, {"2001:db8::1", "2001:db8::1"}},
      {plain + reach(ip6, global), true, ip6, {"192.0.2.1", "2001:db8::1"}},
      {plain + reach(ip4, global), false, ip4, {"2001:db8::1", "2001:db8::1"}},
      {reach(ip6, global + local), false, ip6, {"2001:db8::1", "2001:db8::1"}},
      {reach(ip6, "c0000201"), false, ip4, {"192.0.2.1", "-"}},
      {reach(vpn, zeros + "c0000202"), false, vpn, {"192.0.2.2", "192.0.2.2"}},
      {reach(vpn, zeros + global), false, vpn, {"2001:db8::1", "2001:db8::1"}},
      {reach(vpn, zeros + global + zeros + local), false, vpn, {"2001:db8::1", "2001:db8::1"}},
      {reach(vpn, "0000fde800000064 c0000202"), false, vpn, {"-", "-"}},
      {reach(flow, ""), false, flow, {"-", "-"}},
      {reach(ip6, "c000020102"), false, ip6, {"-", "-"}},
      {"800e07 0002 01 04 c00002", false, ip6, {"-", "-"}},  // cut short
      {"800e02 0002", false, ip6, {"-", "-"}},
      {"800e05 04 c0000201", false, ip6, {"-", "-"}},  // the form of tables
  };
  for (const auto& [attributes, own, family, expected] : cases) {
    Path path;
    path.addressFamily = ip4;
    if (own) path.nlri = view(prefixes);
    EXPECT_EQ(nextHops(path, attributes, family), expected) << attributes;
  }
}

TEST(NextHop, OfATableIsAbbreviatedOrInFull) {
  const struct {
    AddressFamily family;
    std::string attributes, nextHop;
  } cases[] = {
      {ip4, plain, "192.0.2.1"},
      {ip4, "", "-"},
      {ip6, "800e11 10" + global, "2001:db8::1"},
      {ip6, "800e21 20" + global + local, "2001:db8::1"},
      {ip6, plain + "900e0011 10" + global, "2001:db8::1"},
      {ip4, plain + "800e11 10" + global, "2001:db8::1"},  // RFC 8950
      {vpn, "800e0d 0c" + zeros + "c0000202", "192.0.2.2"},
      {vpn, plain, "192.0.2.1"},
      {vpn, plain + reach(vpn, zeros + "c0000202"), "192.0.2.2"},
      {ip6, reach(ip6, global + local), "2001:db8::1"},
      {ip4, plain + reach(ip6, global), "192.0.2.1"},  // of other prefixes
      {flow, reach(flow, ""), "-"},
      {ip6, "800e01 00", "-"},
      {ip6, "800e00", "-"},
      {ip6, "800e05 10 20010db8", "-"},
  };
  for (const auto& [family, attributes, nextHop] : cases) {
    Path path;
    path.fromTable = true;
    path.addressFamily = family;
    EXPECT_EQ(nextHops(path, attributes, family), NextHops(nextHop, nextHop)) << attributes;
  }
}

}  // namespace
}  // namespace Routing::Mrt

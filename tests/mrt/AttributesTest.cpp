// AS paths and next hops, from the attributes of a path.
#include "mrt/AsPath.h"

#include <algorithm>
#include <random>
#include <regex>
#include <set>
#include <sstream>

#include "TestOctets.h"
#include "mrt/NextHop.h"
#include "mrt/Nlri.h"

namespace {

Bytes attribute(int type, const Bytes& value) {
  return octets("50") + number(U64(type), 1) + counted(value, 2);
}

/// Segments as `AsPath::text` writes them, `/` between two sequences. Of 2 octets, greater AS
/// numbers are 23456 (RFC 6793, section 4.2.2).
Bytes encoded(const std::string& text, std::size_t width) {
  static const std::regex segment("([{(\\[]?)([0-9][0-9 ,]*)");
  Bytes out;
  for (std::sregex_iterator it(text.begin(), text.end(), segment), end; it != end; ++it) {
    std::string numbers = it->str(2);
    std::ranges::replace(numbers, ',', ' ');
    std::istringstream in(numbers);
    Bytes content;
    for (U32 as = 0; in >> as;) content += number(width == 2 && as > 0xffff ? 23456 : as, width);
    const auto type = it->str(1).empty() ? 2 : std::string("{-([").find(it->str(1)) + 1;
    out += number(type, 1) + number(content.size() / width, 1) + content;
  }
  return out;
}

/// `64500 {64501}; origin 64500, length 2`, or `malformed`.
std::string pathText(Octets attributes, bool as4) {
  Path path;
  path.attributes = attributes;
  path.as4 = as4;
  const AsPath asPath(path);
  const std::string text = asPath.text();
  std::string visited, plain = text;
  asPath.visit([&](U32 as) { visited += std::to_string(as) + ' '; });
  std::erase_if(plain, [](char c) { return std::string("{}()[]").find(c) != std::string::npos; });
  std::replace(plain.begin(), plain.end(), ',', ' ');
  EXPECT_EQ(visited, plain.empty() ? "" : plain + ' ');
  EXPECT_EQ(asPath.empty(), text.empty());
  if (asPath.malformed()) return "malformed" + text;
  const auto origin = asPath.origin();
  return text + "; origin " + (origin ? std::to_string(*origin) : "none") + ", length " +
         std::to_string(asPath.length());
}
/// The same whatever stands around the attributes.
std::string pathText(const Bytes& attributes, bool as4) {
  std::set<std::string> texts;
  for (const char around : {'\0', '\1'}) {
    const Bytes block = Bytes(4, around) + attributes + Bytes(600, around);
    texts.insert(pathText(view(block).subspan(4, attributes.size()), as4));
  }
  EXPECT_EQ(texts.size(), 1u) << hex(view(attributes));
  return *texts.begin();
}

TEST(AsPath, IsReadFromItsOctets) {
  const struct {
    bool as4;
    std::string attributes, path;
  } cases[] = {
      // clang-format off
      {true, "40010100 40020a 0202 0000fbf4 fa56ea00", "64500 4200000000; origin 4200000000, length 2"},
      {false, "40010100 400206 0202 fbf4 fbf5", "64500 64501; origin 64501, length 2"},
      {false, "5002000c 0201 fbf4 0102 fbf5 fbf6 0200", "malformed"},  // a segment without numbers
      {false, "4002 0a 0201 fbf4 0102 fbf5 fbf6", "64500 {64501,64502}; origin none, length 2"},
      {false, "4002 0a 0402 fc00 fc01 0201 fbf4", "[64512,64513] 64500; origin 64500, length 1"},
      {false, "4002 0a 0302 fc00 fc01 0101 fbf4", "(64512 64513) {64500}; origin none, length 1"},
      {false, "4002 0a 0201 fbf4 0302 fc00 fc01", "64500 (64512 64513); origin 64500, length 1"},
      {false, "4002 08 0201 fbf4 0201 fbf5", "64500 64501; origin 64501, length 2"},
      {false, "4002 04 0301 fc00", "(64512); origin none, length 0"},
      {false, "4002 00", "; origin none, length 0"},
      {false, "40010100", "; origin none, length 0"},
      {false, "4002 04 0001 fbf4", "malformed"},
      {false, "4002 04 0501 fbf4", "malformed"},
      {false, "4002 05 0201 fbf4 02", "malformed"},
      {false, "4002 05 0202 fbf4 fb", "malformed"},
      {true, "4002 06 0202 fbf4 fbf5", "malformed"},          // numbers of 2 octets
      {false, "4002 06 0201 0000fbf4", "malformed"},          // and of 4
      {false, "4002 04 0202 fbf4 400206 0201 fbf5", "malformed"},  // beyond the attribute
      {false, "4002 04 0201 fbf4 4002 04 0201 fbf5", "64500; origin 64500, length 1"},
      {false, "4002 04 0201 fbf4 4003 04 c0", "64500; origin 64500, length 1"},
      {false, "4003 04 c0", "malformed"},  // AS_PATH may stand behind
      // clang-format on
  };
  for (const auto& [as4, attributes, path] : cases) {
    const Bytes all = octets(attributes);
    EXPECT_EQ(pathText(all, as4), path) << attributes;
    for (std::size_t size = 0; size < all.size(); ++size) pathText(all.substr(0, size), as4);
  }

  const Bytes whole = octets("4002 04 0201 fbf4");
  for (std::size_t size = 1; size < whole.size(); ++size)
    EXPECT_EQ(pathText(whole.substr(0, size), false), "malformed") << size;
}

TEST(AsPath, IsRestoredFromAs4Path) {
  const struct {
    std::string path, as4Path, restored, others = {};
  } cases[] = {
      {"64500 23456 23456", "100000 100001", "64500 100000 100001"},
      {"23456 23456", "100000 100001", "100000 100001"},
      {"64500", "64500 100000", "64500"},
      // A set counts one.
      {"64500 23456 {23456,23456}", "100000 {100001,100002}", "64500 100000 {100001,100002}"},
      {"{64500,64501} 23456", "100000", "{64500,64501} 100000"},
      {"{64500,64501} 23456", "{100001,2,3} 100000", "{100001,2,3} 100000"},
      // Confederations: in front, beside a whole segment, beside one that is replaced.
      {"(64512) [64513] 64500 23456", "64500 100000", "(64512) [64513] 64500 100000"},
      {"64500 (64512) 23456", "100000", "64500 (64512) 100000"},
      {"64500 23456 (64512) 23456", "100000 100001", "64500 100000 100001"},
      {"64500 / 23456 (64512) 23456", "100000 100001", "64500 100000 100001"},
      {"23456 (64512) 23456", "100000 100001", "100000 100001"},
      // They are no part of AS4_PATH.
      {"64500 23456", "(64512) 100000 [64513]", "64500 100000"},
      {"23456", "(64512)", "23456"},
      // A router that knows 2 octets only aggregated the route, or may have not.
      {"1 23456", "100000", "1 23456", "c00706 fbf4 c0000201 c01208 000186a0 c0000202"},
      {"1 23456", "100000", "1 100000", "c00706 5ba0 c0000201 c01208 000186a0 c0000202"},
      {"1 23456", "100000", "1 100000", "c00706 fbf4 c0000201"},
      {"1 23456", "100000", "1 100000", "c00706 fbf4 c0000201 c01207 000186a0 c00002"},
      {"1 23456", "100000", "1 100000", "c00705 fbf4 c00002 c01208 000186a0 c0000202"},
  };
  for (const auto& [path, as4Path, restored, others] : cases) {
    SCOPED_TRACE(testing::Message() << path << ", " << as4Path);
    const Bytes as4 = attribute(17, encoded(as4Path, 4));
    const std::string text = pathText(attribute(2, encoded(path, 2)) + as4 + octets(others), false);
    EXPECT_EQ(text.substr(0, text.find(';')), restored);
    // Malformed, and from a peer that needs none.
    const Bytes malformed = attribute(17, encoded(as4Path, 4) + '\x02');
    EXPECT_EQ(pathText(attribute(2, encoded(path, 2)) + malformed, false),
              pathText(attribute(2, encoded(path, 4)) + as4, true));
  }
}

/// A path is sent to a router that knows 2 octets only; it and those behind it prepend theirs.
TEST(AsPath, IsTheSameBehindOldRouters) {
  std::mt19937 random(6793);
  const auto below = [&](U32 end) { return random() % end; };
  for (int round = 0; round < 3000; ++round) {
    const auto numbers = [&](U32 first, U32 end, const char* between) {
      std::string text = std::to_string(first + below(end));
      for (U32 more = below(4); more > 0; --more)
        text += between + std::to_string(first + below(end));
      return text;
    };
    std::string prepended, path;
    while (below(2)) prepended += numbers(64512, 100, " ") + (below(2) ? " / " : " ");
    if (below(2)) prepended.insert(0, '(' + numbers(64512, 100, " ") + ") ");
    do {
      path += below(4) ? numbers(60000, 9000, " ") + (below(2) ? " / " : " ")
                       : '{' + numbers(60000, 9000, ",") + "} ";
    } while (below(3));
    const Bytes attributes =
        attribute(2, encoded(prepended + path, 2)) + attribute(17, encoded(path, 4));
    EXPECT_EQ(pathText(attributes, false),
              pathText(attribute(2, encoded(prepended + path, 4)), true));
  }
}

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

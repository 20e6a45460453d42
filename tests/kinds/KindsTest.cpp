// Kinds: every value has one text and every text one value; rows are checked; fields by name.
#include <gtest/gtest.h>

#include <bit>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "Mox/Exception.h"
#include "kinds/ZoBgpKindCheck.h"
#include "kinds/ZoBgpKindText.h"
#include "tests/HexOctets.h"

namespace Routing::Bgp {
namespace {

using Attribute = BgpPathAttrType;

Attribute attributeOfSize(std::size_t octets) {
  return octets == 4    ? Attribute::community
         : octets == 8  ? Attribute::extCommunity
         : octets == 12 ? Attribute::largeCommunity
                        : Attribute::extCommunityIp6;
}

AnyCommunity fromHex(std::string_view digits) {
  const auto octets = hexOctets(std::string(digits));
  return communityOf(attributeOfSize(octets.size()), octets);
}

// The value reads back, also shouted and with its attribute given.
void expectRoundTrip(const AnyCommunity& community) {
  const Mox::String text = canonicalText(community);
  const auto back = parseCanonical(text);
  ASSERT_TRUE(back) << text << ": " << back.error.text();
  ASSERT_EQ(*back, community) << text;
  Mox::String loud = text;
  for (char& c : loud)
    if (c >= 'a' && c <= 'z') c = char(c - 'a' + 'A');
  const auto again = parseCanonical(loud, KindTable::builtIn(), attributeOf(community));
  ASSERT_TRUE(again && *again == community) << loud;
}

TEST(Kinds, TextsByHand) {
  const struct {
    const char* octets;
    const char* text;
  } rows[] = {
      {"fde80064", "65000:100"},
      {"ffff0009", "STANDBY_PE"},
      {"000100040000000100000002", "65540:1:2"},
      {"0008fbf400001a0c", "data-collection-as2:64500:AS:NP"},
      {"0008fbf400003c04", "data-collection-as2:64500:NA:SAT:AF"},
      {"0008fbf400001800", "data-collection-as2:64500:AS:0"},
      {"0008fbf400006767", "data-collection-as2:64500:26471"},
      {"0208800000000001", "data-collection-as4:2147483648:customer"},
      {"0008fbf867676767", "data-collection-as2:64504:malformed:67:67:67:67"},
      {"0306000000020501", "ospf-route-type:0.0.0.2:as-external:TYPE-2-METRIC"},
      {"0306c00002010c80", "ospf-route-type:192.0.2.1:12:0"},
      {"030b800000000064", "color:2:100"},
      {"030b0001000000ff", "color:0:15:255"},
      {"030c000100000008", "encapsulation:malformed:00:01:00:00:00:08"},
      {"030d000000000000", "evpn-default-gateway"},
      {"0600010000000043", "mac-mobility:S:67"},
      {"060000000000002a", "mac-mobility::42"},
      {"0600030000000043", "mac-mobility:6:S:67"},
      {"0601000000000430", "esi-label:A:67"},
      {"0601800000000001", "esi-label:esi-label-filtering:A:0/1"},
      {"0601030000000430", "esi-label:3:67"},
      {"0601040000000430", "esi-label:malformed:04:00:00:00:04:30"},
      {"0602feed0db81ea9", "es-import-target:fe:ed:0d:b8:1e:a9"},
      {"0606024000007fff", "evpn-df-election:highest-preference:AC-DF:32767"},
      {"0609000300000000", "evpn-mc-flags:M:I"},
      {"4702caffee014001", "flowspec-interface-set-nt:3405770241:INBOUND:1"},
      {"800a130005dcffff", "layer2-info:19::1500:65535"},
      {"800b0fff0fff0000", "vpls-etree-info:4095:4095:"},
      {"4004fbf44e9502f9", "link-bandwidth-as2-nt:64500:1250000000"},
      {"4004fbf4ff800000", "link-bandwidth-as2-nt:64500:-inf"},
      {"4004fbf47fc00000", "link-bandwidth-as2-nt:64500:malformed:7f:c0:00:00"},
      {"8006000080000000", "flowspec-traffic-rate-bytes:0:-0"},
      {"800600003c23d70a", "flowspec-traffic-rate-bytes:0:0.01"},
      {"80060000ff7fffff",
       "flowspec-traffic-rate-bytes:0:-340282346638528859811704183484516925440"},
      {"0407000000000000", "unknown-transitive:04:07:00:00:00:00:00:00"},
      {"7fffffffffffffff", "unknown-non-transitive:7f:ff:ff:ff:ff:ff:ff:ff"},
      {"000220010db80000000000000000000000010043", "route-target-ipv6:[2001:db8::1]:67"},
      {"0003fe80000000000000000a000b0000000c0001", "route-origin-ipv6:[fe80::a:b:0:c]:1"},
      {"00030001000000000002000000000000000"
       "30001",
       "route-origin-ipv6:[1:0:0:2::3]:1"},
      {"0002000000000000000000000000c00002010043", "route-target-ipv6:[::c000:201]:67"},
      {"4002ffffffffffffffffffffffffffffffff0043",
       "unknown-non-transitive:02:[ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff]:67"},
      {"800220010db80000000000000000000000010043",
       "unknown-transitive:80:02:20:01:0d:b8:00:00:00:00:00:00:00:00:00:00:00:01:00:43"},
  };
  for (const auto& [octets, text] : rows) {
    EXPECT_EQ(canonicalText(fromHex(octets)), text);
    expectRoundTrip(fromHex(octets));
  }
}

// Texts that mean a value without being its canonical text.
TEST(Kinds, OtherSpellings) {
  const struct {
    const char* text;
    const char* canonical;
  } rows[] = {
      {"65535:666", "BLACKHOLE"},
      {"no-export", "NO_EXPORT"},
      {"Standby PE", "STANDBY_PE"},
      {"I2VPN-ID-IPV4:192.0.2.1:1", "l2vpn-id-ipv4:192.0.2.1:1"},
      {"encapsulation:8", "encapsulation:vxlan"},
      {"evpn-arp-nd:R:O", "evpn-arp-nd:O:R"},
      {"evpn-arp-nd:7:o", "evpn-arp-nd:O:R"},
      {"esi-label:1:A:67/0", "esi-label:dcb:A:67"},
      {"esi-label:0:0:67", "esi-label:A:67"},
      {"data-collection-as2:1:as:sat:524", "data-collection-as2:1:AS:SAT:NP"},
      {"data-collection-as2:1:EU:YU", "data-collection-as2:1:EU:891"},
      {"data-collection-as2:1:1", "data-collection-as2:1:customer"},
      {"link-bandwidth-as2:1:1.25E9", "link-bandwidth-as2:1:1250000000"},
      {"link-bandwidth-as2:1:0.10", "link-bandwidth-as2:1:0.1"},
      {"link-bandwidth-as2:1:-INF", "link-bandwidth-as2:1:-inf"},
      {"encapsulation:malformed:00:00:00:00:00:08", "encapsulation:vxlan"},
      {"route-target-as2:7:malformed:00:00:00:09", "route-target-as2:7:9"},
      {"malformed:00:02:00:07:00:00:00:09", "route-target-as2:7:9"},
      {"unknown-transitive:00:02:00:07:00:00:00:09", "route-target-as2:7:9"},
      {"route-target-ipv6:[::192.0.2.1]:67", "route-target-ipv6:[::c000:201]:67"},
      {"unknown-transitive:02:[::]:0", "route-target-ipv6:[::]:0"},
  };
  for (const auto& [text, canonical] : rows) {
    const auto parsed = parseCanonical(text);
    ASSERT_TRUE(parsed) << text << ": " << parsed.error.text();
    EXPECT_EQ(canonicalText(*parsed), canonical) << text;
  }
}

TEST(Kinds, RefusalsSayWhere) {
  const struct {
    const char* text;
    std::size_t position;
    const char* token;
    const char* nearest = "";
  } rows[] = {
      {"", 0, ""},
      {"1:65536", 2, "65536"},
      {"01:2", 0, "01"},
      {"+1:2", 0, "+1"},
      {" 1:2", 0, " 1"},
      {"1:", 2, ""},
      {"1:2:3:4", 0, "1:2:3:4"},
      {"1:2:4294967296", 4, "4294967296"},
      {"rout-target-as2:1:2", 0, "rout-target-as2", "route-target-as2"},
      {"mac-mobilty:S:1", 0, "mac-mobilty", "mac-mobility"},
      {"zebra:1:2", 0, "zebra"},
      {"encapzzzation:8", 0, "encapzzzation", "encapsulation"},
      {"encapzzzztion:8", 0, "encapzzzztion"},
      {"route-target-as2:65536:1", 17, "65536"},
      {"route-target-as2:1", 0, "route-target-as2"},
      {"route-target-as2:1:2:3", 21, "3"},
      {"route-target-as2:1:18446744073709551616", 19, "18446744073709551616"},
      {"route-target-ipv4:192.0.2.01:1", 18, "192.0.2.01"},
      {"route-target-ipv4:192.0.2:1", 18, "192.0.2"},
      {"route-target-ipv4:1.2.3.4.5:1", 18, "1.2.3.4.5"},
      {"evpn-default-gateway:0", 21, "0"},
      {"encapsulation:nosuch", 14, "nosuch"},
      {"encapsulation:65536", 14, "65536"},
      {"mac-mobility:S:S:1", 15, "S"},
      {"mac-mobility:8:1", 13, "8"},
      {"mac-mobility:S::1", 15, ""},
      {"mac-mobility::7:1", 13, ""},
      {"mac-mobility:1", 0, "mac-mobility"},
      {"color:4:100", 6, "4"},
      {"color:0:1:100", 8, "1"},
      {"esi-label:A:67/16", 12, "67/16"},
      {"esi-label:A:1048576", 12, "1048576"},
      {"es-import-target:fe:ed:0d:b8:1e", 0, "es-import-target"},
      {"es-import-target:fe:ed:0d:b8:1e:g0", 32, "g0"},
      {"link-bandwidth-as2:1:nan", 21, "nan"},
      {"link-bandwidth-as2:1:+1", 21, "+1"},
      {"link-bandwidth-as2:1:1e39", 21, "1e39"},
      {"link-bandwidth-as2:1:01", 21, "01"},
      {"link-bandwidth-as2:1:1.", 21, "1."},
      {"link-bandwidth-as2:1:1.5 ", 21, "1.5 "},
      {"data-collection-as2:1:XX:NP", 22, "XX"},
      {"data-collection-as2:1:AS:ZZ", 25, "ZZ"},
      {"data-collection-as2:1:AS:1024", 25, "1024"},
      {"data-collection-as2:1:AS:SAX:NP", 25, "SAX"},
      {"encapsulation:malformed:00", 0, "encapsulation"},
      {"encapsulation:malformed:00:00:00:00:00:08:00", 0, "encapsulation"},
      {"unknown-transitive:67:89:ab:cd:ef:01:23:45", 19, "67"},
      {"unknown-non-transitive:03:0c:00:00:00:00:00:00", 23, "03"},
      {"unknown-transitive:03:0c", 0, "unknown-transitive:03:0c"},
      {"unknown-transitive:2:[::]:0", 19, "2"},
      {"route-target-ipv6:[::1:67", 0, "route-target-ipv6"},
      {"route-target-ipv6:[::g]:67", 18, "[::g]"},
  };
  for (const auto& row : rows) {
    const auto parsed = parseCanonical(row.text);
    ASSERT_FALSE(parsed) << row.text << " is " << canonicalText(*parsed);
    EXPECT_EQ(parsed.error.position, row.position) << row.text;
    EXPECT_EQ(parsed.error.token, row.token) << row.text;
    EXPECT_EQ(parsed.error.nearest, row.nearest) << row.text;
  }
  EXPECT_EQ(parseCanonical("1:65536").error.text(),
            "at 2: \"65536\": expected a decimal number below 65536");
  EXPECT_EQ(parseCanonical("1:" + std::string(65, '\n')).error.text().substr(259),
            "\\x0a...\": expected a decimal number below 65536");
  EXPECT_FALSE(
      parseCanonical("route-target-as2:1:2", KindTable::builtIn(), Attribute::extCommunityIp6));
  EXPECT_FALSE(parseCanonical("1:2", KindTable::builtIn(), Attribute::largeCommunity));
  EXPECT_FALSE(parseCanonical("NO_EXPORT", KindTable::builtIn(), Attribute::extCommunity));
}

// Values of every type and subtype, of all bits clear, all set, one at either end, and of chance.
TEST(Kinds, EveryValueReadsBack) {
  std::mt19937_64 random(3);
  for (U64 head = 0; head < 0x10000; ++head) {
    const U64 values[] = {0, ~0ULL, 1, 1ULL << 47, random(), random() & random() & random()};
    const bool known = KindTable::builtIn().find(ExtCommContent(head << 48));
    for (std::size_t i = 0; i < (known ? std::size(values) : 1); ++i)
      expectRoundTrip(ExtCommContent(head << 48 | values[known ? i : 4] >> 16));
  }
  for (U32 i = 0; i < 20'000; ++i) {
    expectRoundTrip(BgpCommunityValue(U32(random())));
    const U32 rate = i < 512 ? i << 23 : U32(random());  // all powers of two first
    expectRoundTrip(ExtCommContent(0x8006ULL << 48 | rate));
    expectRoundTrip(Acl::CommunityValue(U32(random()), U32(random()), U32(random() >> (i % 64))));
    std::array<U8, 20> octets;
    for (U8& octet : octets) octet = random() % 3 ? U8(0) : U8(random());
    octets[0] = i % 2 ? 0 : U8(random() % 4 * 0x40);
    octets[1] = i % 5 ? U8(random() % 32) : U8(random());
    expectRoundTrip(ExtCommIp6Content::fromOctets(octets));
  }
  for (const RegisteredCommunity& row : registeredCommunities())
    expectRoundTrip(BgpCommunityValue(row.value));
}

// Every bit of every field, alone and with all others: no bit is written that another shows too.
TEST(Kinds, EveryBitOfEveryRowReadsBack) {
  for (const Kind* kind : KindTable::builtIn().rows()) {
    const auto example = fromHex(kind->example);
    EXPECT_EQ(KindTable::builtIn().find(example), kind);
    expectRoundTrip(example);
    if (!kind->identifier.empty()) {
      EXPECT_EQ(KindTable::builtIn().find(kind->identifier), kind);
    }
    if (!kind->isExtended()) continue;
    for (U32 bit = 0; bit < kind->valueBits(); ++bit) {
      std::vector<U8> octets(kind->octets());
      octets[0] = *kind->type, octets[1] = *kind->subtype;
      octets[2 + bit / 8] ^= U8(0x80 >> bit % 8);
      expectRoundTrip(communityOf(kind->attribute, octets));
      for (U32 i = 2; i < octets.size(); ++i) octets[i] ^= 0xFF;
      expectRoundTrip(communityOf(kind->attribute, octets));
    }
  }
}

TEST(Kinds, FieldsByNameAndIndex) {
  const ExtCommContent mobility(0x0600010000000005);
  EXPECT_EQ(kindField(mobility, "sequence")->number(), 5u);
  EXPECT_EQ(kindField(mobility, 2)->field().name, "sequence");
  EXPECT_EQ(kindField(mobility, "flags")->names(), std::vector<Mox::String>{"S"});
  EXPECT_FALSE(kindField(mobility, "serial"));
  EXPECT_FALSE(kindField(mobility, 3));
  EXPECT_FALSE(kindField(ExtCommContent(0x0407000000000000), 0));
  EXPECT_EQ(kindField(ExtCommContent(0x4004fbf44e9502f9), "rate")->rate(), 1250000000.0f);
  EXPECT_EQ(kindField(ExtCommContent(0x0306000000020501), "route-type")->names(),
            std::vector<Mox::String>{"as-external"});
  EXPECT_EQ(kindField(BgpCommunityValue(0xfde80064), "value")->number(), 100u);
  EXPECT_EQ(kindField(Acl::CommunityValue(1, 2, 3), "local2")->number(), 3u);
  EXPECT_EQ(kindField(fromHex("000220010db80000000000000000000000010043"), "global")->text(),
            "[2001:db8::1]");
  // All flags set have as many names as there are bits, and the field's text has them all.
  for (const Kind* kind : KindTable::builtIn().rows()) {
    std::vector<U8> octets(kind->octets(), 0xFF);
    if (kind->isExtended()) octets[0] = *kind->type, octets[1] = *kind->subtype;
    const CommunityOctets all(communityOf(kind->attribute, octets));
    for (const KindField& field : kind->fields) {
      const auto names = KindFieldValue(all, field).names();
      if (field.form != KindForm::flags) continue;
      EXPECT_EQ(names.size(), field.bits) << kind->identifier;
      Mox::String joined;
      for (const Mox::String& name : names) joined += (joined.empty() ? "" : ":") + name;
      EXPECT_EQ(joined, KindFieldValue(all, field).text());
    }
  }
  // Fields of a malformed value are there as well; reserved ones say that they are.
  const ExtCommContent malformed(0x030c000100000008);
  EXPECT_TRUE(isMalformed(malformed, *KindTable::builtIn().find(malformed)));
  EXPECT_TRUE(kindField(malformed, 0)->isReserved());
  EXPECT_EQ(kindField(malformed, "tunnel-type")->text(), "vxlan");
}

constexpr KindName oneName[] = {{1, "one"}};
constexpr KindField whole[] = {{"value", 0, 48}};
constexpr Kind vendor = {
    .type = 0x8f, .subtype = 1, .name = "V", .identifier = "v", .fields = whole};

TEST(Kinds, RowsAreChecked) {
  ASSERT_FALSE(checkKind(vendor));
  using enum KindForm;
  const struct {
    std::vector<KindField> fields;
    const char* reason;
  } rows[] = {
      {{{"a", 0, 47}}, "has fields that leave out bits of the value"},
      {{{"a", 0, 49}}, "ends behind the value"},
      {{{"a", 0, 24}, {"b", 23, 25}}, "begins at another bit than the one before ends"},
      {{{"a", 0, 24}, {"b", 25, 23}}, "begins at another bit than the one before ends"},
      {{{"a", 0, 24}, {"a", 24, 24}}, "has two fields of one name"},
      {{{"", 0, 48}}, "has no name"},
      {{{"a", 0, 0}, {"b", 0, 48}}, "has no bits"},
      {{{"a", 0, 48, ipv4}}, "has a number of bits that its form cannot have"},
      {{{"a", 0, 4}, {"b", 4, 8, hex}, {"c", 12, 36}}, "does not begin at an octet"},
      {{{"a", 0, 48, integer, oneName}}, "has names, but is neither an enumeration nor flags"},
      {{{"a", 0, 24, flags}, {"b", 24, 24, flags}}, "is the second of a variable number of parts"},
      {{{.name = "a", .bits = 48, .optional = true}},
       "is optional, but is neither an enumeration nor flags"},
      {{{"a", 0, 16}, {.name = "b", .bit = 16, .bits = 32, .globalAdministrator = true}},
       "cannot be a global administrator: whole octets at the beginning, of one form"},
      {{{.name = "a", .bits = 16, .form = reserved, .globalAdministrator = true}, {"b", 16, 32}},
       "cannot be a global administrator: whole octets at the beginning, of one form"},
      {{{.name = "a", .bits = 32, .form = float32, .globalAdministrator = true}, {"b", 32, 16}},
       "cannot be a global administrator: whole octets at the beginning, of one form"},
      {{{.name = "a", .bits = 48, .form = flags, .first = 65489}}, "numbers flags beyond 65535"},
      {{{.name = "a", .bits = 4, .globalAdministrator = true}, {"b", 4, 44}},
       "cannot be a global administrator: whole octets at the beginning, of one form"},
  };
  for (const auto& row : rows) {
    Kind kind = vendor;
    kind.fields = row.fields;
    const auto fault = checkKind(kind);
    ASSERT_TRUE(fault) << row.reason;
    EXPECT_EQ(fault->reason, row.reason);
  }
  const struct {
    std::vector<KindName> names;
    const char* reason;
  } names[] = {{{{1, "x"}, {2, "X"}}, "gives one name to two numbers"},
               {{{1, "x"}, {1, "y"}}, "names a number twice"},
               {{{1, "2"}}, "has a name that cannot be read"},
               {{{1, "a:b"}}, "has a name that cannot be read"},
               {{{1, "Malformed"}}, "has a name that cannot be read"},
               {{{4, "x"}}, "names a number that it cannot have"}};
  for (const auto& row : names) {
    const KindField fields[] = {{"a", 0, 2, enumeration, row.names}, {"b", 2, 46}};
    Kind kind = vendor;
    kind.fields = fields;
    ASSERT_TRUE(checkKind(kind)) << row.reason;
    EXPECT_EQ(checkKind(kind)->reason, row.reason);
    EXPECT_EQ(checkKind(kind)->field, fields);
  }
}

TEST(Kinds, TablesTakeMoreRows) {
  const KindTable more = KindTable::builtIn().with({&vendor, 1}, nullptr);
  const ExtCommContent content(0x8f01000000000007);
  EXPECT_EQ(canonicalText(content, more), "v:7");
  EXPECT_EQ(*parseCanonical("V:7", more), AnyCommunity(content));
  EXPECT_EQ(canonicalText(content), "unknown-transitive:8f:01:00:00:00:00:00:07");
  EXPECT_FALSE(parseCanonical("v:7"));
  constexpr Kind standard = {
      .attribute = Attribute::community, .value = 1, .name = "S", .identifier = "s"};
  EXPECT_THROW((void)more.with({&standard, 1}, nullptr), Mox::RangeException);
  // Rows of one type, and rows of one word, in another spelling too.
  Kind other = vendor;
  const auto fault = [&] { return checkKinds({&other, 1}, more.rows()); };
  other.identifier = "w";
  EXPECT_EQ(fault()->text(), "kind \"w\": is of the same type and subtype as \"v\"");
  other.subtype = 2;
  EXPECT_FALSE(fault());
  for (const Kind* kind : more.rows()) {
    Mox::String word(kind->identifier.empty() ? "V" : kind->identifier);
    for (char& c : word) c = c == '-' ? '_' : std::isalpha(c) ? char(c ^ ' ') : c;
    const std::string_view aliases[] = {"W", word};
    other.aliases = aliases;
    ASSERT_TRUE(fault()) << word;
    EXPECT_EQ(fault()->reason, "has an identifier of");
    const Kind both[] = {other, *fault()->other};
    EXPECT_EQ(checkKinds(both)->other, both) << "the earlier";
  }
}

// The facts that the table was made from, where they are at hand: vectors of texts.
TEST(Kinds, VectorsFromElsewhere) {
  const char* const named = std::getenv("BGPCOMM_DATA");
  const std::filesystem::path folder = named ? named : "../shared/data";
  if (!exists(folder / "kinds-vectors.tsv"))
    GTEST_SKIP() << "no kinds-vectors.tsv in $BGPCOMM_DATA, nor in ../shared/data";
  const auto eachRow = [&](const char* name, auto use) {
    std::ifstream file(folder / name);
    std::string line;
    U32 rows = 0;
    while (std::getline(file, line)) {
      std::vector<std::string> cells;
      std::istringstream stream(line);
      for (std::string cell; std::getline(stream, cell, '\t');) cells.push_back(cell);
      use(cells);
      ++rows;
    }
    EXPECT_GT(rows, 10u) << name;
  };
  eachRow("kinds-vectors.tsv", [](const auto& cells) {
    EXPECT_EQ(canonicalText(fromHex(cells[0])), cells[1]);
    expectRoundTrip(fromHex(cells[0]));
  });
  const auto attribute = [](const auto& cells) { return Attribute(std::stoi(cells[0])); };
  eachRow("kinds-aliases.tsv", [&](const auto& cells) {
    // Written for a field of two bits; with the bit of RFC 9856 behind it, 1 is another value.
    if (cells[1] == "esi-label:1:A:67") return;
    const auto parsed = parseCanonical(cells[1], KindTable::builtIn(), attribute(cells));
    ASSERT_TRUE(parsed) << cells[1] << ": " << parsed.error.text();
    EXPECT_EQ(*parsed, fromHex(cells[2])) << cells[1];
    EXPECT_EQ(canonicalText(*parsed), cells[3]);
  });
  eachRow("countries.json", [](const auto& cells) {
    U32 number = 0;
    char letters[3];
    const bool current = std::sscanf(cells[0].c_str(), "\"%u\": \"%2[A-Z]", &number, letters) == 2;
    if (!current && std::sscanf(cells[0].c_str(), "\"%2[A-Z]\": %u", letters, &number) != 2) return;
    const Mox::String text = Mox::String("data-collection-as2:1:AS:") + letters;
    const AnyCommunity community = ExtCommContent(0x0008000100001800 | number);
    EXPECT_EQ(parseCanonical(text).value, community) << text;
    if (current) {
      EXPECT_EQ(canonicalText(community), text);
    }
  });
  eachRow("kinds-rejects.tsv", [&](const auto& cells) {
    EXPECT_FALSE(parseCanonical(cells[1], KindTable::builtIn(), attribute(cells))) << cells[1];
  });
}

}  // namespace
}  // namespace Routing::Bgp

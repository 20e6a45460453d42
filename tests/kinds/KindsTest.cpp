// Kinds: every value has one text and every text one value; rows are checked; fields by name.
#include <gtest/gtest.h>

#include <bit>
#include <filesystem>
#include <fstream>
#include <random>

#include "kinds/ZoBgpKindCheck.h"
#include "tests/Texts.h"
#include "tests/kinds/TextTables.h"

namespace {

using Attribute = BgpPathAttrType;

AnyCommunity fromHex(std::string_view digits) { return *readCommunity("0x" + std::string(digits)); }

// The value reads back, also shouted and with its attribute given.
void expectRoundTrip(const AnyCommunity& community) {
  Mox::String loud = canonicalText(community);
  ASSERT_EQ(parseCanonical(loud).value, community) << loud;
  for (char& c : loud)
    if (c >= 'a' && c <= 'z') c = char(c - 'a' + 'A');
  const auto again = parseCanonical(loud, KindTable::builtIn(), attributeOf(community));
  ASSERT_TRUE(again && *again == community) << loud;
}

// The canonical text, then octets of the value and other texts that mean it.
TEST(Kinds, TextsByHand) {
  for (const Cells& row : rowsOf(R"(
STANDBY_PE | ffff0009 | Standby PE
BLACKHOLE | ffff029a | 65535:666
data-collection-as2:64500:AS:NP | 0008fbf400001a0c | data-collection-as2:64500:as:524
data-collection-as2:64500:EU:SAT:891 | data-collection-as2:64500:EU:sat:YU
data-collection-as2:64500:NA:SAT:AF | 0008fbf400003c04
data-collection-as2:64500:AS:0 | 0008fbf400001800
data-collection-as2:64500:26471 | 0008fbf400006767
data-collection-as4:2147483648:customer | 0208800000000001 | data-collection-as4:2147483648:1
data-collection-as2:64504:malformed:67:67:67:67 | 0008fbf867676767
ospf-route-type:0.0.0.2:as-external:TYPE-2-METRIC | 0306000000020501
ospf-route-type:192.0.2.1:12:0 | 0306c00002010c80
color:2:100 | 030b800000000064
color:0:15:255 | 030b0001000000ff
encapsulation:malformed:00:01:00:00:00:08 | 030c000100000008
encapsulation:vxlan | encapsulation:8 | encapsulation:malformed:00:00:00:00:00:08
evpn-default-gateway | 030d000000000000
mac-mobility:S:67 | 0600010000000043
mac-mobility::42 | 060000000000002a
mac-mobility:6:S:67 | 0600030000000043
esi-label:A:67 | 0601000000000430 | esi-label:0:0:67
esi-label:esi-label-filtering:A:0/1 | 0601800000000001
esi-label:3:67 | 0601030000000430
esi-label:dcb:A:67 | esi-label:1:A:67/0
esi-label:malformed:04:00:00:00:04:30 | 0601040000000430
es-import-target:fe:ed:0d:b8:1e:a9 | 0602feed0db81ea9
evpn-df-election:highest-preference:AC-DF:32767 | 0606024000007fff
evpn-arp-nd:O:R | evpn-arp-nd:R:O | evpn-arp-nd:7:o
evpn-mc-flags:M:I | 0609000300000000
l2vpn-id-ipv4:192.0.2.1:1 | I2VPN-ID-IPV4:192.0.2.1:1
flowspec-interface-set-nt:3405770241:INBOUND:1 | 4702caffee014001
layer2-info:19::1500:65535 | 800a130005dcffff
vpls-etree-info:4095:4095: | 800b0fff0fff0000
link-bandwidth-as2-nt:64500:1250000000 | 4004fbf44e9502f9 | link-bandwidth-as2-nt:64500:1.25E9
link-bandwidth-as2-nt:64500:-inf | 4004fbf4ff800000 | link-bandwidth-as2-nt:64500:-INF
link-bandwidth-as2-nt:64500:malformed:7f:c0:00:00 | 4004fbf47fc00000
flowspec-traffic-rate-bytes:0:-0 | 8006000080000000
flowspec-traffic-rate-bytes:0:0.01 | 800600003c23d70a | flowspec-traffic-rate-bytes:0:0.010
flowspec-traffic-rate-bytes:0:-340282346638528859811704183484516925440 | 80060000ff7fffff
unknown-transitive:04:07:00:00:00:00:00:00 | 0407000000000000
unknown-non-transitive:7f:ff:ff:ff:ff:ff:ff:ff | 7fffffffffffffff
route-target-as2:7:9 | route-target-as2:7:malformed:00:00:00:09 | malformed:00:02:00:07:00:00:00:09
route-target-as2:7:9 | 0002000700000009 | unknown-transitive:00:02:00:07:00:00:00:09
route-origin-ipv6:[fe80::a:b:0:c]:1 | 0003fe80000000000000000a000b0000000c0001
route-origin-ipv6:[1:0:0:2::3]:1 | 0003000100000000000200000000000000030001
route-target-ipv6:[::c000:201]:67 | 0002000000000000000000000000c00002010043 | route-target-ipv6:[::192.0.2.1]:67
route-target-ipv6:[::]:0 | unknown-transitive:02:[::]:0
unknown-non-transitive:02:[ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff]:67 | 4002ffffffffffffffffffffffffffffffff0043
unknown-transitive:80:02:20:01:0d:b8:00:00:00:00:00:00:00:00:00:00:00:01:00:43 | 800220010db80000000000000000000000010043
)"))
    for (std::size_t i = 1; i < row.size(); ++i) {
      const bool octets = row[i].find_first_not_of("0123456789abcdef") == std::string::npos;
      const auto value = octets ? fromHex(row[i]) : parseCanonical(row[i]).value;
      ASSERT_TRUE(value) << row[i];
      EXPECT_EQ(canonicalText(*value), row[0]) << row[i];
      expectRoundTrip(*value);
    }
}

TEST(Kinds, RefusalsSayWhere) {
  expectRefused(R"(
a decimal number | 1:^65536^ | ^01^:2 | 1:^^ | 1:2:^4294967296^
a community | ^+1^:2 | ^ 1^:2
a decimal number | route-target-as2:^65536^:1 | route-target-as2:1:^18446744073709551616^ | color:^4^:100
expected | ^^ | ^1:2:3:4^ | ^zebra^:1:2 | ^encapzzzztion^:8 | ^route-target-as2^:1 | ^mac-mobility^:1
did you mean "route-target-as2" | ^rout-target-as2^:1:2
did you mean "mac-mobility" | ^mca-mobiilty^:S:1
did you mean "encapsulation" | ^encapzzzation^:8
nothing more | route-target-as2:1:2:^3^ | evpn-default-gateway:^0^
an IPv4 address | route-target-ipv4:^192.0.2.01^:1 | route-target-ipv4:^192.0.2^:1 | route-target-ipv4:^1.2.3.4.5^:1
an IPv6 address | route-target-ipv6:^[::g]^:67
expected | ^route-target-ipv6^:[::1:67
a decimal number of at most 16 bits | encapsulation:^nosuch^ | encapsulation:^65536^
flag | mac-mobility:S:^S^:1 | mac-mobility:^8^:1 | mac-mobility:S:^^:1 | mac-mobility:^^:7:1 | color:0:^1^:100
flag | mac-mobility:^X^:1
a label | esi-label:A:^67/16^ | esi-label:A:^1048576^
es-import-target:<es-import:...> | ^es-import-target^:fe:ed:0d:b8:1e
a rate | link-bandwidth-as2:1:^nan^ | link-bandwidth-as2:1:^+1^ | link-bandwidth-as2:1:^1e39^
a rate | link-bandwidth-as2:1:^01^ | link-bandwidth-as2:1:^1.^ | link-bandwidth-as2:1:^1.5 ^
a region | data-collection-as2:1:^XX^:NP
a country | data-collection-as2:1:AS:^ZZ^ | data-collection-as2:1:AS:^1024^
SAT | data-collection-as2:1:AS:^SAX^:NP
as many octets as | ^encapsulation^:malformed:00 | ^encapsulation^:malformed:00:00:00:00:00:08:00
a type without bit 0x40 | unknown-transitive:^67^:89:ab:cd:ef:01:23:45
a type with bit 0x40 | unknown-non-transitive:^03^:0c:00:00:00:00:00:00
8, or 20 in | ^unknown-transitive:03:0c^
two hexadecimal digits | es-import-target:fe:ed:0d:b8:1e:^g0^ | unknown-transitive:^2^:[::]:0
)",
                [](std::string_view text) { return parseCanonical(text); });
  EXPECT_EQ(parseCanonical("1:65536").error.text(),
            "at 2: \"65536\": expected a decimal number below 65536");
  EXPECT_EQ(parseCanonical("1:" + std::string(65, '\n')).error.text().substr(259),
            "\\x0a...\": expected a decimal number below 65536");
  const auto of = [](std::string_view text, Attribute attribute) {
    return bool(parseCanonical(text, KindTable::builtIn(), attribute));
  };
  EXPECT_FALSE(of("route-target-as2:1:2", Attribute::extCommunityIp6));
  EXPECT_FALSE(of("1:2", Attribute::largeCommunity) || of("NO_EXPORT", Attribute::extCommunity));
}

// Values of every type and subtype.
TEST(Kinds, EveryValueReadsBack) {
  std::mt19937_64 random(3);
  for (U64 head = 0; head < 0x10000; ++head)
    for (const U64 bits : {random(), random() & random() & random()})
      expectRoundTrip(ExtCommContent(head << 48 | bits >> 16));
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
}

// Every bit of every field, alone and with all others, and none: no bit is written that another
// shows too.
TEST(Kinds, EveryBitOfEveryRowReadsBack) {
  for (const Kind* kind : KindTable::builtIn().rows()) {
    const auto example = fromHex(kind->example);
    EXPECT_EQ(KindTable::builtIn().find(example), kind);
    expectRoundTrip(example);
    if (!kind->identifier.empty()) {
      EXPECT_EQ(KindTable::builtIn().find(kind->identifier), kind);
    }
    if (!kind->isExtended()) continue;
    std::vector<U8> octets(kind->octets());
    octets[0] = *kind->type, octets[1] = *kind->subtype;
    for (U32 bit = 0; bit <= kind->valueBits(); ++bit)
      for (const U8 others : {0x00, 0xFF}) {
        std::fill(octets.begin() + 2, octets.end(), others);
        if (bit < kind->valueBits()) octets[2 + bit / 8] ^= U8(0x80 >> bit % 8);
        expectRoundTrip(communityOf(kind->attribute, octets));
      }
    const CommunityOctets ones(communityOf(kind->attribute, octets));
    for (const KindField& field : kind->fields)
      if (field.form == KindForm::flags) {
        EXPECT_EQ(KindFieldValue(ones, field).names().size(), field.bits) << kind->identifier;
      }
  }
}

TEST(Kinds, FieldsByNameAndIndex) {
  const ExtCommContent mobility(0x0600010000000005), malformed(0x030c000100000008);
  const auto only = [](const auto& names) { return names.size() == 1 ? names[0] : "not one"; };
  EXPECT_EQ(row(kindField(mobility, "sequence")->number(), kindField(mobility, 2)->field().name,
                only(kindField(mobility, "flags")->names()), bool(kindField(mobility, "serial")),
                bool(kindField(mobility, 3)), bool(kindField(fromHex("0407000000000000"), 0))),
            "5 sequence S 0 0 0");
  EXPECT_EQ(row(kindField(fromHex("4004fbf44e9502f9"), "rate")->rate(),
                only(kindField(fromHex("0306000000020501"), "route-type")->names()),
                kindField(fromHex("fde80064"), "value")->number(),
                kindField(Acl::CommunityValue(1, 2, 3), "local2")->number(),
                kindField(fromHex("000220010db80000000000000000000000010043"), "global")->text()),
            "1.25e+09 as-external 100 3 [2001:db8::1]");
  // Fields of a malformed value are there as well; reserved ones say that they are.
  EXPECT_EQ(row(isMalformed(malformed, *KindTable::builtIn().find(malformed)),
                kindField(malformed, 0)->isReserved(), kindField(malformed, "tunnel-type")->text()),
            "1 1 vxlan");
}

constexpr KindName oneName[] = {{1, "one"}};
constexpr KindField whole[] = {{"value", 0, 48}};
constexpr Kind vendor = {
    .type = 0x8f, .subtype = 1, .name = "V", .identifier = "v", .fields = whole};

TEST(Kinds, RowsAreChecked) {
  ASSERT_FALSE(checkKind(vendor));
  using enum KindForm;
  const char* const elsewhere = "begins at another bit than the one before ends";
  const char* const administrator =
      "cannot be a global administrator: whole octets at the beginning, of one form";
  const char* const unreadable = "has a name that cannot be read";
  const auto global = [](U16 bit, U16 bits, KindForm form) {
    KindField field{"g", bit, bits, form};
    field.globalAdministrator = true;
    return field;
  };
  const auto ofTwoBits = [](const std::vector<KindName>& names) {
    return std::vector<KindField>{{"a", 0, 2, enumeration, names}, {"b", 2, 46}};
  };
  const std::vector<KindName> same = {{1, "x"}, {2, "X"}}, twice = {{1, "x"}, {1, "y"}};
  const std::vector<KindName> digit = {{1, "2"}}, colon = {{1, "a:b"}}, word = {{1, "Malformed"}};
  const std::vector<KindName> large = {{4, "x"}};
  const struct {
    std::vector<KindField> fields;
    const char* field;  // at fault
    const char* reason;
  } rows[] = {
      {{{"a", 0, 47}}, "", "has fields that leave out bits of the value"},
      {{{"a", 0, 49}}, "a", "ends behind the value"},
      {{{"a", 0, 24}, {"b", 23, 25}}, "b", elsewhere},
      {{{"a", 0, 24}, {"b", 25, 23}}, "b", elsewhere},
      {{{"a", 0, 24}, {"a", 24, 24}}, "", "has two fields of one name"},
      {{{"", 0, 48}}, "", "has no name"},
      {{{"a", 0, 0}, {"b", 0, 48}}, "a", "has no bits"},
      {{{"a", 0, 48, ipv4}}, "a", "has a number of bits that its form cannot have"},
      {{{"a", 0, 4}, {"b", 4, 8, hex}, {"c", 12, 36}}, "b", "does not begin at an octet"},
      {{{"a", 0, 48, integer, oneName}}, "a", "has names, but is neither an enumeration nor flags"},
      {{{"a", 0, 24, flags}, {"b", 24, 24, flags}},
       "b",
       "is the second of a variable number of parts"},
      {{{.name = "a", .bits = 48, .optional = true}},
       "a",
       "is optional, but is neither an enumeration nor flags"},
      {{{"a", 0, 16}, global(16, 32, integer)}, "g", administrator},
      {{global(0, 16, reserved), {"b", 16, 32}}, "g", administrator},
      {{global(0, 32, float32), {"b", 32, 16}}, "g", administrator},
      {{global(0, 4, integer), {"b", 4, 44}}, "g", administrator},
      {{{.name = "a", .bits = 48, .form = flags, .first = 65489}},
       "a",
       "numbers flags beyond 65535"},
      {ofTwoBits(same), "a", "gives one name to two numbers"},
      {ofTwoBits(twice), "a", "names a number twice"},
      {ofTwoBits(digit), "a", unreadable},
      {ofTwoBits(colon), "a", unreadable},
      {ofTwoBits(word), "a", unreadable},
      {ofTwoBits(large), "a", "names a number that it cannot have"},
  };
  for (const auto& row : rows) {
    Kind kind = vendor;
    kind.fields = row.fields;
    const auto fault = checkKind(kind);
    ASSERT_TRUE(fault) << row.reason;
    EXPECT_EQ(fault->reason, row.reason);
    EXPECT_EQ(fault->field ? fault->field->name : "", row.field) << row.reason;
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

// The facts that the table was made from, where they are at hand.
TEST(Kinds, VectorsFromElsewhere) {
  const char* const named = std::getenv("BGPCOMM_DATA");
  const std::filesystem::path folder = named ? named : "../shared/data";
  if (!exists(folder / "kinds-vectors.tsv"))
    GTEST_SKIP() << "no kinds-vectors.tsv in $BGPCOMM_DATA, nor in ../shared/data";
  U32 vectors = 0, countries = 0;
  std::ifstream file(folder / "kinds-vectors.tsv");
  for (std::string octets, text, rest; file >> octets >> text; ++vectors) {
    EXPECT_EQ(canonicalText(fromHex(octets)), text);
    expectRoundTrip(fromHex(octets));
    std::getline(file, rest);
  }
  std::ifstream names(folder / "countries.json");
  for (std::string line; std::getline(names, line);) {
    U32 number = 0;
    char letters[3];
    const bool current = std::sscanf(line.c_str(), "\"%u\": \"%2[A-Z]", &number, letters) == 2;
    if (!current && std::sscanf(line.c_str(), "\"%2[A-Z]\": %u", letters, &number) != 2) continue;
    const Mox::String text = Mox::String("data-collection-as2:1:AS:") + letters;
    const AnyCommunity community = ExtCommContent(0x0008000100001800 | number);
    EXPECT_EQ(parseCanonical(text).value, community) << text;
    EXPECT_EQ(canonicalText(community) == text, current) << text;
    ++countries;
  }
  EXPECT_TRUE(vectors > 300 && countries > 250) << vectors << ' ' << countries;
}

}  // namespace

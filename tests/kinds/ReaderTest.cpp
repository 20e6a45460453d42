// Reading of all texts that the library prints: each comes back as what it says.
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <set>

#include "kinds/ZoBgpCommunityLists.h"
#include "parse/BgpParseExtComm.h"
#include "tests/Texts.h"
#include "tests/kinds/TextTables.h"

namespace {

using Attribute = BgpPathAttrType;

// The rows of the tables of a page that have these columns: what stands in backquotes, else the
// cell.
std::vector<Cells> rowsOfPage(const char* path, std::string_view columns) {
  std::ifstream file(path);
  std::vector<Cells> rows;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    inside = line == columns || (inside && line.starts_with('|'));
    if (!inside || line == columns || line.starts_with("|---")) continue;
    for (std::string& cell : rows.emplace_back(cellsOf(line.substr(1))))
      if (cell.starts_with('`') && cell.find('`', 1) + 1 == cell.size())
        cell = cell.substr(1, cell.size() - 2);
  }
  return rows;
}

TEST(Reader, ThePageIsTrue) {
  const auto accepted = rowsOfPage("docs/text.md", "| Text | Community | Unsaid |");
  const auto refused = rowsOfPage("docs/text.md", "| Text | Why it is refused |");
  ASSERT_GT(accepted.size(), 40u);
  ASSERT_GT(refused.size(), 8u);
  for (const Cells& row : accepted) {
    const auto parsed = readCommunity(row[0]);
    ASSERT_TRUE(parsed) << row[0] << ": " << parsed.error.text();
    EXPECT_EQ(canonicalText(*parsed), row[1]) << row[0];
    ASSERT_EQ(row.size(), 3u) << row[0];
  }
  for (const Cells& row : refused) {
    const auto parsed = readCommunity(row[0]);
    EXPECT_TRUE(!parsed && isPlaced(parsed.error, row[0])) << row[0];
  }
}

TEST(Reader, RefusalsSayWhereAndWhat) {
  expectRefused(R"(
a community | ^^ | ^ RT^:1:2 | <^0x0002fde800000064^>
did you mean "route-target-ipv6" | ^Route-Target-IP6^:::1:2
did you mean "route-target-ipv4" | ^Route-Targt-IP^:1.2.3.4:2
did you mean "local-as" | ^lokal-as^
did you mean "NO_EXPORT" | ^no-exprot^
did you mean "DefaultGateway" | ^DefaultGatway^
colon | RT:^1^ | 000b-IP6:^100^
below 65536 behind an AS number of four octets | RT:70000:^70000^
below 65536 behind an address | RT:192.0.2.1:^65536^
below 65536 | RT:70000L:^70000^ | Route-Target-AS:^1L^:2 | Route-Target-AS:^70000^:2 | route-target-as2:^0.10^:1
below 65536 | route-target-as4:1.10:^65536^ | route-target-ipv6:2001:db8::1:^65536^ | 0202-AS4(NT):1:^65536^
below 65536 | <route-target-ipv6:[::1]:^65536^>
below 4294967296 | RT:1:^4294967296^ | 1.10:5:^4294967296^ | Color:CO(10):^4294967296^
an AS number | RT:^01^:1 | RT:^4294967296^:1 | RT:^1.65536^:1 | Route-Target-AS4:^1.10L^:2
an AS number below 65536 | lbw ^65536^:1
an IPv4 address | RT:^1.2.3^:1
an IPv6 address | RT:^[2001:db8::g]^:1
a decimal number | RT:1:^2 ^ | ^65536.1^:5:6
`RT:1.10:5` or `SoO:1.10:5` | ^1.10:5^
`RT:192.0.2.1:100` or `SoO:192.0.2.1:100` | ^192.0.2.1:100^
`RT:[2001:db8::1]:100` or | ^[2001:db8::1]:100^
`RT:::1:100` or `SoO:::1:100` | ^::1:100^
nothing more | route-target-as4:1.10:1:^2^ | 0304:0x00 0x01 0x02 0x03 0x04 0x05^ 0x06^
8, 16, 24 or 40 | ^0x0002fde80000006^ | ^0x0002fde800000064 ^
hexadecimal digits | 0x0002fde8000000^g4^
six octets | 0304:0x00 0x01 0x02 0x03 0x04^^ | 0304:0x00^0x01 0x02 0x03 0x04 0x05^ | 0304(NT):^1^
six octets | 0304:0x00^  0x01 0x02 0x03 0x04 0x05^
bit 0x40 | ^43^04(NT):0x00 0x01 0x02 0x03 0x04 0x05
`-AS4` behind 02 | ^0202-AS(NT)^:65000:100
`-AS` behind type 00 | ^0002-AS4^:1:2
`-IP` behind 01 | ^0102-AS^:1:2
a rate | lbw 65000:^1e39^ | lbw 65000:^+1^ | Link-Bandwidth-AS:1:^10 Qbps^ | Link-Bandwidth-AS:1:^.5 bps^
a rate | Link-Bandwidth-AS:1:^1. bps^ | Link-Bandwidth-AS:1:^01 bps^ | Link-Bandwidth-AS:1:^inf bps^
a rate | Link-Bandwidth-AS:1:^1e9 bps^ | Link-Bandwidth-AS:1:^2722258935367508 Ybps^
a tunnel type | TunnelEncap:^vxlan^ | ^tunnelTypeUnknown-65536^
two bits | Color:CO(^12^):1
`):` | Color:CO(10^)1^
does not say which | Origin-Validation-State:^Unknown^
`>` | ^<^
route-target-as2:65000:101 | <^RouteTarget2ByteASN 65000:100^ 0x0002fde800000065>
`65535:65281` or `0x00000000ffffff01` | ^4294967041^
`65535:65535` or `0x00000000ffffffff` | ^4294967295^
`0x0000000100000000` for octets | ^4294967296^
`0x0002fde800000064` | ^842122827661412^
)",
                [](std::string_view text) { return readCommunity(text); });
}

TEST(Reader, AnAttributeRestrictsWhatIsRead) {
  for (const char* const text : {"65000:100", "local-as", "0x0002fde800000064", "RT:65000:100",
                                 "000b-IP6:::1:100", "1.10:2:3"})
    for (const Attribute wanted : {Attribute::community, Attribute::extCommunity,
                                   Attribute::extCommunityIp6, Attribute::largeCommunity}) {
      const auto parsed = readCommunity(text, KindTable::builtIn(), wanted);
      EXPECT_EQ(bool(parsed), wanted == attributeOf(*readCommunity(text))) << text;
      EXPECT_TRUE(parsed || isPlaced(parsed.error, text)) << text;
    }
}

Kind rowOfTwentyOctets(std::string_view identifier, std::span<const KindField> fields) {
  return {Attribute::extCommunityIp6, 0x00, 0x77, {}, "name", "", identifier, fields};
}

// Rows whose identifiers are words of other forms, too.
TEST(Reader, TwoReadingsAreAnErrorThatSaysBoth) {
  static constexpr KindField numbers[] = {{"a", 0, 16}, {"b", 16, 32}};
  static constexpr KindField ip6[] = {{"a", 0, 128, KindForm::ipv6}, {"b", 128, 16}};
  static constexpr KindField none[] = {{"reserved", 0, 48, KindForm::reserved}};
  const Kind rows[] = {
      {.type = 0x8f, .subtype = 1, .name = "1", .identifier = "rt", .fields = numbers},
      {.type = 0x8f, .subtype = 2, .name = "2", .identifier = "Local-AS", .fields = none},
      rowOfTwentyOctets("SoO", ip6)};
  const KindTable table = KindTable::builtIn().with(rows, nullptr);
  const auto parsed = readCommunity("RT:1:2", table);
  ASSERT_FALSE(parsed);
  EXPECT_EQ(parsed.error.text(),
            "at 0: \"RT:1:2\": expected one reading, but it may be `route-target-as2:1:2` or "
            "`rt:1:2`");
  EXPECT_FALSE(readCommunity("local-as", table));
  EXPECT_EQ(*readCommunity("local-as", table, Attribute::community),
            AnyCommunity(communityNoExportSubconfed));
  EXPECT_EQ(*readCommunity("local-as", table, Attribute::extCommunity),
            AnyCommunity(ExtCommContent(0x8f02000000000000)));
  // One of two forms does not fit: one reading is left.
  EXPECT_EQ(*readCommunity("RT:70000:2", table), *readCommunity("route-target-as4:70000:2"));
  EXPECT_FALSE(readCommunity("SoO:[::1]:2", table));
}

// An address without brackets, where what follows might belong to it: no row of the library is so.
TEST(Reader, BareAddressesEndWhereTheyMust) {
  static constexpr KindName letters[] = {{0, "a"}, {1, "b"}};
  static constexpr KindField fields[] = {{"address", 0, 128, KindForm::ipv6},
                                         {"flags", 128, 16, KindForm::flags, letters}};
  const Kind row = rowOfTwentyOctets("v", fields);
  const KindTable table = KindTable::builtIn().with({&row, 1}, nullptr);
  EXPECT_TRUE(readCommunity("v:[2001:db8::1]:a:b", table));
  EXPECT_FALSE(readCommunity("v:2001:db8::1:a:b", table));
}

TEST(Reader, Lists) {
  const std::string_view text =
      " no-export,65000:100\tRT:1:2 , \"lbw 65000:1.25e+09\"\r\n1:2:3 000b-IP6:::1:100 65000:100 "
      "\"Standby PE\",\"RT:1:2\" ";
  const auto inOrder = readAnyCommunities(text);
  std::string texts;
  for (const AnyCommunity& one : *inOrder) texts += canonicalText(one) + ' ';
  EXPECT_EQ(texts,
            "NO_EXPORT 65000:100 route-target-as2:1:2 link-bandwidth-as2-nt:65000:1250000000 1:2:3 "
            "vrf-route-import-ipv6:[::1]:100 65000:100 STANDBY_PE route-target-as2:1:2 ");
  const auto all = readCommunities(text);
  EXPECT_EQ(row(all->standard.size(), all->extended.size(), all->ip6Extended.size(),
                all->large.size(), all->size(), all->standard[3] == BgpCommunityValue(0xffff0009)),
            "4 3 1 1 9 1");
  EXPECT_EQ(readCommunities(" \n").value->size(), 0u);
  EXPECT_EQ(readCommunities("").value->size(), 0u);
  EXPECT_EQ(readCommunities("0304(NT):0x00 0x01 0x02 0x03 0x04 0x05").value->extended.size(), 1u);
  EXPECT_FALSE(readCommunities("1:2 RT:1:2", KindTable::builtIn(), Attribute::community));
  expectRefused(R"(
below 65536 | 1:2 3:^65536^
expected | 1:2,^^,3:4 | ^^,1:2 | 1:2, ^^ | 1:2 ^"3:4^ | 1:2 "3:4"^5^:6 | 1:2 "^^" | 1:2 ^lbw^ 1:1
expected | 1:2 "^ 3^:4" | link-bandwidth-as2:1:5 1:^2x^ | 1:^2;3^:4
)",
                [](std::string_view text) { return readCommunities(text); });
}

TEST(Reader, ListsOfAPath) {
  const CommunityTables tables;
  const auto read = [&](std::string_view text) { return readCommunityLists(text, tables); };
  const auto path = read("no-export 65000:100,RT:1:2 1:2:3 65000:100");
  ASSERT_TRUE(path) << path.error.text();
  EXPECT_EQ((*path).list<CommList>()->toStrep(), "65000:100 no-export");
  EXPECT_EQ((*path).list<ExtCommList>()->comms(), 1u);
  EXPECT_EQ((*path).list<LargeCommList>()->comms(), 1u);
  EXPECT_EQ((*path).list<ExtCommIp6List>(), nullptr);
  EXPECT_EQ(*path, *read("1:2:3 65000:100 route-target-as2:1:2 65535:65281"));
  EXPECT_TRUE((*read("")).empty());
  EXPECT_EQ(read("1:2 3:65536").error.position, 6u);
  const auto refused = read("\"lbw 1:1\" \"lbw 1:2\"");
  ASSERT_FALSE(refused);
  EXPECT_NE(refused.error.text().find("a second link bandwidth"), std::string::npos);
}

// --- What the library prints.

/// Values of chance of every row and of none: each class prints them.
struct Printed : testing::Test {
  const BgpParseExtCommContainerSm::Ptr container = bgpParseExtCommContainerSmFactory();
  // With the plug-ins, and without: then no class knows a meaning.
  const BgpParseExtendedCommunityRule::Ptr parsers[2] = {
      container->extCommParser(), bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl())};
  std::mt19937_64 random{5};

  U64 someBits() {
    const U64 a = random(), b = random(), c = random();
    const U64 choices[] = {a & b & 0xFFFFFFFF, a & b & c, a % 3, a};
    return choices[random() % 4];
  }
  Mox::String anyCase(Mox::String text) {
    for (char& c : text)
      if (random() % 2) c = char(random() % 2 ? std::tolower(c) : std::toupper(c));
    return text;
  }

  // The text reads as the value, or as another that prints it too if it may leave bits unsaid.
  AnyCommunity expectRead(const Mox::String& text, const AnyCommunity& value, bool mayLose) {
    const auto parsed = readCommunity(anyCase(text));
    EXPECT_TRUE(parsed) << text << ": " << parsed.error.text();
    if (!parsed) return value;
    EXPECT_TRUE(mayLose || *parsed == value)
        << text << ": " << canonicalText(value) << ", not " << canonicalText(*parsed);
    // In quotes it is one of a list, and alone it is not taken for a list.
    const auto list = readCommunities("\"" + text + "\" 1:2:3," + "\"" + text + '"');
    EXPECT_TRUE(list && list.value->size() == 3) << text;
    EXPECT_EQ(readCommunities(text).value->size(), 1u) << text;
    return *parsed;
  }
};

// Which policy texts say what the community is.
bool saysAll(const ExtComm& object, ExtComm::StrepFormat format, std::string_view text) {
  const auto is = [&](auto... any) { return ((object.classification() == any) || ...); };
  if (is(extCommClassificationOriginValidationState))
    return format.inFull() && !text.ends_with("Unknown");
  if (is(extCommClassificationRouteTarget, extCommClassificationRouteOrigin,
         extCommClassificationLinkBandwidth))
    return format.inFull() || format.has(strepFormatClassification);
  return format.inFull() || is(extCommClassificationTunnelEncap, extCommClassificationColor,
                               extCommClassificationDefaultGateway);
}

// Which leave bits unsaid.
bool mayLose(const ExtComm& object, ExtComm::StrepFormat format) {
  const U64 value = object.getContent().value() & 0xFFFFFFFFFFFF;
  const auto is = [&](auto classification) { return object.classification() == classification; };
  if (is(extCommClassificationTunnelEncap)) return value >> 16;
  if (is(extCommClassificationColor)) return value >> 32 & 0x3FFF;
  if (is(extCommClassificationDefaultGateway)) return value;
  if (is(extCommClassificationOriginValidationState)) return value >> 8;
  if (is(extCommClassificationLinkBandwidth))
    return !(format.inFull() && format.has(strepFormatLinkBwWeighted)) ||
           (value & 0x7FFFFFFF) > 0x7F800000;
  if (!is(extCommClassificationRouteTarget) && !is(extCommClassificationRouteOrigin)) return false;
  const bool smallAs4 = object.pktType() == extCommPktTypeTransFourOctetAs && !(value >> 32);
  const bool marked = format.has(strepFormatQualifier) && !format.has(strepFormatAsdot);
  return smallAs4 && !format.inFull() && !marked;
}

TEST_F(Printed, EightOctetsReadBack) {
  U32 texts = 0;
  const auto check = [&](const ExtCommContent& content) {
    for (const auto& parser : parsers) {
      const auto object = parser->parseExtendedCommunity(content);
      std::set<Mox::String> seen;
      for (U32 flags = 0; flags <= ExtComm::StrepFormat::max; ++flags) {
        const ExtComm::StrepFormat format(flags);
        const Mox::String text = object->toStrepForPolicy(format);
        // Several formats may give one text: the one with more flags says more.
        if (!seen.insert(text + (saysAll(*object, format, text) ? "+" : "-")).second) continue;
        if (!saysAll(*object, format, text)) {
          EXPECT_FALSE(readCommunity(text, KindTable::builtIn(), Attribute::extCommunity)) << text;
          continue;
        }
        const auto read = expectRead(text, content, mayLose(*object, format));
        const auto again = parser->parseExtendedCommunity(std::get<ExtCommContent>(read));
        EXPECT_EQ(again->toStrepForPolicy(format), text) << canonicalText(content);
        ++texts;
      }
      expectRead(object->toStrep(), content, false);
    }
    expectRead(row(content), content, false);
    expectRead('<' + canonicalText(content) + ' ' + row(content) + '>', content, false);
  };
  for (const Kind* kind : KindTable::builtIn().rows()) {
    if (kind->attribute != Attribute::extCommunity) continue;
    const U64 head = U64(*kind->type) << 56 | U64(*kind->subtype) << 48;
    const bool typed = kind->identifier.starts_with("route-") || *kind->type == 0x40 ||
                       *kind->type == 0x43 || (*kind->type == 3 && *kind->subtype > 10);
    for (U32 i = 0; i < (typed ? 100 : 4); ++i) check(ExtCommContent(head | someBits() >> 16));
  }
  for (U32 i = 0; i < 1'000; ++i) check(ExtCommContent(random()));
  for (U32 i = 0; i < 512; ++i)  // rates of all sizes
    for (const U64 more : {U64{0}, U64(random() % 0x800000)})
      check(ExtCommContent(0x4004fde800000000 | U64{i} << 23 | more));
  check(ExtCommContent(0));
  // Bounds of what has special texts: AS numbers, rates, states.
  for (const U64 value :
       {0x0002ffffffffffffULL, 0x020200010000ffffULL, 0x02020000ffff0001ULL, 0x4004fde80000ffffULL,
        0x4004fde800000001ULL, 0x4004fde87f7fffffULL, 0x4004fde8ff800000ULL, 0x4004fde87f800000ULL,
        0x4004fde87fc00001ULL, 0x4004fde8ff800001ULL, 0x4004fde880000000ULL, 0x4004fde84cee6b27ULL,
        0x4300000000000002ULL, 0x4300000000000003ULL, 0x030c00000000000dULL})
    check(ExtCommContent(value));
  EXPECT_GT(texts, 10'000u);
}

TEST_F(Printed, TwentyOctetsReadBack) {
  for (U32 i = 0; i < 4'000; ++i) {
    std::array<U8, 20> octets;
    const U64 zeros = random();
    for (U32 j = 0; j < 20; ++j) octets[j] = zeros >> j & 1 ? U8(0) : U8(random());
    if (i % 3) octets[0] = i % 2 ? 0 : 0x40;
    if (i % 5) octets[1] = U8(random() % 20);
    const auto content = ExtCommIp6Content::fromOctets(octets);
    for (const auto& parser : parsers) {
      const auto object = parser->parseExtendedCommunityIp6(content);
      const auto full = ExtCommIp6::StrepFormat(strepFormatClassification | strepFormatUI);
      expectRead(object->toStrepForPolicy(full), content, false);
      // The address and the number alone are of no kind.
      EXPECT_FALSE(readCommunity(object->toStrepForPolicy({}))) << canonicalText(content);
      // A show text without the type says too little.
      const auto shown = object->toStrep();
      if (octets[0] & ~0x40)
        EXPECT_FALSE(readCommunity(shown)) << shown;
      else
        expectRead(shown, content, false);
    }
    const Mox::String canonical = canonicalText(content);
    expectRead('<' + canonical + '>', content, false);
    Mox::String bare = canonical;
    std::erase_if(bare, [](char c) { return c == '[' || c == ']'; });
    expectRead(bare, content, false);
  }
}

TEST_F(Printed, PlainOnesReadBack) {
  for (U32 i = 0; i < 2'000; ++i) {
    const U32 value = i < 16 ? 0xFFFF0000 + i : i < 32 ? 0xFFFFFF00 + i : U32(someBits());
    const auto standard = BgpCommunityValue(value);
    expectRead(CommList::getStringValue(value), standard, false);
    expectRead(canonicalText(standard), standard, false);
    const Acl::CommunityValue large{U32(someBits()), U32(someBits()), U32(someBits())};
    expectRead(valueToStrep(large), large, false);
    const Zonet::AutonomousSystem as(large.globalAdmin());
    expectRead(as.displayString(true) + ':' + std::to_string(large.localData1()) + ':' +
                   std::to_string(large.localData2()),
               large, false);
  }
  for (const U32 value : {0u, 0xFFFF0000u, 0xFFFFFF01u, 0xFFFFFF02u, 0xFFFFFF03u}) {
    Mox::String name = CommList::wellKnownName(value);
    for (const char letter : {'-', '_', ' '}) {
      std::ranges::replace_if(
          name, [](char c) { return c == '-' || c == '_' || c == ' '; }, letter);
      expectRead(name, BgpCommunityValue(value), false);
    }
  }
}

// Texts that went wrong by a character or two.
TEST_F(Printed, WrongTextsAreRefusedOrSomethingElse) {
  std::vector<std::string> texts;
  for (const Cells& row : rowsOfPage("docs/text.md", "| Text | Community | Unsaid |"))
    texts.insert(texts.end(), {row[0], row[1]});
  constexpr std::string_view letters = "0123456789abcdefxLNT:.-_ []()<>,/\"";
  U32 accepted = 0;
  for (U32 i = 0; i < 12'000; ++i) {
    std::string text = texts[random() % texts.size()];
    for (U32 changes = 1 + random() % 2; changes; --changes) {
      const std::size_t at = random() % (text.size() + 1);
      const char letter = random() % 20 ? letters[random() % letters.size()] : char(random());
      const auto change = random() % 3;
      if (change == 0)
        text.insert(at, 1, letter);
      else if (at < text.size())
        change == 1 ? text.erase(at, 1 + random() % 4) : text.replace(at, 1, 1, letter);
    }
    EXPECT_EQ(brokenRule(text), nullptr) << text;
    accepted += bool(readCommunity(text));
  }
  EXPECT_TRUE(accepted > 1'000 && accepted < 7'000) << accepted;
}

}  // namespace

// Extended communities of 8 and of 20 octets: contents, the vocabulary, and every text.
#include <fstream>
#include <locale>

#include "community/ZoBgpCommunityWellKnown.h"
#include "ip6/ExtCommIp6.h"
#include "parse/BgpParseExtComm.h"
#include "tests/Texts.h"

namespace Routing::Bgp {
namespace {

// An object of a content: of the general classes, and what a parser with all plug-ins makes.
using Content = const ExtCommContent&;
ExtComm::Ptr plain(Content content) { return extCommFactory({}, content); }
ExtComm::Ptr subtyped(Content content) { return ExtCommSubtyped::ExtCommSubtypedIs({}, content); }
ExtComm::Ptr as2(Content content) { return ExtCommAsNumber::ExtCommAsNumberIs({}, content, false); }
ExtComm::Ptr as4(Content content) { return ExtCommAsNumber::ExtCommAsNumberIs({}, content, true); }
ExtComm::Ptr ip4(Content content) {
  return Mox::makeNew<ExtCommIpv4Address>(ExtCommClassification{}, content);
}
ExtComm::Ptr rtAs4(Content content) { return extCommRouteTargetAsFactory(content, true); }
ExtComm::Ptr typed(Content content) {
  return bgpParseExtCommContainerSmFactory()->extCommParser()->parseExtendedCommunity(content);
}

// The same of 20 octets.
ExtCommIp6::PtrConst plain6(const ExtCommIp6Content& content) {
  return extCommIp6Factory(extCommClassificationUnSpecified, content);
}
ExtCommIp6::PtrConst subtyped6(const ExtCommIp6Content& content) {
  return Mox::makeNew<ExtCommIp6Subtyped>(extCommClassificationRouteTarget, content);
}
const Zonet::Ip6Addr documentation({0x20, 1, 0xd, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1});

TEST(ExtCommContent, HashesAsEverAndIsStoredInDecimal) {
  const std::tuple<U64, U32, const char*> cases[] = {
      // clang-format off
      {0, 0, "0"}, {1, 0x98adb391, "1"}, {0x0002FDE800000064, 0xbfac65dc, "842122827661412"},
      {0x0202000100640001, 0x065a557b, "144678142330798081"}, {~0ULL, 0x39229c66, "18446744073709551615"}};
  // clang-format on
  ExtCommContent read;
  for (const auto& [number, hash, decimal] : cases) {
    EXPECT_EQ(row(ExtCommContent(number).hash(), valueToStrep(ExtCommContent(number))),
              row(hash, decimal));
    sequenceToValue(decimal, read);
    EXPECT_EQ(read, ExtCommContent(number));
  }
  EXPECT_THROW(sequenceToValue("18446744073709551616", read), Mox::RangeException);
}

TEST(ExtCommIp6Content, HashesAsEverAndIsTextWithTwoRawOctetsAndNoOtherText) {
  // Computed by an independent program.
  EXPECT_EQ(ExtCommIp6Content(0x00, 0x02, documentation, 100).hash(), 0x96c28a85u);
  EXPECT_EQ(ExtCommIp6Content(0x40, 0xff, documentation, 0x0102).hash(), 0x9b06c0b0u);
  ExtCommIp6Content read;
  const auto expectStop = [&](const Mox::String& text, std::size_t offset) {
    const Mox::String reason = raised([&] { sequenceToValue(text, read); });
    ASSERT_TRUE(reason.starts_with("at " + std::to_string(offset) + ':')) << text << ": " << reason;
  };
  for (U32 octet = 0; octet < 256; ++octet) {
    SCOPED_TRACE(octet);
    const ExtCommIp6Content any(U8(octet), U8(255 - octet), documentation, U16(octet * 257));
    const Mox::String address =
        Mox::String("type=") + char(octet) + ";subtype=" + char(255 - octet) + ";addr=";
    const Mox::String number = address + "2001:db8::1;localAdmin=";
    expectText(any, number + std::to_string(octet * 257));
    for (std::size_t cut = 0; cut <= number.size(); ++cut) expectStop(number.substr(0, cut), cut);
    expectStop("type=a;Su", 7);
    expectStop(address + "zz;localAdmin=0", address.size());
    expectStop(number + "-1", number.size());
    for (const char* tooLarge : {"65536", "4294967296"})
      ASSERT_THROW(sequenceToValue(number + tooLarge, read), Mox::RangeException);
    ASSERT_EQ(read, ExtCommIp6Content());
  }
}

// Each names subtypes of its own type, and of no other; in the order of vocabulary.txt.
// clang-format off
constexpr std::array subtypeStrings{
    &ExtComm::pktSubtypeTransTwoOctetAsString, &ExtComm::pktSubtypeTransIpv4AddressString,
    &ExtComm::pktSubtypeTransFourOctetAsString, &ExtComm::pktSubtypeTransOpaqueString,
    &ExtComm::pktSubtypeEvpnString, &ExtComm::pktSubtypeFlowspecRedirectNexthopString,
    &ExtComm::pktSubtypeTransGenericString, &ExtComm::pktSubtypeTransGenericPart2String,
    &ExtComm::pktSubtypeTransGenericPart3String, &ExtComm::pktSubtypeNonTransTwoOctetAsString,
    &ExtComm::pktSubtypeNonTransIpv4AddressString, &ExtComm::pktSubtypeNonTransFourOctetAsString,
    &ExtComm::pktSubtypeNonTransOpaqueString};
// clang-format on

void checkSubtypes(U64 type, auto subtypeString, std::map<U64, Mox::String> names) {
  for (U64 octet = 0; octet < 256; ++octet) {
    if (!names.contains(octet)) names[octet] = "subtype=" + std::to_string(octet);
    EXPECT_EQ((*subtyped(ExtCommContent(type << 56 | octet << 48)).*subtypeString)(), names[octet]);
  }
  EXPECT_DEATH((*subtyped(ExtCommContent(0x44ULL << 56)).*subtypeString)(),
               stringValue(BgpExtCommPktType(type)) + "_ == pktType\\(\\)");
  EXPECT_DEATH((*plain(ExtCommContent(type << 56)).*subtypeString)(),
               "!pktSubtype\\(\\).isUnspecified\\(\\)");
}

// vocabulary.txt has the enumerations with the type octets whose subtypes they name, if they do,
// and the numbers in hexadecimal. A ! marks what is named, yet no member.
TEST(Vocabulary, NamesAndNumbersOfEveryEnumeration) {
  std::ifstream in("tests/community/vocabulary.txt");
  std::ostringstream expected, found;
  auto subtypeString = subtypeStrings.begin();
  for (Mox::String line, enumeration, type; std::getline(in, line); type.clear()) {
    expected << line << '\n';
    if (line.starts_with(' ')) continue;
    found << line << '\n' << std::hex;
    std::istringstream(line) >> enumeration >> type;
    std::map<U64, Mox::String> members;
    const auto* const reflected = Mox::Type::find("Routing::Bgp::" + enumeration);
    for (const auto& [name, value, member] : reflected->enumerators()) {
      found << (member ? "  " : "  !") << value << ' ' << name << '\n';
      if (member) members[value] = name;
    }
    if (!type.empty()) checkSubtypes(std::stoull(type, nullptr, 16), *subtypeString++, members);
  }
  EXPECT_EQ(found.str(), expected.str());
  EXPECT_EQ(subtypeString, subtypeStrings.end());
  EXPECT_EQ(extCommSubtypeString<BgpExtCommPktSubtypeTransTwoOctetAs>(20), "subtype=20");
}

// The show text, in angle brackets before the content, and the policy text. In braces stand
// choices: the first one counts whose letters are all set. Letters are flags: qualifier,
// classification, full words (UI), asdot, weighted.
struct Texts {
  U64 content;
  const char *show, *policy;
  ExtComm::Ptr (*make)(Content) = typed;
};
const Texts texts[] = {
    // clang-format off
    {0x4304FDE800000005, "extCommPktTypeNonTransOpaque",
     "{CU:0304(NT):0xfd 0xe8 0x00 0x00 0x00 0x05}", plain},
    {0x070200000000000F, "extCommPktTypeUnknown none", "{CU:0702:0x00 0x00 0x00 0x00 0x00 0x0f}", subtyped},
    {0x0002FDE800000064, "extCommPktTypeTransTwoOctetAs extCommPktSubtypeTransTwoOctetAsRouteTarget ASN=65000",
     "{CU:0002-AS:}65000:100", as2},
    // The layout is the maker's choice, whatever the type says.
    {0x4055000100640001, "extCommPktTypeNonTransTwoOctetAs subtype=85 ASN=65636",
     "{CU:0055-AS4(NT):}{D:1.100|Q:65636L|:65636}:1", as4},
    {0x0002000100640001, "RouteTarget2ByteASN 65636:1",
     "{CU:Route-Target-AS4:|C:RT:}{D:1.100|Q:65636L|:65636}:1", rtAs4},
    {0x415500000001FFFE, "extCommPktTypeNonTransIpv4Address subtype=85 0.0.0.1",
     "{CU:0155-IP(NT):}0.0.0.1:65534", ip4},
    {0x0002FDE800000064, "RouteTarget2ByteASN 65000:100", "{CU:Route-Target-AS:|C:RT:}65000:100"},
    {0x02020000FFFF0001, "RouteTarget4ByteASN 65535:1",
     "{CU:Route-Target-AS4:|C:RT:}{D:65535|Q:65535L|:65535}:1"},
    {0x0202FFFFFFFF0001, "RouteTarget4ByteASN 4294967295:1",
     "{CU:Route-Target-AS4:|C:RT:}{D:65535.65535|Q:4294967295L|:4294967295}:1"},
    {0x0003FDE8FFFFFFFF, "RouteOrigin2ByteASN 65000:4294967295",
     "{CU:Route-Origin-AS:|C:SoO:}65000:4294967295"},
    {0x0103FFFFFFFFFFFE, "RouteOrigin 255.255.255.255:65534",
     "{CU:Route-Origin-IP:|C:SoO:}255.255.255.255:65534"},
    {0x4004FDE8FFC00000, "LinkBandwidth 65000:-nan", "{CU:Link-Bandwidth-AS:|C:lbw }65000:{CU:nan|:-nan}"},
    {0x4004FDE87F7FFFFF, "LinkBandwidth 65000:3.40282e+38",
     "{CU:Link-Bandwidth-AS:|C:lbw }65000:"
     "{CUW:340282346638528859811704183484516925440|CU:2722258773108231 Ybps|:3.40282e+38}"},
    {0x030CFFFFFFFF0008, "TunnelEncap 8:tunnelTypeVxlan", "{C:TunnelEncap:}tunnelTypeVxlan"},
    {0x030C00000001FFFF, "TunnelEncap 65535:tunnelTypeUnknown", "{C:TunnelEncap:}tunnelTypeUnknown-65535"},
    {0x030B80000000000A, "Color: 10(10)", "Color:CO(10):10"},
    {0x030B7FFFFFFFFFFF, "Color: 4294967295(01)", "Color:CO(01):4294967295"},
    {0x4300000000000002, "OriginValidationState Invalid", "{CU:Origin-Validation-State:Invalid}"},
    {0x4300FFFFFFFFFF07, "OriginValidationState Unknown(7)", "{CU:Origin-Validation-State:Unknown}"},
    {0x030D000000000000, "DefaultGateway", "DefaultGateway"}};
// clang-format on

Mox::String underFlags(const char* policy, U32 flags) {
  std::istringstream in(policy);
  Mox::String text, choices, letters, choice, rest;
  for (std::getline(in, text, '{'); std::getline(in, choices, '}'); text += rest) {
    std::istringstream each(choices);
    while (std::getline(each, letters, ':') && std::getline(each, choice, '|')) {
      U32 needed = 0;
      for (const char letter : letters) needed |= 1u << std::string_view("-QCUDW").find(letter);
      if ((flags & needed) == needed) break;
      choice.clear();
    }
    std::getline(in, rest, '{');
    text += choice;
  }
  return text;
}

struct Grouping : std::numpunct<char> {
  char do_thousands_sep() const override { return '.'; }
  Mox::String do_grouping() const override { return "\1"; }
};

// Texts take nothing from the stream but upper case, and that in the content alone.
struct ExtCommText : testing::Test {
  ExtCommText() {
    stream.imbue(std::locale(std::locale::classic(), new Grouping));
    stream << std::hex << std::showbase << std::showpos << std::left << std::setfill('*')
           << std::setw(40);
  }
  template <class Comm>
  void expectTexts(const Mox::Ptr<Comm>& comm, const Mox::String& show, const char* policy) {
    stream.str("");
    stream << comm << *comm << static_cast<const Comm*>(nullptr);
    EXPECT_EQ(stream.str(), show + show + "NULL");
    EXPECT_EQ(comm->toStrep(), show);
    for (U32 flags = 0; flags <= 0x3f; ++flags)
      EXPECT_EQ(comm->toStrepForPolicy(typename Comm::StrepFormat(flags)),
                underFlags(policy, flags))
          << flags;
  }
  std::ostringstream stream;
};

TEST_F(ExtCommText, ShowAndPolicyUnderAllFlags) {
  for (const auto& [number, show, policy, make] : texts) {
    const ExtComm::PtrConst comm = make(ExtCommContent(number));
    expectTexts(comm, '<' + row(show, comm->getContent()) + '>', policy);
  }
  EXPECT_EQ(ExtComm::extCommTypeAsString("-X", 0xC3, 0x0b, true), "830b-X");
  EXPECT_DEATH(rtAs4(ExtCommContent(0x42ULL << 56))->toStrep(), "0 && \"unexpected type\"");

  const auto format = stream.setf(std::ios::uppercase) | std::ios::uppercase;
  stream.str("");
  stream << ExtCommContent(0x0002FDE8000000AB) << ExtCommContent(0);
  plain(ExtCommContent(1))->formatSubtype(stream);
  plain(ExtCommContent(1))->formatCommunityValue(stream);
  EXPECT_EQ(stream.str(), "0X0002FDE8000000AB000000000000000000unspecified0X0000000000000001");
  EXPECT_TRUE(stream.flags() == format && stream.width() == 40 && stream.fill() == '*');
}

TEST_F(ExtCommText, OfIpv6Addresses) {
  const std::tuple<decltype(&plain6), U8, U8, Mox::String, const char*> cases[] = {
      // clang-format off
      {subtyped6, 0x00, 0x02, "TransIpv6Address extCommIp6PktSubtypeRouteTarget", "{CU:0002-IP6:}2001:db8::1:100"},
      {subtyped6, 0x40, 0x02, "NonTransIpv6Address subtype=2", "{CU:0002-IP6(NT):}2001:db8::1:100"},
      {subtyped6, 0x01, 0x02, "Unknown none", "{CU:0102-IP6:}2001:db8::1:100"},
      {plain6, 0x00, 0x02, "TransIpv6Address", "{CU:0002-IP6:}2001:db8::1:100"},
      {plain6, 0xff, 0xff, "Unknown", "{CU:bfff-IP6(NT):}2001:db8::1:100"}};
  // clang-format on
  for (const auto& [make, type, subtype, show, policy] : cases) {
    const auto comm = make({type, subtype, documentation, 100});
    expectTexts(comm, "<extCommIp6PktType" + show + " addr=2001:db8::1 localAdmin=100>", policy);
    stream.str("");
    comm->formatSubtype(stream);
    EXPECT_TRUE(make == plain6 ? stream.str() == "unspecified" : show.ends_with(stream.str()));
  }
  const ExtCommIp6Content trans(0x00, 0x12, {}, 0), nonTrans(0x40, 2, {}, 0);
  EXPECT_EQ(subtyped6(trans)->pktSubtypeTransIpv6AddressAsString(),
            "extCommIp6PktSubtypeInterAreaP2MPNextHop");
  EXPECT_EQ(subtyped6(nonTrans)->pktSubtypeNonTransIpv6AddressAsString(), "subtype=2");
  EXPECT_DEATH(plain6(trans)->pktSubtypeNonTransIpv6AddressAsString(),
               "ExtCommIp6.*: extCommIp6PktTypeNonTransIpv6Address_ == pktType\\(\\)");
  EXPECT_DEATH(plain6(trans)->pktSubtypeTransIpv6AddressAsString(),
               ": !pktSubtype\\(\\).isUnspecified\\(\\)");
}

}  // namespace
}  // namespace Routing::Bgp

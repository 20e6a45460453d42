#include <gtest/gtest.h>

#include <iomanip>
#include <locale>
#include <sstream>

#include "tests/community/ExtCommClasses.h"

namespace Routing::Bgp {
namespace {

struct ShowCase {
  Kind kind;
  U64 content;
  const char* text;  // what stands between the angle bracket and the content
};

const ShowCase showCases[] = {
    {plain, 0x0400000000000001, "extCommPktTypeTransQosMarking"},
    {plain, 0x070200000000000F, "extCommPktTypeUnknown"},
    {plain, 0x0800000000000001, "extCommPktTypeTransFlowspecRedirectNexthop"},
    {subtyped, 0x070200000000000F, "extCommPktTypeUnknown none"},
    {subtyped, 0x0002FDE800000064,
     "extCommPktTypeTransTwoOctetAs extCommPktSubtypeTransTwoOctetAsRouteTarget"},
    {subtyped, 0x0014000000000001, "extCommPktTypeTransTwoOctetAs subtype=20"},
    {subtyped, 0x41FF000000000001, "extCommPktTypeNonTransIpv4Address subtype=255"},
    {as2, 0x0002FDE800000064,
     "extCommPktTypeTransTwoOctetAs extCommPktSubtypeTransTwoOctetAsRouteTarget ASN=65000"},
    {as4, 0x4204000100640001,
     "extCommPktTypeNonTransFourOctetAs extCommPktSubtypeNonTransFourOctetAsGeneric ASN=65636"},
    {ipv4, 0x0102C0A800010064,
     "extCommPktTypeTransIpv4Address extCommPktSubtypeTransIpv4AddressRouteTarget 192.168.0.1"},
    {rtAs2, 0x0002FDE800000064, "RouteTarget2ByteASN 65000:100"},
    {rtAs4, 0x0202000100640001, "RouteTarget4ByteASN 65636:1"},
    {soAs2, 0x0003FDE8FFFFFFFF, "RouteOrigin2ByteASN 65000:4294967295"},
    {soAs4, 0x020300010064FFFF, "RouteOrigin4ByteASN 65636:65535"},
    {rtAs4, 0x0002000100640001, "RouteTarget2ByteASN 65636:1"},
    {rtIpv4, 0x0102C0A800010064, "RouteTarget 192.168.0.1:100"},
    {soIpv4, 0x0103FFFFFFFFFFFF, "RouteOrigin 255.255.255.255:65535"},
    {lbw, 0x4004FDE84E9502F9, "LinkBandwidth 65000:1.25e+09"},
    {lbw, 0x4004FDE87F800000, "LinkBandwidth 65000:inf"},
    {lbw, 0x4004FDE8FFC00000, "LinkBandwidth 65000:-nan"},
    {tunnel, 0x030CFFFFFFFF0008, "TunnelEncap 8:tunnelTypeVxlan"},
    {tunnel, 0x030C000000000005, "TunnelEncap 5:tunnelTypeUnknown"},
    {color, 0x030B80000000000A, "Color: 10(10)"},
    {color, 0x030B4000FFFFFFFF, "Color: 4294967295(01)"},
    {validation, 0x4300000000000000, "OriginValidationState Valid"},
    {validation, 0x4300000000000001, "OriginValidationState NotFound"},
    {validation, 0x4300000000000002, "OriginValidationState Invalid"},
    {validation, 0x4300FFFFFFFFFF07, "OriginValidationState Unknown(7)"},
    {gateway, 0x030D000000000000, "DefaultGateway"},
};

TEST(ExtCommText, Show) {
  for (const auto& [kind, content, label] : showCases) {
    char hex[20];
    std::snprintf(hex, sizeof hex, "%016llx", content);
    const Mox::String text = Mox::String("<") + label + " 0x" + hex + ">";
    const ExtComm::PtrConst comm = classes[kind].make(ExtCommContent(content));
    EXPECT_EQ(comm->toStrep(), text);
    std::ostringstream stream;
    stream << comm << *comm;
    EXPECT_EQ(stream.str(), text + text);
  }
  std::ostringstream stream;
  stream << static_cast<const ExtComm*>(nullptr);
  EXPECT_EQ(stream.str(), "NULL");
}

// The flags: qualifier, classification, full words (UI), asdot, weighted.
constexpr U32 Q = 0x02, C = 0x04, U = 0x08, D = 0x10, W = 0x20, all = 0x3f;

struct PolicyCase {
  Kind kind;
  U64 content;
  U32 flags;
  const char* text;
};

const PolicyCase policyCases[] = {
    {plain, 0x0002FDE800000064, C | U, "0002:0xfd 0xe8 0x00 0x00 0x00 0x64"},
    {plain, 0x4304000000000005, C | U, "0304(NT):0x00 0x00 0x00 0x00 0x00 0x05"},
    {subtyped, 0xC7FF0102030405FF, C | U, "87ff(NT):0x01 0x02 0x03 0x04 0x05 0xff"},
    {plain, 0x0002FDE800000064, U, ""},
    {subtyped, 0x0002FDE800000064, all - U, ""},
    {as2, 0x0002FDE800000064, 0, "65000:100"},
    {as2, 0x0002FDE8FFFFFFFF, Q, "65000:4294967295"},
    {as2, 0x0002FDE800000064, C | U, "0002-AS:65000:100"},
    {as2, 0x0002FDE800000064, C, "65000:100"},
    {as4, 0x0202000100640001, Q, "65636L:1"},
    {as4, 0x02020000FDE80001, Q, "65000L:1"},
    {as4, 0x0202000100640001, D, "1.100:1"},
    {as4, 0x0202000100640001, Q | D, "1.100:1"},
    {as4, 0x0202FFFFFFFF0001, D, "65535.65535:1"},
    {as4, 0x02020000FFFF0001, D, "65535:1"},
    {as4, 0x4202000100640001, C | U, "0202-AS4(NT):65636:1"},
    {ipv4, 0x0102C0A800010064, 0, "192.168.0.1:100"},
    {ipv4, 0x0102C0A800010064, C | U, "0102-IP:192.168.0.1:100"},
    {ipv4, 0x0102C0A800010064, all - C, "192.168.0.1:100"},
    {rtAs2, 0x0002FDE800000064, U, "65000:100"},
    {rtAs2, 0x0002FDE800000064, C, "RT:65000:100"},
    {rtAs2, 0x0002FDE800000064, C | U | Q, "Route-Target-AS:65000:100"},
    {rtAs4, 0x0202000100640001, C | U, "Route-Target-AS4:65636:1"},
    {rtAs4, 0x0202000100640001, C | U | Q, "Route-Target-AS4:65636L:1"},
    {rtIpv4, 0x0102C0A800010064, 0, "192.168.0.1:100"},
    {rtIpv4, 0x0102C0A800010064, C, "RT:192.168.0.1:100"},
    {rtIpv4, 0x0102C0A800010064, C | U, "Route-Target-IP:192.168.0.1:100"},
    {soAs2, 0x0003FDE800000064, C, "SoO:65000:100"},
    {soAs2, 0x0003FDE800000064, C | U, "Route-Origin-AS:65000:100"},
    {soAs4, 0x0203000100640001, all, "Route-Origin-AS4:1.100:1"},
    {soIpv4, 0x010301020304FFFF, C, "SoO:1.2.3.4:65535"},
    {soIpv4, 0x010301020304FFFF, C | U, "Route-Origin-IP:1.2.3.4:65535"},
    // 0x4E9502F9 is 1.25e9 octets per second, ten gigabits.
    {lbw, 0x4004FDE84E9502F9, W, "65000:1.25e+09"},
    {lbw, 0x4004FDE84E9502F9, C | W, "lbw 65000:1.25e+09"},
    {lbw, 0x4004FDE84E9502F9, C | U, "Link-Bandwidth-AS:65000:10 Gbps"},
    {lbw, 0x4004FDE84E9502F9, C | U | W, "Link-Bandwidth-AS:65000:1250000000"},
    {lbw, 0x4004FDE8BF800000, 0, "65000:-1"},
    {lbw, 0x4004FDE8BF800000, C | U, "Link-Bandwidth-AS:65000:-8 bps"},
    {lbw, 0x4004FDE8FF800000, 0, "65000:-inf"},
    {lbw, 0x4004FDE8FF800000, C | U, "Link-Bandwidth-AS:65000:-inf"},
    {lbw, 0x4004FDE87F800001, 0, "65000:nan"},
    {lbw, 0x4004FDE8FFC00000, 0, "65000:-nan"},
    {lbw, 0x4004FDE8FFC00000, C | U | W, "Link-Bandwidth-AS:65000:nan"},
    {lbw, 0x4004FDE800000001, 0, "65000:1.4013e-45"},
    {lbw, 0x4004FDE800000001, C | U | W,
     "Link-Bandwidth-AS:65000:0.00000000000000000000000000000000000000000000"
     "1401298464324817"},
    {lbw, 0x4004FDE87F7FFFFF, 0, "65000:3.40282e+38"},
    {lbw, 0x4004FDE87F7FFFFF, C | U | W,
     "Link-Bandwidth-AS:65000:340282346638528859811704183484516925440"},
    {tunnel, 0x030C000000000008, C, "TunnelEncap:tunnelTypeVxlan"},
    {tunnel, 0x030C000000000008, all - C, "tunnelTypeVxlan"},
    {tunnel, 0x030C00000001FFFF, C | U, "TunnelEncap:tunnelTypeUnknown-65535"},
    {tunnel, 0x030C000000000005, 0, "tunnelTypeUnknown-5"},
    {color, 0x030B80000000000A, 0, "Color:CO(10):10"},
    {color, 0x030BFFFFFFFFFFFF, all, "Color:CO(11):4294967295"},
    {validation, 0x4300000000000000, C | U, "Origin-Validation-State:Valid"},
    {validation, 0x4300000000000001, C | U, "Origin-Validation-State:NotFound"},
    {validation, 0x4300000000000002, C | U, "Origin-Validation-State:Invalid"},
    {validation, 0x4300FFFFFFFFFF07, C | U, "Origin-Validation-State:Unknown"},
    {validation, 0x4300000000000002, C, ""},
    {gateway, 0x030D000000000000, 0, "DefaultGateway"},
    {gateway, 0x030D000000000000, all, "DefaultGateway"},
};

TEST(ExtCommText, Policy) {
  for (const auto& [kind, content, flags, text] : policyCases) {
    const ExtComm::PtrConst comm = classes[kind].make(ExtCommContent(content));
    EXPECT_EQ(comm->toStrepForPolicy(ExtComm::StrepFormat(flags)), text) << flags;
  }
}

struct Grouping : std::numpunct<char> {
  char do_thousands_sep() const override { return '.'; }
  Mox::String do_grouping() const override { return "\1"; }
};

TEST(ExtCommText, TakesUpperCaseFromTheStreamAndNothingElse) {
  std::ostringstream stream;
  stream.imbue(std::locale(std::locale::classic(), new Grouping));
  stream << std::uppercase << std::hex << std::showbase << std::showpos << std::setfill('*')
         << std::left << std::setw(40);
  const auto flags = stream.flags();
  stream << ExtCommContent(0x0002FDE8000000AB) << ExtCommContent(0);
  stream << classes[lbw].make(ExtCommContent(0x4004FDE84E9502F9));
  classes[subtyped].make(ExtCommContent(0x00FF000000000000))->formatSubtype(stream);
  classes[plain].make(ExtCommContent(1))->formatSubtype(stream);
  classes[plain].make(ExtCommContent(1))->formatCommunityValue(stream);
  EXPECT_EQ(stream.flags(), flags);
  EXPECT_EQ(stream.width(), 40);
  EXPECT_EQ(stream.str(),
            "0X0002FDE8000000AB"
            "000000000000000000"
            "<LinkBandwidth 65000:1.25e+09 0X4004FDE84E9502F9>"
            "subtype=255"
            "unspecified"
            "0X0000000000000001");
}

}  // namespace
}  // namespace Routing::Bgp

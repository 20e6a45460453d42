// Small values and their texts, and the buffer in which they go to the wire.
#include "Mox/Enum.h"
#include "Orv/MaybeU63.h"
#include "Platform.h"
#include "Zonet/AutonomousSystem.h"
#include "Zonet/Ip4Addr.h"
#include "Zonet/Ip6Addr.h"
#include "agent/CommunityValue.h"
#include "agent/FeatureToggles.h"
#include "agent/LinkBandwidth.h"
#include "agent/Serialize.h"

namespace {

using namespace std::literals;
using Mox::operator<<, Mox::sequenceToValue, Mox::valueToStrep;
using Orv::MaybeU63, Zonet::Ip6Addr, Routing::Bgp::Serialize, Routing::Rib::LinkBandwidth;

/// Checks that each text is refused, for a reason that begins like this one, and that the value
/// stays.
template <class Value>
void expectRefused(const Value& unchanged, std::string_view reason,
                   std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) {
    Value value = unchanged;
    const std::string why = raised([&] { sequenceToValue(text, value); });
    EXPECT_TRUE(why.starts_with(reason) && value == unchanged) << text << ": " << why;
  }
}

// Neither values nor names in order, the largest value, and a name that is no member.
#define MOX_ROWS(X) \
  X(fruitPear, 9) X(fruitApple, 2) X(fruitFig, 0xFFFFFFFF) X(fruitUnknown, 256, false)
enum Fruit : U32 { MOX_ROWS(MOX_ENUMERATOR) };
consteval auto enumTable(Fruit) {
  return Mox::enumRows<Fruit>("Test::Fruit", {MOX_ROWS(MOX_ENUM_ROW)});
}
#undef MOX_ROWS
const Mox::Type fruitType = Mox::enumType<Fruit>();

TEST(Enum, NamesAndNumbersConvertBothWays) {
  const std::tuple<U32, std::string, bool, bool> cases[] = {
      {2, "fruitApple", true, true}, {256, "fruitUnknown", false, true},
      {9, "fruitPear", true, true},  {0, "0", false, false},
      {~0u, "fruitFig", true, true}, {~0u - 1, "4294967294", false, false}};
  const std::string noneNamed = "no enumerator of Test::Fruit is named \"",
                    noMember = "range: no member of Test::Fruit has the value ";
  const auto instance = [](const auto& key) {
    std::string text = ", ";
    return raised([&] { text += Mox::stringValue(Mox::EnumInstance<Fruit>{}(key)); }) + text;
  };
  for (const auto& [value, text, member, named] : cases) {
    expectText(Fruit(value), text);
    EXPECT_EQ(Mox::isEnumMember(Fruit(value)), member) << text;
    const std::string found = "nothing, " + text, number = std::to_string(value);
    EXPECT_EQ(instance(value), member ? found : noMember + number + ", ");
    EXPECT_EQ(instance(text), named ? found : "range: " + noneNamed + text + "\", ");
    Fruit fruit = fruitPear;
    sequenceToValue(number, fruit);
    EXPECT_EQ(fruit, value);
  }
  expectRefused(fruitPear, "at 0: " + noneNamed,
                {"", "fruitapple", "fruitApple ", "fruitApp", "-1", "+9", " 9"});
  expectRefused(fruitPear, "at 1: not an unsigned decimal number: \"9x\"", {"9x"});
  expectRefused(fruitPear, "range: number too large: 4294967296", {"4294967296"});
  std::string registered;
  for (const Mox::Enumerator& e : Mox::Type::find("Test::Fruit")->enumerators())
    registered += row(e.name, e.value, e.member ? "" : "! ");
  EXPECT_EQ(registered, "fruitPear 9 fruitApple 2 fruitFig 4294967295 fruitUnknown 256 ! ");
}

TEST(MaybeU63, IsNoneOrANumberOf63Bits) {
  EXPECT_EQ(MaybeU63().word(), 0x8000000000000000u);
  expectText(MaybeU63(), "-");
  for (const U64 number : {0ULL, 0x100000000ULL, 0x7FFFFFFFFFFFFFFFULL})
    expectText(MaybeU63(number), std::to_string(number));
  EXPECT_THROW(MaybeU63(0x8000000000000000), Mox::RangeException);
  expectRefused(MaybeU63(7),
                "range: number too large: ", {"9223372036854775808", "18446744073709551616"});
  expectRefused(MaybeU63(7), "at 0: not an unsigned decimal number: ", {"", "--", "-1", "- "});
  expectRefused(MaybeU63(7), "at 1: not an unsigned decimal number: ", {"0x1", "1 "});
}

TEST(Ip6Addr, ReadsEveryFormWritesTheCanonicalOneAndOrdersByOctets) {
  const std::pair<const char*, const char*> ascending[] = {
      // clang-format off
      {"0:0:0:0:0:0:0:0", "::"}, {"::0.0.1.0", "::100"}, {"::ffff:c000:0201", "::ffff:192.0.2.1"},
      {"2001:0:0:1:0:0:0:1", "2001:0:0:1::1"},  // the longest run is left out
      {"2001:0DB8:0000:0000:0000:0000:0000:0001", "2001:db8::1"},
      {"2001:db8:0:1:1:1:1:1", "2001:db8:0:1:1:1:1:1"},  // a single zero group stays
      {"ffff:ffff:ffff:ffff:ffff:ffff:255.255.255.255", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"}};
  // clang-format on
  Ip6Addr previous({0x20, 1, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff});
  expectText(previous, "2001:db8::ff");
  for (const auto& [form, canonical] : ascending) {
    Ip6Addr address;
    sequenceToValue(form, address);
    expectText(address, canonical);
    EXPECT_EQ(address > previous, form != ascending[0].first) << form;
    previous = address;
  }
  expectRefused(Ip6Addr({1}), "at 0: not an IPv6 address: \"",
                {"", "1:2:3:4:5:6:7:8:9", "::1::", " ::1", "fe80::1%eth0", "192.0.2.1", "::1\0"sv,
                 "::1\0x"sv, "00000000000000000000000000000000000000000000::1"});
}

TEST(Texts, OfAddressesNumbersAndValues) {
  using As = Zonet::AutonomousSystem;
  EXPECT_EQ(row(As(65535).displayString(true), As(65536).displayString(true),
                As(~0u).displayString(false), Zonet::Ip4Addr(0xFF80007F).toStrep(),
                valueToStrep(Acl::CommunityValue(65000, 1, ~0u))),
            "65535 1.0 4294967295 255.128.0.127 65000:1:4294967295");
}

TEST(FeatureToggles, DefaultHoldsUntilTheHostSaysOtherwise) {
  using namespace Routing;
  const auto both = [] { return row(getToggleState("Test", true), getToggleState("Test", false)); };
  std::string seen = both();
  for (const bool on : {true, false}) featureToggleIs("Test", on), seen += ", " + both();
  featureToggleDel("Test");
  EXPECT_EQ(seen + ", " + both(), "1 0, 1 1, 0 0, 1 0");
}

TEST(Trace, GoesToStandardErrorUnlessTheHostTakesIt) {
  EXPECT_FALSE(Mox::traceEnabled(1)) << "off by default";
  const std::string taken = traced(8, [] {
    EXPECT_TRUE(Mox::traceEnabled(8) && !Mox::traceEnabled(9));
    Mox::trace(9, "mine");
  });
  testing::internal::CaptureStderr();
  Mox::trace(8, "yours");
  EXPECT_EQ(taken + testing::internal::GetCapturedStderr(), "9mine\n[8] yours\n");
}

// A loop over the octets of a temporary walks a copy.
static_assert(std::is_same_v<decltype(Ip6Addr().octets()), Ip6Addr::Octets>);

TEST(LinkBandwidth, TextWithUnitAndWeighted) {
  using Limits = std::numeric_limits<double>;
  // Octets per second, text, weighted text.
  const std::tuple<double, const char*, const char*> cases[] = {
      // clang-format off
      {1250000000, "10 Gbps", "1250000000"}, {-1250000, "-10 Mbps", "-1250000"}, {0, "0 bps", "0"},
      {0.00005, "0 bps", "0.00005"}, {-0.00006, "0 bps", "-0.00006"}, {-0.0, "0 bps", "-0"},
      {-0.25, "-2 bps", "-0.25"}, {124.875, "999 bps", "124.875"}, {125, "1 kbps", "125"},
      {156.25, "1.25 kbps", "156.25"}, {154320.986, "1.235 Mbps", "154320.986"},  // 1.234567888 Mbps
      {-124999950, "-1 Gbps", "-124999950"},   // 999.9996 Mbps
      {124999925, "999.999 Mbps", "124999925"},  // 999.9994 Mbps
      {1.25e13, "100 Tbps", "12500000000000"}, {-Limits::infinity(), "-inf", "-inf"},
      {-Limits::quiet_NaN(), "nan", "nan"},  // and the largest float:
      {0x0.ffffffp128, "2722258773108231 Ybps", "340282346638528859811704183484516925440"}};
  // clang-format on
  for (const auto& [octetsPerSecond, text, weighted] : cases) {
    const LinkBandwidth bandwidth(octetsPerSecond);
    EXPECT_EQ(row(bandwidth.toStrep(false), bandwidth.toStrep(true)), row(text, weighted));
  }
  for (const double number : {-Limits::max(), -Limits::denorm_min(), 2.2250738585072011e-308}) {
    EXPECT_EQ(std::strtod(LinkBandwidth(number).toStrep(true).c_str(), nullptr), number);
    EXPECT_GT(std::strtod(LinkBandwidth(number).toStrep(false).c_str(), nullptr), -Limits::max());
  }
}

TEST(Serialize, HoldsWhatIsAppendedInNetworkOrderAcrossGrowthAndCopying) {
  Serialize buffer, small;
  small.addU8(1);
  buffer.addU8(0x01);
  buffer.addU16hton(0x0203);
  buffer.addU32hton(0x04050607);
  buffer.addU64hton(0x08090A0B0C0D0E0F);
  buffer.addIpv6Addr(Ip6Addr({16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31}));
  Mox::String expected;
  while (expected.size() < 31) expected += char(expected.size() + 1);
  EXPECT_EQ(buffer.serializedString(29) + buffer.serializedString(31), "\x1E\x1F");
  EXPECT_DEATH(buffer.serializedString(32), "offset <= length_");
  for (U32 i = 0; i < 20000; ++i) {  // the steps of 1 and 3 octets meet every place of the limits
    buffer.addU8(U8(i * 7));
    buffer.addU16hton(U16(i));
    expected += {char(U8(i * 7)), char(U8(i >> 8)), char(U8(i))};
    ASSERT_EQ(buffer.capacity(), std::max(4096u, std::bit_ceil(buffer.length())));
    if (i % 1000 != 0) continue;
    Serialize copy(buffer), assigned(small);
    assigned = buffer;
    assigned = static_cast<const Serialize&>(assigned);
    copy.addU8(0);
    for (const Serialize& same : {buffer, assigned})
      EXPECT_TRUE(same.serializedString(0) == expected) << i;
    EXPECT_TRUE(copy.serializedString(0) == expected + '\0') << i;
    copy = small;
    EXPECT_EQ(copy.serializedString(0), "\1");
  }
  for (const U32 asked : {0u, 4096u, 4097u, 9u}) {
    small.growBuffer(asked);
    EXPECT_EQ(small.capacity(), asked == 9 ? 4097 : std::max(4096u, asked));
  }
}

}  // namespace

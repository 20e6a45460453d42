#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

#include "Mox/Exception.h"
#include "community/ZoBgpCommunityTyped.h"
#include "kinds/ZoBgpKindCheck.h"
#include "kinds/internal/ZoBgpKindForms.h"
#include "kinds/internal/ZoBgpTextForms.h"

namespace Routing::Bgp {
namespace {

using Parsed = ParsedCommunity<AnyCommunity>;

/// The part in front of a community's last number; `any` is what its text looks like.
enum class Administrator { any, as2, as4, ipv4, ipv6 };

struct AdministratorWord {
  std::string_view suffix;
  Administrator administrator;
};
// `-AS4` stands before its beginning `-AS`.
constexpr AdministratorWord administratorWords[] = {{"-AS4", Administrator::as4},
                                                    {"-AS", Administrator::as2},
                                                    {"-IP6", Administrator::ipv6},
                                                    {"-IP", Administrator::ipv4}};

/// The administrators of the types 0x00, 0x01 and 0x02 of eight octets.
constexpr Administrator administratorsOfTypes[] = {Administrator::as2, Administrator::ipv4,
                                                   Administrator::as4};

struct RateUnit {
  std::string_view name;
  double bitsPerSecond;
};
constexpr RateUnit rateUnits[] = {{"bps", 1},     {"kbps", 1e3},  {"Mbps", 1e6},
                                  {"Gbps", 1e9},  {"Tbps", 1e12}, {"Pbps", 1e15},
                                  {"Ebps", 1e18}, {"Zbps", 1e21}, {"Ybps", 1e24}};

constexpr KindField rateField = {"rate", 0, 32, KindForm::float32};
constexpr KindField ipv4Field = {"address", 0, 32, KindForm::ipv4};

/// Reads all of `text` as one field.
std::optional<U32> readBits(const KindField& field, std::string_view text) {
  CommunityTextParts parts(text);
  U8 octets[4];
  if (parts.count() != 1 || !readField(parts, field, 1, octets)) return {};
  return U32(bitsOf(octets, 0, 32));
}

/// A number and a unit: bits per second, of which octets per second become the rate.
std::optional<float> readRateWithUnit(std::string_view digits, std::string_view unit) {
  const auto at = std::ranges::find_if(
      rateUnits, [&](const RateUnit& row) { return equalIgnoringCase(row.name, unit); });
  const std::string_view number = digits.substr(digits.starts_with('-'));
  if (at == std::end(rateUnits) || !isDecimalFraction(number)) return {};
  double value = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, fault] = std::from_chars(digits.data(), end, value, std::chars_format::fixed);
  if (fault != std::errc() || stop != end) return {};
  const double octetsPerSecond = value / 8 * at->bitsPerSecond;
  constexpr double tooLarge = 0x1.ffffffp127;  // rounds to no float
  if (!(std::abs(octetsPerSecond) < tooLarge)) return {};
  return float(octetsPerSecond);
}

std::optional<float> readRate(std::string_view text) {
  if (equalIgnoringCase(text, "nan")) return std::bit_cast<float>(0x7fc00000);
  if (equalIgnoringCase(text, "-nan")) return std::bit_cast<float>(0xffc00000);
  if (const auto blank = text.find(' '); blank != text.npos)
    return readRateWithUnit(text.substr(0, blank), text.substr(blank + 1));
  const auto bits = readBits(rateField, text);
  return bits ? std::optional(std::bit_cast<float>(*bits)) : std::nullopt;
}

class PolicyText {
 public:
  explicit PolicyText(std::string_view text) : text_(text), rest_(text) {}

  /// The beginnings of the forms differ, so at most one is taken.
  TextReading read() {
    for (const auto form :
         {&PolicyText::route<RouteTarget>, &PolicyText::route<RouteOrigin>, &PolicyText::typed,
          &PolicyText::linkBandwidth, &PolicyText::tunnelEncap, &PolicyText::color,
          &PolicyText::originValidationState, &PolicyText::defaultGateway})
      if (auto reading = (this->*form)()) return reading;
    return {};
  }

 private:
  /// Steps over these words, if the rest begins so.
  bool skip(std::initializer_list<std::string_view> words) {
    std::string_view rest = rest_;
    for (const std::string_view word : words) {
      if (!equalIgnoringCase(rest.substr(0, word.size()), word)) return false;
      rest.remove_prefix(word.size());
    }
    rest_ = rest;
    return true;
  }
  Parsed fault(std::string_view piece, Mox::String expected) const {
    return textFault(text_, piece, std::move(expected));
  }
  static Parsed content(U32 typeAndSubtype, U64 value) {
    return {ExtCommContent(U64(typeAndSubtype) << 48 | value)};
  }

  template <class Route>
  TextReading route() {
    constexpr U8 subtype = std::same_as<Route, RouteTarget>
                               ? U8(extCommPktSubtypeTransTwoOctetAsRouteTarget)
                               : U8(extCommPktSubtypeTransTwoOctetAsRouteOrigin);
    if (skip({Route::shortName, ":"})) return administered(Administrator::any, {}, subtype);
    for (const auto& [suffix, administrator] : administratorWords)
      if (administrator != Administrator::ipv6 && skip({Route::longName, suffix, ":"}))
        return administered(administrator, {}, subtype);
    return {};
  }

  /// `0002-AS:65000:100`, `0304(NT):0x00 0x01 0x02 0x03 0x04 0x05`.
  TextReading typed() {
    const std::string_view whole = rest_;
    const auto type = CommunityTextParts(rest_.substr(0, 2)).octet();
    const auto subtype =
        CommunityTextParts(rest_.substr(std::min<std::size_t>(2, rest_.size()), 2)).octet();
    if (!type || !subtype) return {};
    rest_.remove_prefix(4);
    auto administrator = Administrator::any;
    for (const AdministratorWord& word : administratorWords)
      if (administrator == Administrator::any && skip({word.suffix}))
        administrator = word.administrator;
    const bool nonTransitive = skip({"(NT)"});
    // `0304:0x00` is one; `1234:100` is two numbers.
    const bool octets = administrator == Administrator::any;
    if (!skip({":"}) ||
        (octets && !nonTransitive && !equalIgnoringCase(rest_.substr(0, 2), "0x"))) {
      rest_ = whole;
      return {};
    }
    if (*type & 0x40)
      return fault(whole.substr(0, 2), "a type without bit 0x40, which `(NT)` stands for");
    if (*type < std::size(administratorsOfTypes) && !octets &&
        administrator != Administrator::ipv6 && administrator != administratorsOfTypes[*type])
      return fault(whole.substr(0, whole.size() - rest_.size() - 1),
                   "`-AS` behind type 00, `-IP` behind 01, `-AS4` behind 02");
    const U8 wholeType = U8(*type | (nonTransitive ? 0x40 : 0));
    return octets ? valueOctets(wholeType, *subtype)
                  : administered(administrator, wholeType, *subtype);
  }

  Parsed valueOctets(U8 type, U8 subtype) {
    U64 value = 0;
    for (U32 i = 0; i < 6; ++i) {
      const std::string_view at = rest_;
      const bool begun = (i == 0 || skip({" "})) && skip({"0x"});
      const auto octet = CommunityTextParts(rest_.substr(0, 2)).octet();
      if (!begun || !octet) return fault(at, "six octets, as 0x01, with a blank between them");
      rest_.remove_prefix(2);
      value = value << 8 | *octet;
    }
    if (!rest_.empty()) return fault(rest_, "nothing more: a value has six octets");
    return content(U32(type) << 8 | subtype, value);
  }

  /// The rest as an administrator and a number; without a type, the type of the administrator.
  Parsed administered(Administrator administrator, std::optional<U8> type, U8 subtype) {
    const auto colon = rest_.rfind(':');
    if (colon == rest_.npos)
      return fault(rest_, "an AS number or an address, a colon and a number");
    const std::string_view admin = rest_.substr(0, colon), local = rest_.substr(colon + 1);
    if (administrator == Administrator::any) administrator = administratorOf(admin);
    switch (administrator) {
      case Administrator::ipv6:
        return ofIp6(admin, local, type.value_or(0x00), subtype);
      case Administrator::ipv4:
        return ofIp4(admin, local, type.value_or(extCommPktTypeTransIpv4Address), subtype);
      case Administrator::as4:
        return ofAs(admin, local, 32, type.value_or(extCommPktTypeTransFourOctetAs), subtype);
      default:
        return ofAs(admin, local, 16, type.value_or(extCommPktTypeTransTwoOctetAs), subtype);
    }
  }

  static Administrator administratorOf(std::string_view text) {
    if (text.find_first_of(":[") != text.npos) return Administrator::ipv6;
    if (std::ranges::count(text, '.') > 1) return Administrator::ipv4;
    const auto as = readAsNumber(text);
    return as && as->fourOctets ? Administrator::as4 : Administrator::as2;
  }

  Parsed ofAs(std::string_view admin, std::string_view local, U32 bits, U8 type, U8 subtype) {
    const auto as = readAsNumber(admin);
    if (!as || (bits == 16 && as->fourOctets))
      return fault(admin, bits == 16 ? "an AS number below 65536"
                                     : "an AS number below 4294967296, which may end in `L`");
    const auto number = decimalNumber(local, 48 - bits);
    if (!number)
      return wrongLocal(local, 48 - bits, bits == 32 ? "an AS number of four octets" : "");
    return content(U32(type) << 8 | subtype, U64(as->number) << (48 - bits) | *number);
  }

  Parsed ofIp4(std::string_view admin, std::string_view local, U8 type, U8 subtype) {
    const auto address = readBits(ipv4Field, admin);
    if (!address) return fault(admin, "an IPv4 address");
    const auto number = decimalNumber(local, 16);
    if (!number) return wrongLocal(local, 16, "an address");
    return content(U32(type) << 8 | subtype, U64(*address) << 16 | *number);
  }

  Parsed ofIp6(std::string_view admin, std::string_view local, U8 type, U8 subtype) {
    const auto address = readIp6Address(admin);
    if (!address) return fault(admin, "an IPv6 address");
    const auto number = decimalNumber(local, 16);
    if (!number) return wrongLocal(local, 16, "an address");
    return {ExtCommIp6Content(type, subtype, *address, U16(*number))};
  }

  Parsed wrongLocal(std::string_view local, U32 bits, std::string_view behind) const {
    return fault(local, "a decimal number below " + std::to_string(1ULL << bits) +
                            (behind.empty() ? "" : " behind " + Mox::String(behind)));
  }

  /// `lbw 65000:1.25e+09`, `Link-Bandwidth-AS:65000:10 Gbps`.
  TextReading linkBandwidth() {
    if (!skip({"lbw "}) && !skip({"Link-Bandwidth-AS:"})) return {};
    const auto colon = rest_.find(':');
    if (colon == rest_.npos) return fault(rest_, "an AS number, a colon and a rate");
    const auto as = readAsNumber(rest_.substr(0, colon));
    if (!as || as->fourOctets) return fault(rest_.substr(0, colon), "an AS number below 65536");
    const auto rate = readRate(rest_.substr(colon + 1));
    if (!rate)
      return fault(rest_.substr(colon + 1),
                   "a rate that fits a 32-bit float: octets per second, or bits per second with a "
                   "unit, as `10 Gbps`");
    return content(0x4004, U64(as->number) << 32 | std::bit_cast<U32>(*rate));
  }

  /// `TunnelEncap:tunnelTypeVxlan`, `tunnelTypeUnknown-99`.
  TextReading tunnelEncap() {
    const bool named = skip({"TunnelEncap:"});
    const std::string_view word = rest_;
    if (!named && !skip({"tunnelType"})) return {};
    rest_ = word;
    for (const auto& row : Mox::enumTableOf<TunnelType>)
      if (equalIgnoringCase(word, row.name)) return content(0x030c, row.value);
    if (skip({"tunnelTypeUnknown-"}))
      if (const auto number = decimalNumber(rest_, 16)) return content(0x030c, *number);
    return fault(word,
                 "a tunnel type: `tunnelTypeVxlan` and its like, or `tunnelTypeUnknown-` and a "
                 "decimal number below 65536");
  }

  /// `Color:CO(10):100`.
  TextReading color() {
    if (!skip({"Color:CO("})) return {};
    const std::string_view bits = rest_.substr(0, 2);
    const auto isBit = [](char c) { return c == '0' || c == '1'; };
    if (bits.size() < 2 || !std::ranges::all_of(bits, isBit))
      return fault(bits, "two bits, each 0 or 1");
    rest_.remove_prefix(2);
    if (!skip({"):"})) return fault(rest_, "`):` and the color");
    const auto number = decimalNumber(rest_, 32);
    if (!number) return fault(rest_, "a decimal number below 4294967296");
    return content(0x030b, U64(bits[0] - '0') << 47 | U64(bits[1] - '0') << 46 | *number);
  }

  TextReading originValidationState() {
    if (!skip({"Origin-Validation-State:"})) return {};
    for (const auto& row : Mox::enumTableOf<OriginValidationState>)
      if (equalIgnoringCase(rest_, row.shownAs)) return content(0x4300, U32(row.value));
    return fault(rest_, "Valid, NotFound or Invalid; of another state the text does not say which");
  }

  TextReading defaultGateway() {
    if (!equalIgnoringCase(rest_, "DefaultGateway")) return {};
    return content(0x030d, 0);
  }

  const std::string_view text_;
  std::string_view rest_;
};

}  // namespace

ParsedCommunity<AnyCommunity> textFault(std::string_view text, std::string_view piece,
                                        Mox::String expected) {
  return {{}, {std::size_t(piece.data() - text.data()), Mox::String(piece), std::move(expected)}};
}

std::optional<AsNumberText> readAsNumber(std::string_view text) {
  const auto dot = text.find('.');
  if (dot != text.npos) {
    const auto high = decimalNumber(text.substr(0, dot), 16);
    const auto low = decimalNumber(text.substr(dot + 1), 16);
    if (!high || !low) return {};
    return AsNumberText{U32(*high << 16 | *low), *high > 0};
  }
  const bool marked = text.ends_with('L') || text.ends_with('l');
  const auto number = decimalNumber(text.substr(0, text.size() - marked), 32);
  if (!number) return {};
  return AsNumberText{U32(*number), marked || *number > 0xFFFF};
}

std::optional<Zonet::Ip6Addr> readIp6Address(std::string_view text) {
  if (text.size() > 2 && text.front() == '[' && text.back() == ']')
    text = text.substr(1, text.size() - 2);
  try {
    Zonet::Ip6Addr address;
    sequenceToValue(text, address);
    return address;
  } catch (const Mox::ParseException&) {
    return {};
  }
}

TextReading readPolicyText(std::string_view text) { return PolicyText(text).read(); }

}  // namespace Routing::Bgp

#include "agent/LinkBandwidth.h"

#include <charconv>
#include <cmath>

namespace Routing::Rib {
namespace {

struct Unit {
  double bitsPerSecond;
  std::string_view name;

  // Divided first, so that the largest number does not overflow on the way.
  double of(double octetsPerSecond) const { return octetsPerSecond / bitsPerSecond * 8; }
};
constexpr Unit units[] = {{1, "bps"},     {1e3, "kbps"},  {1e6, "Mbps"},
                          {1e9, "Gbps"},  {1e12, "Tbps"}, {1e15, "Pbps"},
                          {1e18, "Ebps"}, {1e21, "Zbps"}, {1e24, "Ybps"}};

// Room for any number in full: 309 digits before the point, or 324 and then 17 after it.
using Digits = char[400];

std::string_view threeDecimals(double number, Digits& digits) {
  char* const end =
      std::to_chars(digits, std::end(digits), number, std::chars_format::fixed, 3).ptr;
  return {digits, std::size_t(end - digits)};
}

Mox::String withoutTrailingZeros(std::string_view text) {
  text = text.substr(0, text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.remove_suffix(1);
  return Mox::String(text);
}

Mox::String inBitsPerSecond(double octetsPerSecond) {
  const Unit* unit = units;
  const Unit* const largest = std::end(units) - 1;
  while (unit != largest && std::abs(unit->of(octetsPerSecond)) >= 1000) ++unit;
  Digits digits;
  std::string_view text = threeDecimals(unit->of(octetsPerSecond), digits);
  // A number that rounding lifts to a thousand is one of the next unit: 999.9996 Mbps is 1 Gbps.
  if (unit != largest && text.ends_with("1000.000"))
    text = threeDecimals((++unit)->of(octetsPerSecond), digits);
  Mox::String rounded = withoutTrailingZeros(text);
  if (rounded == "-0") rounded = "0";
  return rounded.append(" ").append(unit->name);
}

}  // namespace

Mox::String LinkBandwidth::toStrep(bool weighted) const {
  if (std::isnan(octetsPerSecond_)) return "nan";
  if (!weighted && std::isfinite(octetsPerSecond_)) return inBitsPerSecond(octetsPerSecond_);
  Digits digits;
  return {digits,
          std::to_chars(digits, std::end(digits), octetsPerSecond_, std::chars_format::fixed).ptr};
}

}  // namespace Routing::Rib

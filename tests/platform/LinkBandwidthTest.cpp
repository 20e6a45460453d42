#include "agent/LinkBandwidth.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>

namespace Routing::Rib {
namespace {

using Limits = std::numeric_limits<double>;

TEST(LinkBandwidth, TextWithUnitAndWeighted) {
  struct Case {
    double octetsPerSecond;
    const char *text, *weighted;
  };
  const Case cases[] = {
      {1250000000, "10 Gbps", "1250000000"},
      {0, "0 bps", "0"},
      {-1250000, "-10 Mbps", "-1250000"},
      {0.125, "1 bps", "0.125"},
      {0.00005, "0 bps", "0.00005"},
      {124.875, "999 bps", "124.875"},
      {125, "1 kbps", "125"},
      {156.25, "1.25 kbps", "156.25"},
      {154320.986, "1.235 Mbps", "154320.986"},  // 1.234567888 Mbps
      {124999950, "1 Gbps", "124999950"},        // 999.9996 Mbps
      {-124999950, "-1 Gbps", "-124999950"},
      {124999925, "999.999 Mbps", "124999925"},  // 999.9994 Mbps
      {1.25e13, "100 Tbps", "12500000000000"},
      {std::numeric_limits<float>::max(), "2722258773108231 Ybps",
       "340282346638528859811704183484516925440"},
      {Limits::infinity(), "inf", "inf"},
      {-Limits::infinity(), "-inf", "-inf"},
      {Limits::quiet_NaN(), "nan", "nan"},
      {-Limits::quiet_NaN(), "nan", "nan"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(LinkBandwidth(c.octetsPerSecond).toStrep(false), c.text);
    EXPECT_EQ(LinkBandwidth(c.octetsPerSecond).toStrep(true), c.weighted);
  }
}

TEST(LinkBandwidth, PrintsTheLongestNumbersInFull) {
  for (const double number : {Limits::max(), -Limits::max(), Limits::min(), -Limits::min(),
                              Limits::denorm_min(), 2.2250738585072011e-308}) {
    EXPECT_EQ(std::strtod(LinkBandwidth(number).toStrep(true).c_str(), nullptr), number);
    EXPECT_NE(LinkBandwidth(number).toStrep(false).find("bps"), std::string::npos);
  }
}

}  // namespace
}  // namespace Routing::Rib

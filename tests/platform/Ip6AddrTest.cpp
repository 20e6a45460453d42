#include "Zonet/Ip6Addr.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

#include "Mox/Exception.h"

namespace Zonet {
namespace {

TEST(Ip6Addr, ReadsEveryFormAndWritesTheCanonicalOne) {
  const std::pair<const char*, const char*> forms[] = {
      {"::", "::"},
      {"0:0:0:0:0:0:0:1", "::1"},
      {"2001:0DB8:0000:0000:0000:0000:0000:0001", "2001:db8::1"},
      {"2001:db8:0:1:1:1:1:1", "2001:db8:0:1:1:1:1:1"},  // a single zero group stays
      {"2001:0:0:1:0:0:0:1", "2001:0:0:1::1"},           // the longest run is left out
      {"2001:db8:0:0:1:0:0:1", "2001:db8::1:0:0:1"},     // of equal ones the first
      {"::ffff:c000:0201", "::ffff:192.0.2.1"},
      {"ffff:ffff:ffff:ffff:ffff:ffff:255.255.255.255", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"},
  };
  for (const auto& [form, canonical] : forms) {
    Ip6Addr address, again;
    sequenceToValue(form, address);
    std::ostringstream stream;
    stream << std::setw(60) << std::uppercase << address;
    EXPECT_EQ(stream.str(), canonical);
    sequenceToValue(canonical, again);
    EXPECT_EQ(again, address);
  }
}

TEST(Ip6Addr, RefusesEverythingElse) {
  using namespace std::literals;
  for (std::string_view text :
       {""sv, "1"sv, "1:2:3:4:5:6:7"sv, "1:2:3:4:5:6:7:8:9"sv, "::1::"sv, "12345::"sv, ":::"sv,
        "::g"sv, " ::1"sv, "::1 "sv, "fe80::1%eth0"sv, "192.0.2.1"sv, "::1\0"sv, "::1\0x"sv,
        "00000000000000000000000000000000000000000000::1"sv}) {
    Ip6Addr address({1});
    EXPECT_THROW(sequenceToValue(text, address), Mox::ParseException) << text;
    EXPECT_EQ(address, Ip6Addr({1}));
  }
}

TEST(Ip6Addr, OrdersByOctetsInNetworkOrder) {
  const char* const ascending[] = {"::", "::1", "::ff", "::100", "7fff::", "8000::", "ffff::"};
  Ip6Addr previous;
  for (const char* text : ascending) {
    Ip6Addr address;
    sequenceToValue(text, address);
    EXPECT_EQ(address > previous, text != ascending[0]) << text;
    previous = address;
  }
  sequenceToValue("2001:db8::ff", previous);
  EXPECT_EQ(previous.octets(),
            (Ip6Addr::Octets{0x20, 1, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff}));
}

}  // namespace
}  // namespace Zonet

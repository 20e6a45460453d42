// Prefixes of all address families as text.
#include "TestOctets.h"
#include "mrt/Nlri.h"

namespace Routing::Mrt {
namespace {

TEST(NlriText, ShowsWhatEachFamilyHas) {
  const std::string rd = "0000fc5800000001", noSegment(20, '0'), segment = "00112233445566778899";
  const std::string its = "esi 00:11:22:33:44:55:66:77:88:99";
  const struct {
    AddressFamily family;
    std::string nlri, text;  // no text: in hex
  } cases[] = {
      // clang-format off
      {{1, 1}, "14 0a0fff", "10.15.240.0/20"}, {{2, 1}, "00", "::/0"},
      {{1, 2}, "08 0a", "10.0.0.0/8 multicast"}, {{2, 2}, "20 20010db8", "2001:db8::/32 multicast"},
      // Labels: one, unmarked, a stack, the field of a withdrawal.
      {{1, 4}, "30 000641 0a0102", "10.1.2.0/24 label 100"}, {{1, 4}, "30 000640 0a0102", "10.1.2.0/24 label 100"},
      {{1, 4}, "48 000640 000c81 0a0102", "10.1.2.0/24 label 100/200"},
      {{2, 4}, "38 000031 20010db8", "2001:db8::/32 label 3"},
      {{1, 4}, "30 800000 0a0102", "10.1.2.0/24"}, {{1, 4}, "30 000000 0a0102", "10.1.2.0/24"}, {{1, 4}, "39 000641 0a010203ff", ""},
      // Distinguishers of all types, and lengths that they do not fit.
      {{1, 128}, "70 0002b1 0000fc580000001b 0a003f", "64600:27 10.0.63.0/24 label 43"},
      {{1, 128}, "70 000641 0001c00002010007 0a0102", "192.0.2.1:7 10.1.2.0/24 label 100"},
      {{1, 128}, "70 000641 00020000fc580007 0a0102", "64600L:7 10.1.2.0/24 label 100"},
      {{1, 128}, "70 000641 0002000100000007 0a0102", "65536:7 10.1.2.0/24 label 100"},
      {{1, 128}, "70 000641 0003000000000007 0a0102", "0003000000000007 10.1.2.0/24 label 100"},
      {{1, 128}, "88 000640 000c81 " + rd + " 0a0102", "64600:1 10.1.2.0/24 label 100/200"},
      {{1, 128}, "6c 800000 " + rd + " 0a0fff", "64600:1 10.15.240.0/20"},
      {{1, 128}, "58 000641 " + rd, "64600:1 0.0.0.0/0 label 100"}, {{1, 128}, "57 000641 " + rd, ""},
      {{1, 128}, "80 000641 " + rd + "0a01020304", ""}, {{1, 128}, "00", ""},
      {{2, 128}, "78 000641 " + rd + " 20010db8", "64600:1 2001:db8::/32 label 100"},
      {{1, 129}, "58 " + rd + " 0a0102", "64600:1 10.1.2.0/24 multicast"},
      // EVPN: all types, with and without what may be missing.
      {{25, 70}, "01 19 " + rd + segment + "ffffffff 000641", "auto-discovery 64600:1 " + its + " tag 4294967295 label 100"},
      {{25, 70}, "02 21 " + rd + noSegment + "00000005 30 02005e005301 00 000641", "mac 64600:1 02:00:5e:00:53:01 tag 5 label 100"},
      {{25, 70}, "02 28 " + rd + segment + "00000000 30 02005e005301 20 c0000201 000641 000c81",
       "mac 64600:1 02:00:5e:00:53:01 192.0.2.1 " + its + " tag 0 label 100/200"},
      {{25, 70}, "02 21 " + rd + noSegment + "00000005 20 02005e005301 00 000641", ""},
      {{25, 70}, "02 20 " + rd + noSegment + "00000005 30 02005e005301 00 0006", ""},
      {{25, 70}, "03 11 " + rd + "00000000 20 c0000201", "inclusive-multicast 64600:1 192.0.2.1 tag 0"},
      {{25, 70}, "03 11 " + rd + "00000000 18 c0000201", ""},
      {{25, 70}, "04 23 " + rd + segment + "80 20010db8000000000000000000000001", "ethernet-segment 64600:1 2001:db8::1 " + its},
      {{25, 70}, "05 22 " + rd + noSegment + "00000000 18 0a010200 00000000 000641", "prefix 64600:1 10.1.2.0/24 tag 0 label 100"},
      {{25, 70}, "05 22 " + rd + noSegment + "00000000 21 0a010200 00000000 000641", ""},
      {{25, 70}, "05 3a " + rd + noSegment + "00000000 20 20010db8000000000000000000000000 20010db8000000000000000000000009 000641",
       "prefix 64600:1 2001:db8::/32 gateway 2001:db8::9 tag 0 label 100"},
      {{25, 70}, "09 08 " + rd, ""}, {{25, 70}, "02 03 616263", ""},
      // Flow specifications.
      {{1, 133}, "0c 01180a0102 038106 059101bb", "destination 10.1.2.0/24 protocol =6 destination-port =443"},
      {{1, 133}, "f005 02180a0102", "source 10.1.2.0/24"}, {{1, 133}, "00", "all"},
      {{1, 133}, "09 04 130400 540800 8150", "port >=1024&<2048,=80"},
      {{1, 133}, "08 06 02ff 8405 0786 01", "source-port >255,<5 icmp-type !=1"}, {{1, 133}, "05 06 02ff 8605", "source-port >255,!=5"},
      {{1, 133}, "09 0a a100010000 0b8104", "length =65536 dscp =4"},
      {{1, 133}, "09 098102 0c0204 0b8700", ""}, {{1, 133}, "08 098102 0c02048001", "tcp-flags =0x2 fragment !~0x4,~0x1"},
      {{1, 133}, "05 01210a0102", ""}, {{1, 133}, "03 0e8101", ""}, {{1, 133}, "02 0381", ""},
      {{2, 133}, "0a 012000 20010db8 0d8107", "destination 2001:db8::/32 flow-label =7"},
      {{2, 133}, "07 012008 20010db8", ""},
      {{1, 134}, "0d " + rd + "01180a0102", "64600:1 destination 10.1.2.0/24"},
      {{25, 65}, "0002 6162", ""}, {{25, 128}, "08 ff", ""},
      // clang-format on
  };
  for (const auto& [family, nlri, text] : cases) {
    const Bytes sent = octets(nlri);
    const std::string inHex =
        std::to_string(family.afi) + '/' + std::to_string(family.safi) + ':' + hex(view(sent));
    EXPECT_EQ(nlriText(family, view(sent)), text.empty() ? inHex : text) << nlri;
  }
}

TEST(NlriText, PartsPrefixes) {
  std::string text;
  const Bytes plain = octets("08 0a"), vpn = octets("60 000641 0000fc5800000001 0a");
  for (const auto& [safi, nlri] : {std::pair<U8, Bytes>(1, plain), {128, vpn}})
    for (const auto id : {std::optional<U32>(), std::optional<U32>(7)})
      appendPrefix(text, {{1, safi}, view(nlri), id});
  EXPECT_EQ(
      text,
      "10.0.0.0/8 10.0.0.0/8#7, 64600:1 10.0.0.0/8 label 100, 64600:1 10.0.0.0/8 label 100 #7");
}

}  // namespace
}  // namespace Routing::Mrt

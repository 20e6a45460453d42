// Route-target sets as messages announce, replace and withdraw paths: which prefixes are the same.
#include "RunTool.h"

namespace bgpcomm {
namespace {

using WatchRt = ToolTest;

/// The targets that come and go, by number: `+1 -1 `. An error line follows from behind the file's
/// name on.
std::string eventsOf(const Bytes& file) {
  const TemporaryFile stored(file);
  const ToolRun run = runTool("bgpcomm watch-rt " + stored.name() +
                              " | cut -f2- | sed 's/\tRT:65000://' | tr '\\n' ' '");
  return run.out + (run.err.empty() ? "" : run.err.substr(9 + stored.name().size()));
}

Bytes target(U32 number_) { return octets("c01008 0002 fde8") + number(number_, 4); }

/// An UPDATE with one or more prefixes of a family (AFI and SAFI) in MP_REACH_NLRI.
Bytes announced(const char* family, const std::string& prefixes, U32 rt = 1) {
  return update(
      octets("800e") + counted(octets(family) + octets("0000") + octets(prefixes), 1) + target(rt),
      "");
}
Bytes withdrawn(const char* family, const char* prefixes) {
  return update(octets("800f") + counted(octets(family) + octets(prefixes), 1), "");
}

/// Records of the peer 192.0.2.1.
Bytes sent(std::initializer_list<Bytes> messages, U16 subtype = 4) {
  Bytes records;
  for (const Bytes& message : messages) records += messageRecord(message, subtype);
  return records;
}

TEST_F(WatchRt, APrefixIsKnownByItsKeyAlone) {
  const struct {
    const char *what, *family, *announced, *same, *other;
  } cases[] = {
      // clang-format off
      {"IPv4, bits behind the prefix", "0001 01", "17 0a0103", "17 0a0102", "18 0a0102"},
      {"IPv6, bits behind the prefix", "0002 01", "21 20010db8ff", "21 20010db880", "20 20010db8"},
      {"multicast", "0002 02", "21 20010db8ff", "21 20010db880", "21 20010db87f"},
      {"label", "0001 04", "30 000101 0a0102", "30 800000 0a0102", "30 000101 0a0103"},
      {"label of zeros", "0001 04", "30 000101 0a0102", "30 000000 0a0102", "2f 000101 0a0102"},
      {"two labels", "0002 04", "50 000100 000201 20010db8", "38 800000 20010db8",
       "38 800000 20010db9"},
      {"label, bits behind the prefix", "0001 04", "2f 000101 0a0103", "2f 000201 0a0102",
       "30 000201 0a0102"},
      {"VPN", "0001 80", "70 000101 0000fde800000064 0a0102", "70 800000 0000fde800000064 0a0102",
       "70 000101 0000fde800000065 0a0102"},
      {"VPN, two labels, bits behind the prefix", "0001 80",
       "87 000100 000201 0000fde800000064 0a0103", "6f 800000 0000fde800000064 0a0102",
       "70 800000 0000fde800000064 0a0102"},
      {"VPN of IPv6", "0002 80", "78 000101 0001c00002010001 20010db8",
       "78 800000 0001c00002010001 20010db8", "77 800000 0001c00002010001 20010db8"},
      {"VPN, the default route", "0001 80", "58 000101 0000fde800000064",
       "58 800000 0000fde800000064", "58 800000 0000fde800000000"},
      {"multicast VPN prefixes, without labels", "0001 81", "57 0000fde800000064 0a0102",
       "57 0000fde800000064 0a0103", "58 0000fde800000064 0a0102"},
      {"EVPN, segment: label", "0019 46",
       "01 19 0000fde800000064 00010203040506070809 00000005 000101",
       "01 19 0000fde800000064 00010203040506070809 00000005 000000",
       "01 19 0000fde800000064 00010203040506070808 00000005 000101"},
      {"EVPN, segment: tag", "0019 46",
       "01 19 0000fde800000064 00010203040506070809 00000005 000101",
       "01 19 0000fde800000064 00010203040506070809 00000005 000201",
       "01 19 0000fde800000064 00010203040506070809 00000006 000101"},
      {"EVPN, MAC: segment and label", "0019 46",
       "02 21 0000fde800000064 00010203040506070809 00000005 30 020000000001 00 000101",
       "02 21 0000fde800000064 00000000000000000000 00000005 30 020000000001 00 000000",
       "02 21 0000fde800000064 00010203040506070809 00000005 30 020000000002 00 000101"},
      {"EVPN, MAC and address: two labels", "0019 46",
       "02 28 0000fde800000064 00000000000000000000 00000005 30 020000000001 20 0a010203 000101 000201",
       "02 25 0000fde800000064 00000000000000000000 00000005 30 020000000001 20 0a010203 000000",
       "02 25 0000fde800000064 00000000000000000000 00000005 30 020000000001 20 0a010204 000101"},
      {"EVPN, multicast", "0019 46", "03 11 0000fde800000064 00000005 20 c0000201",
       "03 11 0000fde800000064 00000005 20 c0000201", "03 11 0000fde800000065 00000005 20 c0000201"},
      {"EVPN, prefix: segment, gateway, label, bits behind", "0019 46",
       "05 22 0000fde800000064 00010203040506070809 00000005 1f 0a010303 c0000201 000101",
       "05 22 0000fde800000064 00000000000000000000 00000005 1f 0a010302 00000000 000000",
       "05 22 0000fde800000064 00010203040506070809 00000005 1f 0a010304 c0000201 000101"},
      {"EVPN, prefix: octets behind", "0019 46",
       "05 22 0000fde800000064 00010203040506070809 00000005 0f 0a01ffff c0000201 000101",
       "05 22 0000fde800000064 00010203040506070809 00000005 0f 0a000000 c0000201 000101",
       "05 22 0000fde800000064 00010203040506070809 00000005 0f 0a020000 c0000201 000101"},
      {"EVPN, multicast of a group: flags", "0019 46",
       "06 18 0000fde800000064 00000005 00 20 e1000001 20 c0000201 02",
       "06 18 0000fde800000064 00000005 00 20 e1000001 20 c0000201 04",
       "06 18 0000fde800000064 00000005 00 20 e1000002 20 c0000201 02"},
      {"EVPN, a member leaves: reserved, response time, flags", "0019 46",
       "08 27 0000fde800000064 00010203040506070809 00000005 00 20 e1000001 20 c0000201 00000000 0a 02",
       "08 27 0000fde800000064 00010203040506070809 00000005 00 20 e1000001 20 c0000201 00000001 0b 04",
       "08 27 0000fde800000064 00010203040506070808 00000005 00 20 e1000001 20 c0000201 00000000 0a 02"},
      {"route targets, bits behind", "0001 84", "41 0000fde8 0002fde8 ff", "41 0000fde8 0002fde8 80",
       "41 0000fde8 0002fde8 7f"},
      {"others as they are", "0001 85", "03 0118 0a", "03 0118 0a", "03 0118 0b"},
      // clang-format on
  };
  for (const auto& [what, family, first, same, other] : cases) {
    for (const char* octets : {first, same})
      EXPECT_EQ(eventsOf(sent({announced(family, first), withdrawn(family, octets)})), "+1 -1 ")
          << what;
    EXPECT_EQ(eventsOf(sent({announced(family, first), withdrawn(family, other)})), "+1 ") << what;
    std::string again = same;  // a stack of labels ends with its lowest bit
    if (const auto label = again.find(" 800000"); label != again.npos) again[label + 6] = '1';
    EXPECT_EQ(eventsOf(sent({announced(family, first), announced(family, again, 2)})), "+1 +2 -1 ")
        << what;
  }
}

TEST_F(WatchRt, PeersTablesAndPathIdentifiersAreApart) {
  const Bytes route = update(target(1), octets("180a0102")),
              gone = update("", "", octets("180a0102"));
  const auto ofOther = [](const char* peer, const char* address, const Bytes& message) {
    return mrtRecord(16, 4,
                     octets(peer) + octets("0000fc59 0001 0001") + octets(address) +
                         octets("c0000202") + message);
  };
  const Bytes ids = announced("0001 01", "00000001 180a0102 00000002 180a0102");
  const Bytes entry = octets("00000001 18 0a0102 0001 0000 6553f100") + counted(target(1), 2);
  const Bytes index = mrtRecord(13, 1, octets("0a000001 0000 0001 02 0a0000fe c0000201 0000fc58"));
  const struct {
    const char* what;
    Bytes file;
    const char* events;
  } cases[] = {
      {"another AS", sent({route}) + ofOther("0000fc57", "c0000201", gone), "+1 "},
      {"another address", sent({route}) + ofOther("0000fc58", "c0000203", gone), "+1 "},
      {"sent by the collector", sent({route}) + sent({gone}, 7), "+1 "},
      {"another family", sent({route, withdrawn("0001 02", "180a0102")}), "+1 "},
      {"IPv6, of the same octets", sent({route, withdrawn("0002 01", "180a0102")}), "+1 "},
      {"no identifier, and 0", sent({route}) + sent({withdrawn("0001 01", "00000000 180a0102")}, 9),
       "+1 "},
      {"announced again without targets",
       sent({route, update(octets("40010100"), octets("180a0102"))}), "+1 -1 "},
      {"announced again with a list that is refused",
       sent(
           {route, update(octets("c01010 4004fde84e000000 4004fde84d000000"), octets("180a0102"))}),
       "+1 -1 : 1 malformed, the first linkBandwidth (record 2, octet 70)\n"},
      {"the same in MP_UNREACH_NLRI", sent({route, withdrawn("0001 01", "180a0102")}), "+1 -1 "},
      {"two identifiers, one withdrawn", sent({ids, withdrawn("0001 01", "00000001 180a0102")}, 9),
       "+1 "},
      {"two identifiers, both withdrawn",
       sent({ids, withdrawn("0001 01", "00000002 180a0102 00000001 180a0102")}, 9), "+1 -1 "},
      // The identifier 7 and 2001:db8:200::/40, 2820:10d:b802::/55: nearly the same octets.
      {"identifiers are no part of the prefix",
       sent({announced("0002 01", "37 20 2820010db802")}) +
           sent({announced("0002 01", "00000007 28 20010db802", 2)}, 9) +
           sent({withdrawn("0002 01", "00000007 28 20010db802")}, 9),
       "+1 +2 -2 "},
      {"withdrawn and announced in one message",
       sent({route, update(target(2), octets("170a0103"), octets("180a0102 170a0102"))}),
       "+1 +2 -1 "},
      {"a table's entry, withdrawn by its peer", index + mrtRecord(13, 2, entry) + sent({gone}),
       "+1 -1 "},
  };
  for (const auto& [what, file, events] : cases) EXPECT_EQ(eventsOf(file), events) << what;
}

TEST_F(WatchRt, PrintsJson) {
  const TemporaryFile file(
      sent({update(target(1), octets("180a0102")), update("", "", octets("180a0102"))}));
  const auto line = [](const std::string& event) {
    return R"({"time":"2023-11-14T22:13:20Z","event":")" + event +
           R"(","routeTargets":["RT:65000:1"],"routeTargetsOctets":["0002fde800000001"]})"
           "\n";
  };
  expectRuns({{"bgpcomm watch-rt --json " + file.name(), line("come") + line("gone")}});
}

TEST_F(WatchRt, APeerThatGoesDownKeepsNothing) {
  const Bytes routes = sent({update(target(1), octets("180a0102 180a0103")),
                             announced("0001 80", "70 000101 0000fde800000064 0a0102", 2)});
  const Bytes other = mrtRecord(16, 4,
                                octets("0000fc58 0000fc59 0001 0001 c0000203 c0000202") +
                                    update(target(3), octets("180a0102")));
  const char* const peer = "0001 0001 c0000201 c0000202";
  const auto state = [peer](const char* change, U16 type = 16) {
    return mrtRecord(type, 5,
                     octets(type == 17 ? "00000001" : "") + octets("0000fc58 0000fc59") +
                         octets(peer) + octets(change));
  };
  const std::string come = "+1 +2 +3 ", gone = "-1 -2 ";
  EXPECT_EQ(eventsOf(routes + other + state("0006 0001")), come + gone);
  EXPECT_EQ(eventsOf(routes + other + state("0006 0001", 17)), come + gone);
  EXPECT_EQ(eventsOf(routes + other +
                     mrtRecord(16, 0, octets("fc58 fc59") + octets(peer) + octets("0006 0001"))),
            come + gone);
  EXPECT_EQ(eventsOf(routes + state("0006 0003") + state("0005 0006") + routes),
            "+1 +2 -1 -2 +1 +2 ");
  // The end of the session was not recorded.
  EXPECT_EQ(eventsOf(routes + other + state("0005 0006")), come + gone);
}

}  // namespace
}  // namespace bgpcomm

// Route-target sets as messages announce, replace and withdraw paths.
#include "RunTool.h"

namespace bgpcomm {
namespace {

using WatchRt = ToolTest;

/// The targets that come and go, by number: `+1 -1 `. An error line follows from behind the file's
/// name on.
std::string eventsOf(const Bytes& file) {
  const TemporaryFile stored(file);
  const ToolRun run = runTool("bgpcomm watch-rt " + stored.name() +
                              " | cut -f2- | sed 's/\troute-target-as2:65000://' | tr '\\n' ' '");
  return run.out + (run.err.empty() ? "" : run.err.substr(9 + stored.name().size()));
}

/// An UPDATE with a route target, for IPv4 prefixes or for those of a family (AFI and SAFI) in
/// MP_REACH_NLRI.
Bytes announced(const char* prefixes, U32 target, const char* family = "") {
  const Bytes targets = octets("c01008 0002 fde8") + number(target, 4);
  if (!*family) return update(targets, octets(prefixes));
  const Bytes reach = octets(family) + octets("0000") + octets(prefixes);
  return update(octets("800e") + counted(reach, 1) + targets, "");
}
Bytes withdrawn(const char* prefixes, const char* family) {
  return update(octets("800f") + counted(octets(family) + octets(prefixes), 1), "");
}

/// Records of a peer, of 192.0.2.1 unless told otherwise.
Bytes sent(std::initializer_list<Bytes> messages, U16 subtype = 4, const Bytes& by = session()) {
  Bytes records;
  for (const Bytes& message : messages) records += mrtRecord(16, subtype, by + message);
  return records;
}

TEST_F(WatchRt, SetsComeWithTheirFirstPathAndGoWithTheLast) {
  const Bytes route = announced("180a0102", 1), gone = update("", "", octets("180a0102"));
  const Bytes ids = announced("00000001 180a0102 00000002 180a0102", 1, "0001 01");
  const Bytes labels = announced("50 000100 000201 20010db8", 1, "0002 04");
  const Bytes refused = octets("c01010 4004fde84e000000 4004fde84d000000");
  const Bytes index = mrtRecord(13, 1, octets("0a000001 0000 0001 02 0a0000fe c0000201 0000fc58"));
  const Bytes entry = octets("00000001 18 0a0102 0001 0000 6553f100 000b c01008 0002fde800000001");
  // Two sets of one peer, one of another; then the first one's session changes its state.
  const Bytes routes = sent({announced("180a0102 180a0103", 1), announced("180a0104", 2)});
  const Bytes others = routes + sent({announced("180a0102", 3)}, 4, session(octets("c0000203")));
  const std::string come = "+1 +2 +3 ", down = "-1 -2 ";
  const std::array<Bytes, 3> cases[] = {
      // clang-format off
      {"withdrawn", sent({route, gone}), "+1 -1 "},
      {"by another AS", sent({route}) + sent({gone}, 4, session(octets("c0000201"), 4, 1)), "+1 "},
      {"sent by the collector", sent({route}) + sent({gone}, 7), "+1 "},
      {"in MP_UNREACH_NLRI", sent({route, withdrawn("180a0102", "0001 01")}), "+1 -1 "},
      {"of another family", sent({route, withdrawn("180a0102", "0001 02")}), "+1 "},
      {"two labels, one to withdraw", sent({labels, withdrawn("38 800000 20010db8", "0002 04")}), "+1 -1 "},
      {"replaced", sent({route, announced("180a0102", 2)}), "+1 +2 -1 "},
      {"without targets", sent({route, update(octets("40010100"), octets("180a0102"))}), "+1 -1 "},
      {"with a list that is refused", sent({route, update(refused, octets("180a0102"))}),
       "+1 -1 : 1 malformed, the first linkBandwidth (record 2, octet 70)\n"},
      {"one of two identifiers", sent({ids, withdrawn("00000001 180a0102", "0001 01")}, 9), "+1 "},
      {"both", sent({ids, withdrawn("00000002 180a0102 00000001 180a0102", "0001 01")}, 9), "+1 -1 "},
      {"withdrawn and announced in one message",
       sent({route, update(octets("c01008 0002fde800000002"), octets("170a0103"),
                           octets("180a0102 170a0102"))}), "+1 +2 -1 "},
      {"a table's entry", index + mrtRecord(13, 2, entry) + sent({gone}), "+1 -1 "},
      {"session ends", others + sent({octets("0006 0001")}, 5), come + down},
      {"another begins, no end was recorded", others + sent({octets("0005 0006")}, 5), come + down},
      {"ends and begins", routes + sent({octets("0006 0003"), octets("0005 0006")}, 5) + routes,
       "+1 +2 -1 -2 +1 +2 "},
      // clang-format on
  };
  for (const auto& [what, file, events] : cases) EXPECT_EQ(eventsOf(file), events) << what;

  const TemporaryFile file(sent({route, gone}));
  const auto line = [](const std::string& event) {
    return R"({"time":"2023-11-14T22:13:20Z","event":")" + event +
           "\",\"routeTargets\":[\"route-target-as2:65000:1\"],\"routeTargetsOctets\":["
           "\"0002fde800000001\"]}\n";
  };
  expectRuns({{"bgpcomm watch-rt --json " + file.name(), line("come") + line("gone")}});
}

}  // namespace
}  // namespace bgpcomm

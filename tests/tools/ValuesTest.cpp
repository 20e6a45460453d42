// What paths carry: values, and who has most of what.
#include "RunTool.h"

namespace bgpcomm {
namespace {

/// A path of a RIB entry, of the table's peer with this number.
Bytes entry(U16 peer, const char* attributes) {
  return number(peer, 2) + number(0, 4) + counted(octets(attributes), 2);
}
/// The paths of a prefix.
Bytes prefix(const char* nlri, std::initializer_list<Bytes> entries) {
  Bytes body = number(0, 4) + octets(nlri) + number(entries.size(), 2);
  for (const Bytes& entry : entries) body += entry;
  return mrtRecord(13, 2, body);
}
Bytes updateOf(const char* peer, U32 as, const char* attributes, const char* nlri) {
  return mrtRecord(16, 4, session(octets(peer), 4, as) + update(octets(attributes), octets(nlri)));
}

class ValuesTool : public ToolTest {
 protected:
  ValuesTool() {
    ::setenv("TABLE", table_.name().c_str(), 1);
    ::setenv("FILE", file_.name().c_str(), 1);
  }

  // Peers 192.0.2.1 AS64600 and 192.0.2.2 AS64601.
  const Bytes index_ = mrtRecord(13, 1,
                                 octets("0a000001 0000 0002 02 0a0000fe c0000201 0000fc58"
                                        "02 0a0000ff c0000202 0000fc59"));
  const TemporaryFile table_{
      index_ + prefix("080a", {entry(0, "c00804 fde80001"), entry(1, "c00804 fde80001")})};
  // One prefix of three lists, and one whose paths stand in two records; UPDATEs of the second
  // peer, and of one with its address and another AS.
  const Bytes again_ =
      updateOf("c0000202", 64601, "c00804 fde80001 c01008 0002fde800000064", "100a02 100a03");
  const TemporaryFile file_{
      index_ +
      prefix("080a", {entry(0, "c0080c fde80001 fde80001 ffffff01"), entry(1, "c00804 fde80001"),
                      entry(1, "c00804 fde80001")}) +
      prefix("100a01", {entry(0, "c00804 fde80001"), entry(1, "40010100")}) +
      prefix("100a01", {entry(1, "c00804 fde80001")}) + again_ + again_ +
      updateOf("c0000202", 64600, "c0200c 0000fde80000000100000002", "180a0203")};
};

TEST_F(ValuesTool, CountPathsPeersAndPrefixes) {
  const std::string one = "7\t2\t6\t65000:1\n", target = "2\t1\t4\troute-target-as2:65000:100\n";
  const std::string large = "1\t1\t1\t65000:1:2\n", noExport = "1\t1\t1\tNO_EXPORT\n";
  for (const auto& [options, lines] : std::initializer_list<std::pair<std::string, std::string>>{
           {"$FILE", one + target + noExport + large},
           {"$TABLE", "2\t2\t1\t65000:1\n"},
           {"$TABLE $TABLE", "4\t2\t2\t65000:1\n"},
           {"--sort prefixes --top 2 $FILE", one + target},
           {"--sort peers $FILE", one + noExport + target + large},
           {"--sort value --numeric $FILE", one + "1\t1\t1\t65535:65281\n" + target + large},
           {"--kind '65000:*' $FILE", one},
           {"--kind '*:*:2' $FILE", large},
           {"--kind route-target-as2 --text policy $FILE", "2\t1\t4\tRT:65000:100\n"},
           {"--where 'has extended' --prefix 10.3.0.0/16 $FILE",
            "2\t1\t2\t65000:1\n2\t1\t2\troute-target-as2:65000:100\n"},
           {"--peer 64600 $FILE", "2\t1\t2\t65000:1\n" + noExport + large},
           {"--json --sort value --top 2 $FILE",
            R"({"value":"65000:1","octets":"fde80001","kind":"standard","attribute":"standard",)"
            R"("paths":7,"peers":2,"prefixes":6})"
            "\n"
            R"({"value":"NO_EXPORT","octets":"ffffff01","kind":"NO_EXPORT",)"
            R"("attribute":"standard","paths":1,"peers":1,"prefixes":1})"
            "\n"},
       })
    expectRuns({{"bgpcomm values " + options, lines}});
  expectRuns({
      {"bgpcomm values --sort size $FILE", "", 2,
       "--sort size: there are paths, peers, prefixes, value"},
      {"bgpcomm values --kind '65000:' $FILE", "", 2,
       "--kind: at 6: \"\": expected a decimal number below 65536"},
      {"bgpcomm values $TABLE /", "2\t2\t1\t65000:1\n", 1, "/: Is a directory"},
  });
}

}  // namespace
}  // namespace bgpcomm

// Commands about what paths carry: values, who has most, what is malformed.

#include "RunTool.h"

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
class ValuesTool : public ToolTest {
 protected:
  // Peers 192.0.2.1 AS64600 and 192.0.2.2 AS64601.
  const Bytes index_ = mrtRecord(13, 1,
                                 octets("0a000001 0000 0002 02 0a0000fe c0000201 0000fc58"
                                        "02 0a0000ff c0000202 0000fc59"));
  const NamedFile table_{
      "TABLE", index_ + prefix("080a", {entry(0, "c00804 fde80001"), entry(1, "c00804 fde80001")})};
  // One prefix of three lists, and one whose paths stand in two records; UPDATEs of the second
  // peer, and of one with its address and another AS.
  const Sender second_{"c0000202", 64601}, third_{"c0000202", 64600};
  const Bytes again_ =
      updateOf(second_, "c00804 fde80001 c01008 0002fde800000064", "100a02 100a03");
  const NamedFile file_{
      "FILE",
      index_ +
          prefix("080a", {entry(0, "c0080c fde80001 fde80001 ffffff01"),
                          entry(1, "c00804 fde80001"), entry(1, "c00804 fde80001")}) +
          prefix("100a01", {entry(0, "c00804 fde80001"), entry(1, "40010100")}) +
          prefix("100a01", {entry(1, "c00804 fde80001")}) + again_ + again_ +
          updateOf(third_, "40020602010000fcbc c0200c 0000fde80000000100000002", "180a0203")};
};

TEST_F(ValuesTool, CountPathsPeersAndPrefixes) {
  const std::string one = "7\t2\t6\t65000:1\n", target = "2\t1\t4\troute-target-as2:65000:100\n";
  const std::string large = "1\t1\t1\t65000:1:2\n", noExport = "1\t1\t1\tNO_EXPORT\n";
  expectRuns("bgpcomm values ",
             {
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
             });
  expectRuns({
      {"bgpcomm values --json --sort value --limit 2 $FILE",
       json("{'value':'65000:1','octets':'fde80001','kind':'standard','attribute':'standard',"
            "'paths':7,'peers':2,'prefixes':6}\n"
            "{'value':'NO_EXPORT','octets':'ffffff01','kind':'NO_EXPORT','attribute':'standard',"
            "'paths':1,'peers':1,'prefixes':1}\n")},
      {"bgpcomm values $TABLE /", "2\t2\t1\t65000:1\n", 1, "/: Is a directory"},
  });
}

TEST_F(ValuesTool, RankByPathsListsAndOctets) {
  const std::string head = "paths % lists % octets % shared % ";
  const std::string whole = "\n9 100.0 4 100.0 60 100.0 32 100.0 (all)\n";
  const std::string one = "7 77.8 2 50.0 28 46.7 8 25.0 ", target = "2 22.2 1 25.0 16 26.7 8 25.0 ";
  const std::string noExport = "1 11.1 1 25.0 4 6.7 4 12.5 ";
  const std::string large = "1 11.1 1 25.0 12 20.0 12 37.5 ",
                    both = "2 22.2 2 50.0 24 40.0 12 37.5 ";
  const std::string targets = target + "route-target-as2:65000:100\n";
  for (const auto& [by, rows] : std::initializer_list<std::pair<std::string, std::string>>{
           {"value",
            one + "65000:1\n" + targets + noExport + "NO_EXPORT\n" + large + "65000:1:2\n"},
           {"kind", one + "standard\n" + target + "route-target-as2\n" + noExport + "NO_EXPORT\n" +
                        large + "large\n"},
           {"list", "6 66.7 1 25.0 24 40.0 4 12.5 65000:1\n" + targets +
                        "1 11.1 1 25.0 8 13.3 8 25.0 65000:1 NO_EXPORT\n" + large + "65000:1:2\n"},
           {"route-target", targets},
           {"peer",
            "6 66.7 2 50.0 36 60.0 12 37.5 192.0.2.2 AS64601\n2 22.2 2 50.0 12 20.0 12 37.5 "
            "192.0.2.1 AS64600\n" +
                large + "192.0.2.2 AS64600\n"},
           {"prefix",
            "3 33.3 2 50.0 16 26.7 12 37.5 10.0.0.0/8\n3 33.3 1 25.0 8 13.3 4 12.5 10.1.0.0/16\n" +
                both + "10.2.0.0/16\n" + both + "10.3.0.0/16\n" + large + "10.2.3.0/24\n"},
           {"origin", "8 88.9 3 75.0 48 80.0 20 62.5 -\n" + large + "AS64700\n"},
       })
    expectRuns({{"bgpcomm top --by " + by + " $FILE | sed 's/^ *//; s/  */ /g'",
                 head + by + whole + rows}});
  expectRuns({
      {"bgpcomm top --limit 1 --where has\\ large $FILE",
       "       paths     %       lists     %      octets     %      shared     %  value\n"
       "           1 100.0           1 100.0          12 100.0          12 100.0  (all)\n"
       "           1 100.0           1 100.0          12 100.0          12 100.0  65000:1:2\n"},
      {"bgpcomm top --by list --json --limit 1 $FILE; bgpcomm top --by peer --json --limit 1 "
       "$TABLE",
       json("{'what':'total','groups':4,'paths':9,'lists':4,'octetsBefore':60,'octetsAfter':32}\n"
            "{'list':'65000:1','octets':'fde80001','attribute':'standard','paths':6,"
            "'pathsPercent':66.67,'lists':1,'listsPercent':25.0,'octetsBefore':24,"
            "'octetsBeforePercent':40.0,'octetsAfter':4,'octetsAfterPercent':12.5}\n"
            "{'what':'total','groups':2,'paths':2,'lists':1,'octetsBefore':8,'octetsAfter':4}\n"
            "{'peer':'192.0.2.1 AS64600','paths':1,'pathsPercent':50.0,'lists':1,"
            "'listsPercent':100.0,'octetsBefore':4,'octetsBeforePercent':50.0,'octetsAfter':4,"
            "'octetsAfterPercent':100.0}\n")},
  });
}

TEST_F(ValuesTool, ShowFaultsWithTheirPlaces) {
  // Records of 71, 74, 12 and 78 octets, and 6 of the next one's header.
  const NamedFile faulty(
      "FAULTY", updateOf({}, "40010100 c00805 fde8006400", "180a0102") +
                    updateOf({}, "c01010 4004fde84e000000 4004fde84d000000") +
                    mrtRecord(16, 4, "") +
                    updateOf(second_, "800804 00000001 c00804 fde80001 c02001 00 d008ffff fd") +
                    octets("6553f100 0010"));
  const std::string all = R"(
192.0.2.1 AS64600|10.1.2.0/24|8|standard input|1|0|4|5|Community attribute, offset 4: 1 octet, expected a value of 4|c00805fde80064>00
192.0.2.1 AS64600|-|16|standard input|2|71|0|16|Extended Community attribute, offset 8: a second link bandwidth, expected at most one|c010104004fde84e000000>4004fde84d000000
)";
  const std::string bad =
      "-|-|-|standard input|3|145|-|-|fields that do not fit (type 16, subtype 4, length 0)|-\n";
  const std::string asked = R"(
192.0.2.2 AS64601|-|8|standard input|4|157|0|4|Community attribute: flags 0x80, expected optional and transitive|>80080400000001
192.0.2.2 AS64601|-|8|standard input|4|157|7|4|Community attribute: given again, the first counts|>c00804fde80001
)";
  const std::string rest = R"(
192.0.2.2 AS64601|-|32|standard input|4|157|14|1|Large Community attribute, offset 0: 1 octet, expected a value of 12|c02001>00
192.0.2.2 AS64601|-|8|standard input|4|157|18|65535|Community attribute: 1 octet left of 65535|d008fffffd>
-|-|-|standard input|5|235|-|-|ends inside a record, 6 of 12 octets|-
)";
  const std::string shown = " - <$FAULTY 2>&- | cut -f2- | tr '\\t' '|'";
  expectRuns({
      // clang-format off
      {"bgpcomm faults" + shown, all.substr(1) + bad + rest.substr(1)},
      {"bgpcomm faults --flags --repeats --peer 64601" + shown, bad + asked.substr(1) + rest.substr(1)},
      {"bgpcomm faults $FAULTY 2>&- | cut -f1,5 | sort -u", "-\t" + faulty.name() + "\n2023-11-14T22:13:20Z\t" + faulty.name() + '\n'},
      {"bgpcomm faults - <$FAULTY >/dev/null", "", 1,
       "standard input: ends inside a record, 6 of 12 octets (record 5, octet 235)\n"
       "bgpcomm: standard input: 5 malformed, the first attrLength (record 1, octet 0): Community attribute, offset 4: "
       "1 octet, expected a value of 4 (type 8, length 5, octet 4 of the path's attributes)"},
      {"bgpcomm faults --json - <$FAULTY 2>&- | sed -n '1p;3p'",
       json("{'time':'2023-11-14T22:13:20Z','peer':'192.0.2.1','peerAs':64600,'announced':['10.1.2.0/24'],'attribute':8,"
            "'file':'-','record':1,'octet':0,'offset':4,'length':5,'fault':'attrLength','reason':'Community attribute, offset 4: 1 octet, "
            "expected a value of 4','approach':'treatAsWithdraw','octets':'c00805fde8006400','at':7}\n"
            "{'time':null,'peer':null,'peerAs':null,'announced':null,'attribute':null,'file':'-','record':3,'octet':145,"
            "'offset':null,'length':null,'fault':'badRecord','reason':'fields that do not fit (type 16, subtype 4, length 0)','approach':null,'octets':null,'at':null}\n")},
      {"bgpcomm faults $FILE", ""},
      // clang-format on
  });
}

TEST_F(ValuesTool, ShowAsManyFaultsAsSummaryCounts) {
  std::mt19937 random(1);
  const auto below = [&random](U32 end) { return random() % end; };
  Bytes records;
  for (int i = 0; i < 400; ++i) {
    Bytes attributes;
    for (U32 left = below(5); left > 0; --left) {
      constexpr std::pair<U8, U32> types[] = {{1, 1}, {8, 4}, {16, 8}, {25, 20}, {32, 12}};
      const auto [type, size] = types[below(5)];
      Bytes value = Bytes(below(4) * size + (below(4) == 0), '\x40');
      // Link bandwidths that differ.
      if (type == 16)
        for (std::size_t at = 1; at < value.size(); at += 8) value[at] = 4;
      if (type == 16 && value.size() > 15) value[15] = char(below(2));
      attributes += octets(below(4) ? "c0" : "40") + number(type, 1) + counted(value, 1);
    }
    attributes.resize(attributes.size() - (below(8) == 0 && !attributes.empty()));
    records += below(16) ? messageRecord(update(attributes, "")) : mrtRecord(16, 4, "");
  }
  const NamedFile file("MADE", records);
  const std::string lines = runTool("bgpcomm faults $MADE 2>&- | wc -l").out;
  EXPECT_GT(std::stoi(lines), 200);
  expectRuns(
      {{"bgpcomm summary --json $MADE | sed -n 's/.*\"malformed\": \\([0-9]*\\),/\\1/p' | head -1",
        lines},
       {"echo $(($(bgpcomm faults --flags $MADE 2>&- | wc -l) - " +
            lines.substr(0, lines.find('\n')) + "))",
        runTool("bgpcomm summary $MADE | sed -n 's/  wrong flags *//p' | tr -d ,").out}});
}

}  // namespace

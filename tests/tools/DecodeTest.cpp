// Communities and attributes given in hex, as the tool's user sees them.
#include "RunTool.h"

namespace {

using Decode = ToolTest;

TEST_F(Decode, TellsClassClassificationAndPolicyText) {
  const std::string communities = R"(
0002fde800000064 ExtCommRouteTargetAs RouteTarget Route-Target-AS:65000:100
0102c0a800010064 ExtCommRouteTargetIpv4Address RouteTarget Route-Target-IP:192.168.0.1:100
4004fde84e9502f9 ExtCommLinkBandwidth LinkBandwidth Link-Bandwidth-AS:65000:10 Gbps
030b80000000000a ExtCommColor Color Color:CO(10):10
4300000000000007 ExtCommOriginValidationState OriginValidationState Origin-Validation-State:Unknown
4304000000000005 ExtCommSubtyped UnSpecified 0304(NT):0x00 0x00 0x00 0x00 0x00 0x05
0400000000000001 ExtComm UnSpecified 0400:0x00 0x00 0x00 0x00 0x00 0x01
400220010db80000000000000000000000010064 ExtCommIp6Subtyped UnSpecified 0002-IP6(NT):2001:db8::1:100
010220010db80000000000000000000000010064 ExtCommIp6 UnSpecified 0102-IP6:2001:db8::1:100
)";
  const TemporaryFile file(communities);
  expectRuns({{"cut -d' ' -f1 " + file.name() + " | bgpcomm --core decode --json - | " +
                   "cut -d'\"' -f4,8,12,20 | tr '\"' ' ' | sed s/extCommClassification//",
               communities.substr(1)}});
}

TEST_F(Decode, AnswersInTextOrJson) {
  const std::string target =
      "000220010db80000000000000000000000010064\n"
      "  class           ExtCommIp6Subtyped\n"
      "  classification  extCommClassificationUnSpecified\n"
      "  show            <extCommIp6PktTypeTransIpv6Address extCommIp6PktSubtypeRouteTarget "
      "addr=2001:db8::1 localAdmin=100>\n"
      "  policy          0002-IP6:2001:db8::1:100\n";
  const std::string attribute = "Community (8), flags 0xd0: internet\n";
  expectRuns({
      // clang-format off
      {"printf '\\n 0x000220010DB80000000000000000000000010064\\r\\n' | bgpcomm --core decode -", target},
      // As many octets as a community each; only blanks make an attribute of them.
      {"bgpcomm --core decode --names d008000400000000 'D0 08:0004 00000000' | sed -n '2p;6p'",
       "  class           ExtComm\n" + attribute},
      {"bgpcomm --core decode d0 08 00 04 00 00 00 00", attribute},
      {"bgpcomm --core decode --json c0101002020000006400010002006400000001 | cut -d, -f6-",
       R"("RT:100:1"],"extendedOctets":["0002006400000001","0202000000640001"]})" "\n"},
      // clang-format on
  });
}

TEST_F(Decode, FormatChoosesThePolicyText) {
  expectRuns(
      "tail() { command tail -1 | cut -c19-; }; bgpcomm --core decode --format ",
      {// clang-format off
      {"none 0002fde800000064 | tail", "65000:100\n"}, {"classification 0103c0a800010064 | tail", "SoO:192.168.0.1:100\n"},
      {"ui,qualifier,classification 0202000100640001 | tail", "Route-Target-AS4:65636L:1\n"},
      {"qualifier,asdot 0202000100640001 | tail", "1.100:1\n"},
      {"classification,ui,weighted 4004fde84e9502f9 | tail", "Link-Bandwidth-AS:65000:1250000000\n"},
      {"ui 030c000000000008 | tail", "tunnelTypeVxlan\n"}, {"classification 4300000000000002 | tail", "-\n"}});
  // clang-format on
}

TEST_F(Decode, SaysWhatIsWrongInOneLineAndGoesOn) {
  const std::string neither = "neither a community, 16 or 40 digits in a piece, nor an attribute: ";
  const std::string origin = "Origin (1), flags 0x40: 00\n";
  const std::string prefix = "bgpcomm: standard input, line ";
  expectRuns({
      // clang-format off
      {"bgpcomm --core decode 0002fde80000006 40010100", origin, 1,
       "argument 1 (0002fde80000006): half an octet at character 15"},
      {"bgpcomm --core decode 40010100 g002fde800000064 0x 40010100", origin + origin, 1,
       "argument 2 (g002fde800000064): no hexadecimal digit at character 1\nbgpcomm: argument 3 (0x): " +
           neither + "too short for flags, type and length"},
      {"bgpcomm --core decode 40010100 400101aabb 2>&1", origin + "bgpcomm: argument 2 (400101aabb): " + neither +
           "its length is 1, but 2 octets follow\n", 1},
      {"bgpcomm --core decode 000220010db8000000000000000000000001006400", "", 1,
       "argument 1 (000220010db8000000000000...): " + neither + "its length is 32, but 18 octets follow"},
      {"bgpcomm --core decode c010104004fde84e0000004004fde84d000000", "", 1,
       "argument 1 (c010104004fde84e00000040...): Extended Community attribute, offset 8: a second link "
       "bandwidth, expected at most one"},
      {"printf '40010100\\n\\nz\\033z\\n4\\0001\\n40010100' | bgpcomm --core decode - 40010100",
       origin + origin + origin, 1,
       "standard input, line 3 (z\\x1bz): no hexadecimal digit at character 1\n" + prefix +
           "4 (4\\x001): half an octet at character 1"},
      // Lines of 200,000 characters, of one more, and of more than is read at once.
      {"(printf 4001 && head -c 199992 /dev/zero | tr '\\0' ' ' && echo 0100; printf %0200001d\\\\n;"
       " printf %01000000d\\\\n; echo 40010100) | bgpcomm --core decode -", origin + origin, 1,
       "standard input, line 2: longer than 200000 characters\n" + prefix +
           "3: longer than 200000 characters"},
      {"printf %0200001d | bgpcomm --core decode -", "", 1, "standard input, line 1: longer than 200000 characters"},
      {"bgpcomm --core decode - 40010100 < /", origin, 1, "standard input: Is a directory"},
      // clang-format on
  });
}

TEST_F(Decode, AnswersEachLineAsItComesAndLosesNone) {
  // The second line is sent only after the answer to the first has been read.
  expectRuns({{"dir=$(mktemp -d) && mkfifo $dir/in $dir/out\n"
               "timeout 20 \"$BGPCOMM\" --core decode --json - < $dir/in > $dir/out &\n"
               "exec 3> $dir/in 4< $dir/out\n"
               "for type in 04 05; do\n"
               "  echo ${type}00000000000001 >&3; read -r line <&4; echo \"$line\" | cut -c1-29\n"
               "done; exec 3>&-; wait; rm -r $dir",
               "{\"content\":\"0400000000000001\"\n{\"content\":\"0500000000000001\"\n"},
              // More than the pieces in which input is read, so that lines lie across them.
              {"file=$(mktemp) && seq -f %016.0f 60000 > $file\n"
               "bgpcomm --core decode - < $file | grep -v '^ ' | cmp - $file; rm $file",
               ""}});
}

TEST_F(Decode, TellsKindAndFields) {
  const std::string mobility =
      "0600010000000005\n"
      "  text            mac-mobility:S:5\n"
      "  kind            MAC Mobility, RFC7432 7.7\n"
      "    flags         S\n"
      "    sequence      5\n";
  const std::string two = "Origin (1), flags 0x40: 00\nCommunity (8), flags 0xc0: 65000:100\n";
  const std::string update =
      "ffffffff ffffffff ffffffff ffffffff 0022 02 0000 000b 40010100 c00804fde80064";
  expectRuns({
      // clang-format off
      {"bgpcomm decode 0600010000000005 | head -5", mobility},
      {"bgpcomm decode fde80064", "fde80064\n  text            65000:100\n    as            65000\n"
       "    value         100\n"},
      {"bgpcomm decode ffffff01 000100040000000100000002 | grep text",
       "  text            NO_EXPORT\n  text            65540:1:2\n"},
      {"bgpcomm decode 030c000100000008 0607000000000000 | grep -A1 text",
       "  text            encapsulation:malformed:00:01:00:00:00:08\n"
       "  kind            Encapsulation, RFC9012 4.1; malformed: a reserved bit is set\n--\n"
       "  text            unknown-transitive:06:07:00:00:00:00:00:00\n  kind            not assigned\n"},
      {"bgpcomm decode --json fde80064 0601400000000437 8007000000000003 40080000 | cut -d, -f2- | grep -o '\"id.*'",
       R"("identifier":null,"canonical":"65000:100","fields":{"as":65000,"value":100}})" "\n"
       R"("identifier":"esi-label","canonical":"esi-label:local-bias:A:67/7",)"
       R"("fields":{"split-horizon":"local-bias","mode":"A","label":"67/7"}})" "\n"
       R"("identifier":"flowspec-traffic-action","canonical":"flowspec-traffic-action:SAMPLE:TERMINAL",)"
       R"("fields":{"action":["SAMPLE","TERMINAL"]}})" "\n"
       R"("identifier":null,"canonical":"16392:0","fields":{"as":16392,"value":0}})" "\n"},
      {"bgpcomm decode 4004fbf47fc00000 | grep kind",
       "  kind            Link Bandwidth (non-transitive), RFC10005 2; malformed: the rate is no number\n"},
      // An attribute's digits, if they are as many as a community's, are a community.
      {"bgpcomm decode 40010100 | head -1", "40010100\n", 0,
       "argument 1 (40010100): read as a community; with blanks between its octets it would be an attribute"},
      {"bgpcomm decode '40010100 c00804fde80064' 40010100c00804fde80064 '" + update + "'", two + two + two},
      {"bgpcomm decode '0x40, 0x01, 0x01, 0x00' '\\x40\\x01\\x01\\x00' 40-01-01-00",
       "Origin (1), flags 0x40: 00\nOrigin (1), flags 0x40: 00\nOrigin (1), flags 0x40: 00\n"},
      {"bgpcomm decode '40010100 c0080440' 40010100c010104004fde84e0000004004fde84d000000c00804fde80064 '" + update + " 0'", two, 1,
       "argument 1 (40010100 c0080440): neither a community, 8, 16, 24 or 40 digits in a piece, nor attributes: "
       "its length is 4, but 1 octet follows\nbgpcomm: argument 2 (40010100c010104004fde84e...): Extended "
       "Community attribute, offset 8: a second link bandwidth, expected at most one (type 16, "
       "length 16, octet 4 of the path's attributes)\n"
       "bgpcomm: argument 3 (ffffffff ffffffff ffffff...): half an octet at character 79"},
      {"bgpcomm decode '" + update.substr(0, 36) + "0023" + update.substr(40) + "' '" + update.substr(0, 41) + "01" +
           update.substr(43) + "' 'ffffffff ffffffff ffffffff ffffffff 0017 02 0000 0000'", "", 1,
       "argument 1 (ffffffff ffffffff ffffff...): a message whose length says 35 octets, not 34\n"
       "bgpcomm: argument 2 (ffffffff ffffffff ffffff...): a message of type 1, not an UPDATE"},
      // Dumps of packet tools: one text over several lines, offsets in front, letters behind.
      {"printf '0x0000:  4001 0100 c008 04fd  @.......\n0x0008:  e800 64\n40 01 01 00\n' | bgpcomm decode -",
       two + two.substr(0, 27)},
      {"printf '00000000  40 01 01 00 c0 08 04 fd  e8 00 64 40 01 01 00 40  |@|\n00000010  01 01 00\n\n"
       "0000   40 01 01 00\n' | bgpcomm decode -", two + two.substr(0, 27) + two.substr(0, 27) + two.substr(0, 27)},
      {"file=$(mktemp); printf '\\100\\001\\001\\000\\300\\010\\004\\375\\350\\000\\144' > $file;"
       "hexdump -C $file | bgpcomm decode -; od -Ax -tx1 $file | bgpcomm decode -; xxd $file | bgpcomm decode -; "
       "xxd -p $file | bgpcomm decode -; rm $file", two + two + two + two},
      // A `*` stands for lines like the one before, with offsets in hex and in octal.
      {"file=$(mktemp); { printf '\\330\\010\\000\\204'; head -c 128 /dev/zero; printf '\\000\\001\\000\\002'; } > $file\n"
       "for dump in 'hexdump -C' 'od -Ax -tx1' 'od -tx1' 'od -tx1 -w8' 'xxd -a' 'hexdump -vC'; do\n"
       "  $dump $file | bgpcomm decode -; bgpcomm decode \"$($dump $file)\"; done | sort | uniq -c; rm $file",
       "     12 Community (8), flags 0xd8: 0:0 1:2\n"},
      {"printf '0000  40 01 01 00\n*\n0006  0\n' | bgpcomm decode -; bgpcomm decode \"$(printf '0000  40\n*')\"", "", 1,
       "standard input, line 1: a dump ends in `*`, which leaves out lines; hexdump -v shows all of them\n"
       "bgpcomm: standard input, line 3 (0006  0): half an octet at character 7\nbgpcomm: argument 1 (0000  40\\x0a*): "
       "a dump ends in `*`, which leaves out lines; hexdump -v shows all of them"},
      {"bgpcomm decode 00000000 0000000000000000 | grep text",
       "  text            0:0\n  text            unknown-transitive:00:00:00:00:00:00:00:00\n"},
      {"bgpcomm decode --json 0609ffff00000000 | sed 's/.*fields//'",
       R"(":{"flags":["0","1","2","EEG","SFG","SEMG","MVPN","SBD","SEG","IPMG","MEG","PEG","OISM","EMHAR","M","I"]}})" "\n"},
      // clang-format on
  });
}

TEST_F(Decode, EncodeIsTheWayBack) {
  expectRuns({
      // clang-format off
      {"bgpcomm encode route-target-as2:65000:100 no-export 65540:1:2 Route-Target-IPv6:[2001:db8::1]:100",
       "0002fde800000064\nffffff01\n000100040000000100000002\n000220010db80000000000000000000000010064\n"},
      {"bgpcomm encode --attribute NO_EXPORT mac-mobility::1 65000:100 65000:100",
       "c00808fde80064ffffff01\nc010080600000000000001\n"},
      {"bgpcomm encode 'color:0:7, no-export 1:2' '0304(NT):0x00 0x01 0x00 0x00 0x00 0x02'",
       "030b000000000007\nffffff01\n00010002\n4304000100000002\n"},
      {"printf ' color:0:7 \\r\\n\\n1:65536\\n1:2\\n' | bgpcomm encode - --of 16", "030b000000000007\n", 1,
       "standard input, line 3: at 0: \"1\": expected a community: the identifier of a kind, a well-known name, or "
       "two or three decimal numbers\nbgpcomm: standard input, line 4: at 0: \"1\": expected a community: the "
       "identifier of a kind, a well-known name, or two or three decimal numbers"},
      {"bgpcomm encode rout-target-as2:1:2 2>&1 | grep -o 'did.*'", "did you mean \"route-target-as2\"?\n"},
      {"bgpcomm encode --of 9 1:2 2>&1 | cut -c1-13", "bgpcomm: --of\n"},
      // All values of the file, to text and back.
      {"file=$(mktemp); seq -f %016.0f 20000 > $file; bgpcomm decode - --json < $file | sed 's/.*canonical\":\"//; s/\".*//' |"
       " bgpcomm encode - | cmp - $file; rm $file", ""},
      // clang-format on
  });
}

TEST_F(Decode, KindsAreListedAndMore) {
  const TemporaryFile kinds(
      R"([{"attribute":16,"type":143,"subtype":1,"name":"Mine","identifier":"mine",
    "fields":[{"name":"flags","bit":0,"bits":8,"as":"flags","flags":{"7":"up"}},
              {"name":"count","bit":8,"bits":40,"as":"integer"}]}])");
  expectRuns({
      // clang-format off
      {"bgpcomm kinds mobil", "16  0x06/0x00   mac-mobility:<flags:...>:<sequence>\n"
       "                MAC Mobility, RFC7432 7.7\n"},
      {"bgpcomm kinds 0x0a/ | grep -c :", "1\n"},
      {"bgpcomm kinds | wc -l; bgpcomm kinds --json | grep -c '\"attribute\"'", "139\n139\n"},
      {"bgpcomm kinds --markdown | diff - docs/kinds.md", ""},
      {"bgpcomm kinds zebra", "", 1, "zebra: no kind has this in its identifier, name, number or reference"},
      {"bgpcomm --kinds " + kinds.name() + " decode 8f01010000000007 | sed -n '2p;4,5p'",
       "  text            mine:up:7\n    flags         up\n    count         7\n"},
      {"bgpcomm encode MINE::9 --kinds " + kinds.name(), "8f01000000000009\n"},
      {"bgpcomm --kinds " + kinds.name() + " kinds --json mine | bgpcomm --kinds /dev/stdin kinds mine | head -1",
       "16  0x8f/0x01   mine:<flags:...>:<count>\n"},
      // clang-format on
  });

  // $ is what a row needs besides its fields, % a field of all bits, @ and # are too many of them
  // and of keys.
  const std::string whole =
      R"("attribute":16,"type":143,"subtype":1,"name":"M","identifier":"mine")";
  const std::string field = R"({"name":"a","bit":0,"bits":48,"as":"integer"})";
  std::istringstream faults(R"(
{} -> is no array of rows
[1] -> row 1 is no object
[{"attribute":16,"type":143,"subtype":1, -> [json.exception.parse_error.101] parse error at line 1, column 41: syntax error while parsing object key - unexpected end of input; expected string literal
[{"attribute":8,"identifier":"mine"}] -> row 1, "attribute" is neither 16 nor 25: others have no kinds
[{"attribute":16,"identifier":"mine","type":256}] -> row 1, "type" is no number from 0 to 255
[{$,"fields":[{"name":"a","bit":0,"bit":1,"bits":48,"as":"integer"}]}] -> "bit" comes twice in one object
[{$,"fields":[%],"feilds":[]}] -> row 1, "feilds" is a key that it cannot have
[{$,"fields":[{"name":"a","bit":0,"bits":48,"as":"intger"}]}] -> row 1 (mine), field 1, "as" is "intger", not one of integer, as2, as4, ipv4, ipv6, mac, hex, enum, flags, float32, label, data-collection, reserved
[{$,"fields":[{"name":"a","bit":0,"bits":48,"as":"enum","enum":{"x":"y"}}]}] -> row 1 (mine), field 1, "enum" has "x", which is no number with a name
[{$,"fields":[{"name":"a","bit":0,"bits":47,"as":"integer"}]}] -> kind "mine": has fields that leave out bits of the value
[{$,"fields":[%],"aliases":["color"]}] -> kind "mine": has an identifier of "color"
[{$,"fields":[%],"example":{"hex":"8f01"}}] -> row 1 (mine), example, "hex" is not the digits of a community
[{$,"fields":[%],"example":{"hex":"0002000000000000"}}] -> row 1 (mine), example, "hex" is of another type and subtype
[{$,"fields":[{"name":"a","bit":0,"bits":48,"as":"flags","enum":{}}]}] -> row 1 (mine), field 1, "enum" is not of its form
[{$,"fields":[%],"note":null}] -> row 1, "note" is no text
[{$,"fields":[%@]}] -> row 1, "fields" has more fields than the value has bits
[{#}] -> an object has more than 4096 keys
[{$,"fields":[{"name":"a","bits":48,"as":"integer"}]}] -> row 1 (mine), field 1, "bit" is missing
[{$,"fields":[%],"note":"\u001b[31m"}] -> kind "mine": has a text with characters that are not printable ASCII
[{$,"fields":[%],"aliases":["no-export"]}] -> kind "mine": has an identifier of "NO_EXPORT"
[{$,"fields":[%],"verified":"maybe"}] -> row 1, "verified" is neither true, false, family nor decoders
)");
  std::map<char, std::string> texts = {{'$', whole}, {'%', field}};
  for (int i = 0; i < 48; ++i) texts['@'] += ',' + field;
  for (int i = 0; i < 4097; ++i) texts['#'] += (i ? ",\"" : "\"") + std::to_string(i) + "\":0";
  faults.get();
  for (std::string line; std::getline(faults, line);) {
    const auto arrow = line.find(" -> ");
    std::string rows = line.substr(0, arrow);
    for (const auto& [sign, text] : texts)
      if (const auto at = rows.find(sign); at != rows.npos) rows.replace(at, 1, text);
    const TemporaryFile file(rows);
    expectRuns({{"bgpcomm kinds --kinds " + file.name(), "", 1,
                 file.name() + ": " + line.substr(arrow + 4)}});
  }
}

}  // namespace

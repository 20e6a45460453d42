#include <nlohmann/json.hpp>
#include <sstream>

#include "RunTool.h"

namespace bgpcomm {
namespace {

const Bytes origin = octets("40010100");

/// Three paths: {65000:100, no-export} in two orders and with a repeat, {65000:200}.
Bytes sampleFile() {
  const Bytes nlri = octets("180a0102");
  return messageRecord(update(origin + octets("c00808 fde80064ffffff01"), nlri)) +
         messageRecord(update(origin + octets("c0080c ffffff01fde80064fde80064"), nlri)) +
         messageRecord(update(origin + octets("c00804 fde800c8"), ""));
}

std::size_t longestLine(const std::string& text) {
  std::size_t longest = 0;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) longest = std::max(longest, line.size());
  return longest;
}

class Tool : public testing::Test {
 protected:
  void SetUp() override {
    if (!toolIsThere()) GTEST_SKIP() << "$BGPCOMM does not name the tool";
    ::setenv("FILE", file_.name().c_str(), 1);
    ::setenv("BROKEN", broken_.name().c_str(), 1);
    ::setenv("MALFORMED", malformed_.name().c_str(), 1);
  }

  TemporaryFile file_{sampleFile()};
  TemporaryFile broken_{sampleFile() + octets("6553f100 0010")};
  /// A good path of 62 octets, a standard attribute of 5 octets, a large one of 1, no record.
  TemporaryFile malformed_{messageRecord(update(octets("c00804fde800c8"), "")) +
                           messageRecord(update(octets("c00805fde800c800"), "")) +
                           messageRecord(update(octets("c0200100"), "")) + mrtRecord(16, 4, "")};
};

TEST_F(Tool, AnswersAndFailsInOneLine) {
  const std::string first =
      "2023-11-14T22:13:20Z\t192.0.2.1 AS64600\t10.1.2.0/24\t65000:100 no-export\n";
  const std::string third = "2023-11-14T22:13:20Z\t192.0.2.1 AS64600\t-\t65000:200\n";
  const std::string start = third.substr(0, third.rfind('\t') + 1);
  const struct {
    const char* command;
    int exitCode;
    std::string out, err;  ///< `err` without the "bgpcomm: " before and the newline behind
  } cases[] = {
      {"bgpcomm paths $FILE", 0, first + first + third, ""},
      {"bgpcomm paths - < $FILE", 0, first + first + third, ""},
      {"bgpcomm paths --community 65000:200 $FILE", 0, third, ""},
      {"bgpcomm paths --community no-export --community 65000:100 $FILE", 0, first + first, ""},
      {"bgpcomm paths --community no-export --community 65000:200 $FILE", 0, "", ""},
      {"bgpcomm paths --numeric $FILE | head -1 | cut -f4", 0, "65000:100 65535:65281\n", ""},
      {"bgpcomm paths $FILE $FILE | wc -l", 0, "6\n", ""},
      {"bgpcomm paths --json $FILE | tail -1", 0,
       R"({"time":"2023-11-14T22:13:20Z","peer":"192.0.2.1","peerAs":64600,"prefixes":[],)"
       R"("standard":["65000:200"]})"
       "\n",
       ""},
      {"bgpcomm verify $FILE | sed 's/.*: //'", 0, "3 lists compared, 0 differ, 0 malformed\n", ""},
      {"bgpcomm decode c00808fde80064ffffff01 'D0 08:0004 00000000'", 0,
       "Community (8), flags 0xc0: 65000:100 no-export\n"
       "Community (8), flags 0xd0: internet\n",
       ""},
      {"bgpcomm decode --numeric c0 08 04 ff ff ff 01", 0,
       "Community (8), flags 0xc0: 65535:65281\n", ""},
      {"bgpcomm decode 40010100 c0630101", 0,
       "Origin (1), flags 0x40: 00\nUnknown attribute (99), flags 0xc0: 01\n", ""},
      {"bgpcomm decode --json c00804ffffff01", 0,
       R"({"type":8,"name":"Community","flags":192,"value":"ffffff01","standard":["no-export"]})"
       "\n",
       ""},
      {"bgpcomm describe BgpPathAttrFlag | head -2", 0,
       "Routing::Bgp::BgpPathAttrFlag\n  128 opt\n", ""},
      {"bgpcomm paths $FILE | head -0", 0, "", ""},

      {"bgpcomm paths $BROKEN | wc -l", 0, "3\n",
       "$BROKEN: ends inside a record, 6 of 12 octets (record 4, octet 218)"},
      {"bgpcomm paths $BROKEN >/dev/null", 1, "",
       "$BROKEN: ends inside a record, 6 of 12 octets (record 4, octet 218)"},
      {"bgpcomm paths /does/not/exist", 1, "", "/does/not/exist: No such file or directory"},
      {"bgpcomm paths - <$MALFORMED", 0, third + start + "malformed\n" + start + "-\n",
       "-: 3 malformed, the first attrLength (record 2, octet 62)"},
      {"bgpcomm paths --json $MALFORMED 2>&- | cut -d, -f5- | tail -2", 0,
       "\"standard\":[],\"malformed\":[\"attrLength\"]}\n"
       "\"standard\":[],\"malformed\":[\"attrLength\"]}\n",
       ""},
      {"bgpcomm summary - <&- | grep -A1 malformed | cut -c-9", 0, "  malform\n  seconds\n",
       "-: Bad file descriptor (record 1, octet 0)"},
      {"cd $(mktemp -d) && cp $FILE '[a,b]' && bgpcomm verify '[a,b]' && rm -r \"$PWD\"", 0,
       "./[a,b]: 3 lists compared, 0 differ, 0 malformed\n", ""},
      {"bgpcomm paths \"$(printf 'a\\033b\\nc')\"", 1, "",
       "a\\x1bb\\x0ac: No such file or directory"},
      {"bgpcomm paths --help | grep -c 'VALUE [.]'", 1, "0\n", ""},
      {"bgpcomm --version >/dev/full", 1, "", "standard output: No space left on device"},
      {"bgpcomm bogus", 2, "", "bogus is unknown; see bgpcomm --help"},
      {"bgpcomm verify /", 1, "", "/: Is a directory"},
      {"bgpcomm paths $FILE >/dev/full", 1, "", "standard output: No space left on device"},
      {"bgpcomm", 2, "", "A subcommand is required; see bgpcomm --help"},
      {"bgpcomm summary", 2, "", "FILE is required; see bgpcomm --help"},
      {"bgpcomm paths --community 65000:65536 $FILE", 2, "",
       "--community 65000:65536: neither two numbers up to 65535 with a colon between nor a known "
       "name"},
      {"bgpcomm decode 40010100 c0", 2, "Origin (1), flags 0x40: 00\n",
       "argument 2 (c0): neither a community, 16 or 40 digits in a piece, nor an attribute: too "
       "short for flags, type and length"},
      {"bgpcomm decode c00805fde8", 2, "",
       "argument 1 (c00805fde8): neither a community, 16 or 40 digits in a piece, nor an "
       "attribute: its length is 5, but 2 octets follow"},
      {"bgpcomm decode c0080xfde8", 2, "", "argument 1 (c0080xfde8): half an octet at character 5"},
      {"bgpcomm describe NoSuchType", 2, "",
       "NoSuchType: no such type, bgpcomm describe lists them"},
  };
  for (const auto& c : cases) {
    const ToolRun run = runTool(c.command);
    std::string err = c.err.empty() ? "" : "bgpcomm: " + c.err + '\n';
    if (const auto at = err.find("$BROKEN"); at != err.npos) err.replace(at, 7, broken_.name());
    EXPECT_EQ(run.exitCode, c.exitCode) << c.command;
    EXPECT_EQ(run.out, c.out) << c.command;
    EXPECT_EQ(run.err, err) << c.command;
  }
}

TEST_F(Tool, CountsFilesAndTheirTotal) {
  const ToolRun run = runTool("bgpcomm summary --json $FILE $FILE $BROKEN");
  EXPECT_EQ(run.exitCode, 1);
  nlohmann::json figures = nlohmann::json::parse(run.out);
  const auto expected = [](int files, int broken) {
    nlohmann::json one = {{"records", 3 * files},
                          {"paths", 3 * files},
                          {"malformed", broken},
                          {"malformedBy", nlohmann::json::object()},
                          {"standard",
                           {{"attributes", 3 * files},
                            {"communities", 6 * files},
                            {"distinctValues", 3},
                            {"distinctLists", 2}}}};
    if (broken) one["malformedBy"]["truncatedRecord"] = broken;
    return one;
  };
  ASSERT_EQ(figures["files"].size(), 3u);
  EXPECT_EQ(figures["files"][2]["file"], broken_.name());
  for (nlohmann::json* one : {&figures["files"][0], &figures["files"][2], &figures["total"]}) {
    EXPECT_TRUE((*one)["seconds"].is_number());
    one->erase("file");
    one->erase("seconds");
  }
  EXPECT_EQ(figures["files"][0], expected(1, 0));
  EXPECT_EQ(figures["files"][2], expected(1, 1));
  EXPECT_EQ(figures["total"], expected(3, 1));
}

TEST_F(Tool, ShowsFiguresToPeopleIn80Columns) {
  const ToolRun run = runTool("bgpcomm summary $BROKEN");
  for (const char* const line :
       {"\n  paths                          3\n", "\n    truncatedRecord              1\n",
        "\n    first (record 4, octet 218)\n", "\n  paths per list               1.5\n",
        "\n                   2  65000:100\n"
        "                   2  no-export\n"
        "                   1  65000:200\n"})
    EXPECT_NE(run.out.find(line), run.out.npos) << line << run.out;
  EXPECT_EQ(run.out.find('\033'), run.out.npos);
  EXPECT_LE(longestLine(run.out), 80u) << run.out;

  for (const char* const command : {"", "summary", "paths", "verify", "decode", "describe"}) {
    const ToolRun help = runTool("bgpcomm " + std::string(command) + " --help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.out.find("Example: bgpcomm "), help.out.npos) << command;
    EXPECT_LE(longestLine(help.out), 80u) << help.out;
  }
}

}  // namespace
}  // namespace bgpcomm

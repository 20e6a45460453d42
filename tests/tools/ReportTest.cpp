// The page that `report` writes. tests/report looks at it in a browser.
#include "RunTool.h"

namespace {

struct Report : ToolTest {
  /// Two peers have {64600:1}, one of them {64600:1 64600:2} too, with wrong flags; route targets
  /// in two lists, of one set. Of another file an attribute has 5 octets, and a record is no
  /// UPDATE.
  const NamedFile file_{
      "FILE", updateOf(sender(1), "c00804fc580001") + updateOf(sender(2), "c00804fc580001") +
                  updateOf(sender(2), "800808fc580001fc580002") +
                  updateOf(sender(1), "c01008 0002fc5800000064") +
                  updateOf(sender(2), "c01010 0002fc5800000064 030b000000000007")};
  const NamedFile bad_{"BAD", updateOf(sender(2), "c00805fc58000100") + mrtRecord(11, 0, "")};
  const Folder folder_{};
  const std::string page_ = folder_.file("page.html");

  void SetUp() override {
    ToolTest::SetUp();
    ::setenv("PAGE", page_.c_str(), 1);
  }
  /// The rows of a section's table, `|` between cells.
  static std::string rows(const std::string& section) {
    return " | sed -n '/<section id=\"" + section +
           "\"/,/<.section>/p' | sed -n 's/<tr><th scope=\"row\"[^>]*>//p' | "
           "sed 's/<.t[hr]>//g; s/<.td><td[^>]*>/|/g; s/<td[^>]*>/|/; s/<.td>//'";
  }
};

TEST_F(Report, CountsByListTypeValueKindSetAndPeer) {
  const std::string report = "bgpcomm report $FILE $BAD /nowhere -o - 2>/dev/null";
  const std::string text =
      "Community attribute, offset 4: 1 octet, expected a value of 4 (type 8, length 5, octet 0 of "
      "the path";
  expectRuns({
      // clang-format off
      {report + rows("sharing") + " | cut -d'|' -f1-6", "standard|3|4|2|2|1.5\nextended|2|3|2|2|1.0\n"
       "IPv6 extended|0|0|0|0|-\nlarge|0|0|0|0|-\n"},
      {report + rows("communities"),
       "64600:1|3|50.0%|Defined by AS64600|standard|standard|fc580001\n"
       "route-target-as2:64600:100|2|33.3%|Route Target (RFC4360 4)|route-target-as2|extended|0002fc5800000064\n"
       "64600:2|1|16.7%|Defined by AS64600|standard|standard|fc580002\n"
       "color:0:7|1|16.7%|Color (RFC9012 4.3; RFC9830 3)|color|extended|030b000000000007\n"},
      {report + rows("kinds") + " | cut -d'|' -f1,2,4,5,8",
       "standard|3|2|2|\nroute-target-as2|2|1|2|00/02\ncolor|1|1|1|03/0b\n"},
      {report + rows("route-targets"), "route-target-as2:64600:100|2|33.3%|2|extended\n"},
      {report + rows("peers"), "192.0.2.2|64602|4|66.7%|2|1|0|0|3|1\n192.0.2.1|64601|2|33.3%|1|1|0|0|2|0\n"},
      {report + rows("malformed") + " | cut -d'|' -f1,2", "attrLength|1\ncommunity attributes with wrong flags|1\nOSPF|1\n"},
      {report + " | grep -o 'records and .*end<'",
       "records and attributes, left out; 1 record skipped; 1 file not read to the end<\n"},
      {report + rows("files") + " | cut -d'|' -f2-6",
       "5|5|0||\n2|1|1|record 1, octet 0: " + text + "&#39;s attributes)|\n0|0|0||No such file or directory\n"},
      {"bgpcomm report $BAD -o - | grep -c 'there are no lists'", "1\n", 0,
       bad_.name() + ": 1 malformed, the first attrLength (record 1, octet 0): " + text + "'s attributes)"},
      {"bgpcomm report $FILE $FILE --top 1 -o -" + rows("communities") + " | cut -d'|' -f1,2",
       "64600:1|6\nroute-target-as2:64600:100|4\n"},
      {"bgpcomm report $FILE $FILE -o - | grep -c '<title>Communities of 2 files</title>'", "1\n"},
      // clang-format on
  });
}

TEST_F(Report, TextOfFilesIsNoMarkup) {
  ::setenv("FOLDER", folder_.name().c_str(), 1);
  expectRuns({
      // clang-format off
      {"cd $FOLDER; name=$(printf '<b a=\"\\047>&\\377\\033.mrt'); cp $FILE \"$name\"; bgpcomm report \"$name\" -o - | grep -o '<h1>.*'",
       "<h1>&lt;b a=&quot;&#39;&gt;&amp;\uFFFD\uFFFD.mrt</h1>\n"},
      {"printf '64600:1,</td><script>x</script>{{paths}}\\n' >$FOLDER/texts; bgpcomm report --describe $FOLDER/texts $FILE -o -" +
           rows("communities") + " | head -1 | cut -d'|' -f4",
       "&lt;/td&gt;&lt;script&gt;x&lt;/script&gt;{{paths}}\n"},
      {"bgpcomm report samples/rib.bird.mrt.gz --top 0 -o -" + rows("communities") +
           " | grep '^\\(NO_EXPORT\\|BLACKHOLE\\)|' | cut -d'|' -f2,4",
       "446|Not beyond the autonomous system or confederation (RFC 1997)\n277|Discard the traffic to the prefix (RFC 7999)\n"},
      // clang-format on
  });
}

TEST_F(Report, ThePageIsWholeOrNotThereAndReplacesNothingElse) {
  const std::string report = "bgpcomm report $FILE -o ", longName(256, 'n');
  const std::string size = std::to_string(std::filesystem::file_size(file_.name()));
  expectRuns({
      // clang-format off
      {"bgpcomm report $FILE", "", 2, "--output is required; see bgpcomm report --help"},
      {"echo '<!doctype HTML>old' >$PAGE; chmod 640 $PAGE; " + report + "$PAGE; head -c 21 $PAGE; stat -c %a $PAGE",
       "<!DOCTYPE html>\n<html640\n"},
      {"cp $PAGE $PAGE.2; (ulimit -f 8; " + report + "$PAGE); e=$?; cmp $PAGE $PAGE.2; rm $PAGE.2; exit $e", "", 1,
       page_ + ": cannot be written: File too large"},
      {"echo mine >$PAGE; " + report + "$PAGE", "", 1, page_ + ": is not an HTML page, and is not replaced"},
      {"cat $PAGE; : >$PAGE; " + report + "$PAGE; tail -1 $PAGE", "mine\n</html>\n"},
      {report + "/dev/null", "", 1, "/dev/null: is not a regular file"},
      {report + "/nowhere/page", "", 1, "/nowhere/page: cannot be written: No such file or directory"},
      {report + "$PAGE/", "", 1, page_ + "/: cannot be written: Not a directory"},
      {report + longName, "", 1, longName + ": cannot be written: File name too long"},
      {report + "$FILE", "", 2, "--output " + file_.name() + ": is one of the files to be read"},
      {"rm $PAGE; bgpcomm report /nowhere -o $PAGE; e=$?; ls $PAGE 2>&-; exit $e", "", 1, "/nowhere: No such file or directory"},
      {"(cat $FILE; printf xx) | bgpcomm report - -o $PAGE; e=$?; grep -o '>ends inside a record\\|</html>' $PAGE; rm $PAGE; exit $e", ">ends inside a record\n</html>\n", 1,
       "standard input: ends inside a record, 2 of 12 octets (record 6, octet " + size + ")"},
      // clang-format on
  });
  EXPECT_EQ(folder_.files(), "");
}

}  // namespace

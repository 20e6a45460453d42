// The command line, the standard descriptors, messages, signals and files: how the tool meets its
// user and the system.
#include "tools/bgpcomm/Terminal.h"

#include <poll.h>
#include <pty.h>

#include <csignal>
#include <thread>

#include "RunTool.h"
#include "tools/bgpcomm/Progress.h"
#include "tools/bgpcomm/Reading.h"

namespace {

struct Terminal : ToolTest {
  const Bytes onePath_ = path("c00804fde80064", "180a0102");
  const NamedFile file_{"FILE", onePath_};
};

TEST_F(Terminal, AnEqualSignBelongsToTheValue) {
  const NamedFile other("OTHER", "x");
  expectRuns({
      // clang-format off
      {"bgpcomm save --to= $OTHER $FILE; echo $?; cat $OTHER", "2\nx", 0, "--to: its value is empty; see bgpcomm --help"},
      {"bgpcomm --version >/dev/null", ""},
      {"cd $(mktemp -d) && cp $FILE ./--=x= && cp $FILE ./--a= && bgpcomm verify -- --a= --=x=\nrm -r $PWD",
       "--a=: 1 lists compared, 0 differ, 0 malformed\n--=x=: 1 lists compared, 0 differ, 0 malformed\n"},
      // clang-format on
  });
}

TEST_F(Terminal, AClosedStandardDescriptorIsNoOtherFile) {
  expectRuns({
      // clang-format off
      {"bgpcomm verify $FILE - <&- | cut -d: -f2", " 1 lists compared, 0 differ, 0 malformed\n"
       " 0 lists compared, 0 differ, 0 malformed\n", 0, "standard input: Bad file descriptor (record 1, octet 0)"},
      {"bgpcomm verify $FILE >&-", "", 1, "standard output: Bad file descriptor"},
      {"bgpcomm verify $FILE >&- 2>&-", "", 1},
      // A reader that has gone away is no fault.
      {"{ sleep 0.2; bgpcomm paths $FILE; echo $? >$FILE.code; } | true\ncat $FILE.code; rm $FILE.code",
       "0\n"},
      {"mkfifo $FILE.in\n\"$BGPCOMM\" verify $FILE.in <&- >&- 2>&- & exec 3>$FILE.in\n"
       "cd /proc/$!/fd && ls -l 0 1 2 | grep -c /dev/null; kill $!; rm $FILE.in", "3\n"},
      // clang-format on
  });
}

TEST(Visible, EscapesWhatATerminalMightObey) {
  const std::string printable =
      "plain ~ \\x\u00a0\u061b\u061d\u07ff\u0800\u200d\u2010\u2027\u202f\u2065\u206a\ud7ff\ue000"
      "\uffff\U00010000\U0010ffff";
  const std::string escaped[] = {// clang-format off
      {"\0\t\x1f\x7f", 4}, std::string(10'000, '\n'),
      // Controls, marks of direction, ends of lines.
      "\u0080\u009b\u009f", "\u061c\u200e\u200f", "\u2028\u202e", "\u2066\u2069",
      // No character begins so, or it is cut short.
      "\x9b", "\xc3", "\xe2\x82", "\xf0\x9f\x98",
      // Longer than need be.
      "\xc1\xbf", "\xe0\x82\x9b", "\xf0\x80\x82\x9b",
      // Halves of a pair, and beyond the last.
      "\xed\xa0\x80", "\xed\xbf\xbf", "\xf4\x90\x80\x80", "\xf8\x88\x80\x80\x80"};
  // clang-format on
  for (const std::string& text : escaped) {
    std::string shown;
    for (const char octet : text) shown += "\\x" + hex(view({octet}));
    testing::internal::CaptureStderr();
    printError("a", text, printable);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "bgpcomm: a" + shown + printable + '\n');
    EXPECT_EQ(visible(text + printable), shown + printable);
  }
}

/// A terminal, and everything that was written to it.
struct Screen {
  explicit Screen(unsigned short columns = 80) {
    const winsize size{24, columns, 0, 0};
    ::openpty(&descriptor, &slave, nullptr, nullptr, &size);
    ::setenv("SCREEN", ::ptsname(descriptor), 1);
    ::setenv("TERM", "vt100", 1);
  }
  ~Screen() {
    ::close(descriptor);
    ::close(slave);
  }
  /// Whether the text comes within ten seconds.
  bool shows(const std::string& text) {
    pollfd waiting{descriptor, POLLIN, 0};
    while (got.find(text) == got.npos && ::poll(&waiting, 1, 10'000) > 0) {
      char octets[4096];
      const auto size = ::read(descriptor, octets, sizeof octets);
      got.append(octets, std::size_t(std::max<ssize_t>(0, size)));
    }
    return got.find(text) != got.npos;
  }

  int descriptor, slave;
  std::string got;
};

TEST(ProgressLine, ShowsHowFarAFileIsReadAndGoesWithItsObject) {
  const TemporaryFile file(Bytes(8 << 20, 'x'));
  Screen screen;
  const int before = ::dup(STDERR_FILENO);
  ::dup2(screen.slave, STDERR_FILENO);
  std::signal(SIGHUP, SIG_IGN);
  const std::string name = file.name().substr(file.name().rfind('/') + 1), gone = "\r\033[K";
  {
    Input input(file.name());
    Progress progress(file.name(), input, false);
    // A quarter of the file is read ahead meanwhile.
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    for (U64 paths = 1; paths <= 256; ++paths) progress.update(paths);
    EXPECT_TRUE(screen.shows('\r' + name + " [######..................] 25 % ")) << screen.got;
    EXPECT_TRUE(screen.shows(" paths/s, 4 s left\033[K")) << screen.got;
    // Figures that do not fit are left out, and the start of the name.
    const winsize narrow{24, 40, 0, 0};
    ::ioctl(screen.slave, TIOCSWINSZ, &narrow);
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    for (U64 paths = 1; paths <= 256; ++paths) progress.update(paths);
    EXPECT_TRUE(screen.shows('\r' + name.substr(name.size() - 7) +
                             " [######..................] 25 %\033[K"))
        << screen.got;
  }
  EXPECT_TRUE(screen.shows(gone));
  printError("last");
  ::dup2(before, STDERR_FILENO);
  EXPECT_TRUE(screen.shows("25 %\033[K" + gone + "bgpcomm: last")) << "it went once";
  EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST_F(Terminal, LinesFitItsWidthAndSayWhatAPipeGets) {
  const NamedFile names(
      "NAMES",
      "64600:100,Learned from 東京の顧客, who pays for transit in that region\n"
      "64500:nnn,One of so many numbers that mean nothing to anybody else here\n");
  const std::string sample = " samples/rib.bird.mrt.gz", explain = " --explain --describe $NAMES ";
  ::setenv("NO_COLOR", "1", 1);
  // Without what differs from run to run: times, and the memory that a seed makes.
  const auto wordsOf = [](const std::string& text) {
    std::set<std::string> all;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      const auto has = [&line](const char* word) { return line.find(word) != line.npos; };
      if (has("seconds") || has("octets, ") || has("saved")) continue;
      std::istringstream words(line);
      all.insert(std::istream_iterator<std::string>(words), {});
    }
    return all;
  };
  const auto columnsOf = [](const std::string& line) {
    std::size_t columns = 0;
    for (const U8 octet : line) {
      if (octet == '\t')
        columns = columns / 8 * 8 + 8;
      else if (octet < 0x80 || octet >= 0xC0)  // the first of a character; Japanese ones are wide
        columns += octet < 0xE3 ? 1 : 2;
    }
    return columns;
  };
  for (const unsigned short columns : {62, 80, 140})
    for (const std::string& command :
         {"summary" + explain + sample, "top" + sample, "top --by list --limit 9" + sample,
          "values" + sample, "paths --group-by value" + explain + sample,
          "paths --limit 50" + sample, std::string("faults samples/updates.thursday.mrt"),
          std::string("watch-rt samples/updates.thursday.mrt"),
          "diff" + explain + "samples/updates.wednesday.mrt samples/updates.thursday.mrt",
          std::string("kinds mac-mobility"), std::string("help"), std::string("kinds --help"),
          "spread 11.0.0.0/16 --more-specific" + sample, "lint --without route-target" + sample,
          "decode 0xfc580064" + explain}) {
      SCOPED_TRACE(command + ' ' + std::to_string(columns));
      Screen screen(columns);
      std::thread run([&] { runTool("bgpcomm " + command + " >$SCREEN; echo END >$SCREEN"); });
      EXPECT_TRUE(screen.shows("END"));
      run.join();
      std::erase(screen.got, '\r');
      screen.got.erase(screen.got.rfind("END"));
      std::istringstream lines(screen.got);
      for (std::string line; std::getline(lines, line);)
        EXPECT_LE(columnsOf(line), columns) << line;
      EXPECT_EQ(wordsOf(screen.got), wordsOf(runTool("bgpcomm " + command).out));
    }
  ::unsetenv("NO_COLOR");
}

TEST_F(Terminal, ColoursAreForTerminalsUnlessForbidden) {
  const std::string plain = "fde80064", strong = "\033[1m" + plain + "\033[0m";
  const std::string none = "unset NO_COLOR;", empty = "export NO_COLOR=;",
                    one = "export NO_COLOR=1;";
  const std::tuple<std::string, std::string, std::string, std::string> cases[] = {
      {none, "", strong, plain},
      {empty, "", strong, plain},
      {one, "", plain, plain},
      {none, " --color never", plain, plain},
      {none, " --color always", strong, strong},
      {one, " --color always", strong, strong}};
  for (const auto& [environment, option, onTerminal, inPipe] : cases) {
    SCOPED_TRACE(environment + option);
    const std::string command = environment + " bgpcomm decode " + plain + option;
    Screen screen;
    runTool(command + " >$SCREEN; echo END >$SCREEN");
    EXPECT_TRUE(screen.shows("END"));
    EXPECT_TRUE(screen.got.starts_with(onTerminal + '\r')) << screen.got;
    EXPECT_TRUE(runTool(command).out.starts_with(inPipe + '\n'));
  }
}

TEST_F(Terminal, TheProgressLineFitsAndIsGoneWhenASignalEndsTheTool) {
  Bytes withdrawals;
  while (withdrawals.size() < 600'000) withdrawals += messageRecord(update("", "", octets("00")));
  const NamedFile file("WITHDRAWALS", withdrawals);
  std::string faces;
  for (int i = 0; i < 40; ++i) faces += "\U0001f600";
  const std::pair<int, std::string> cases[] = {{SIGTERM, std::string(99, 'a')}, {SIGHUP, faces}};
  // Drawn only where nobody else writes to that screen.
  const std::string later = "(cat $WITHDRAWALS; sleep 0.2; cat $WITHDRAWALS)";
  const std::string slow = later + " | bgpcomm ", to = " 2>$SCREEN ",
                    read = to + "| cat >/dev/null";
  const std::string job = "setsid -c bash -mc '$BGPCOMM summary <" + later + " >/dev/null";
  const std::pair<std::string, bool> places[] = {
      // clang-format off
      {slow + "summary -" + to, true}, {slow + "summary -" + to + ">$SCREEN", true},
      {slow + "summary -" + read, true}, {slow + "summary $FILE -" + read, false},
      {slow + "summary --no-progress -" + to, false}, {"export TERM=dumb; " + slow + "summary -" + to, false},
      {job + "' <$SCREEN" + to, true}, {job + " & wait' <$SCREEN" + to, false},
      {slow + "paths -" + to, true}, {slow + "paths -" + to + ">$SCREEN", false},
      {slow + "paths -" + read, false}, {slow + "paths --count -" + read, true},
      {slow + "faults -" + read, false}, {slow + "watch-rt -" + read, false},
      {slow + "diff $FILE -" + read, false}};
  // clang-format on
  for (const auto& [command, drawn] : places) {
    Screen screen;
    EXPECT_EQ(runTool(command + "; echo END >$SCREEN").exitCode, 0);
    EXPECT_TRUE(screen.shows("END"));
    EXPECT_EQ(screen.got.find("paths/s") != screen.got.npos, drawn) << command << screen.got;
  }
  for (const auto& [signal, name] : cases) {
    ::setenv("PIPE", (file.name() + name).c_str(), 1);
    Screen screen;
    FILE* const script = ::popen(
        "exec 2>&-; mkfifo $PIPE\n"
        "(cat $WITHDRAWALS; sleep 0.2; cat $WITHDRAWALS; exec sleep 9) >$PIPE &"
        "\"$BGPCOMM\" summary $PIPE >/dev/null 2>$SCREEN & echo $!\n"
        "wait $!; echo $?; rm $PIPE",
        "r");
    int tool = 0, code = 0;
    ASSERT_EQ(std::fscanf(script, "%d", &tool), 1);
    EXPECT_TRUE(screen.shows("paths/s\033[K"));
    // As wide as the terminal but for the last column; no character is cut.
    const std::string line = screen.got.substr(0, screen.got.find('\033'));
    EXPECT_EQ(line.substr(0, 5), '\r' + name.substr(0, 4));
    EXPECT_TRUE(name == faces ? line.size() <= 80 : line.size() == 80) << line;
    ::kill(tool, signal);
    ASSERT_EQ(std::fscanf(script, "%d", &code), 1);
    ::pclose(script);
    EXPECT_EQ(code, 128 + signal);
    EXPECT_TRUE(screen.shows("paths/s\033[K\r\033[K")) << signal;
  }
}

// --- Files as they are read.

TEST(Reading, OutOfMemoryEndsAFile) {
  const Bytes good = messageRecord(update(octets("40010100"), ""));
  const TemporaryFile file(good + good + good);
  testing::internal::CaptureStderr();
  const auto visit = [](const Path&, const CommunityValues&, Position position) {
    if (position.record == 2) throw std::bad_alloc();
  };
  const ReadResult result = readFile(file.name(), visit);
  // A record of 12 + 20 + 23 + 4 octets stands before.
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "bgpcomm: " + file.name() + ": out of memory (record 2, octet 59)\n");
  EXPECT_TRUE(result.failed && result.records == 2);
}

using Files = ToolTest;

TEST_F(Files, FaultsAndPrefixesAreShown) {
  const Bytes origin = octets("40010100"), bad = mrtRecord(16, 4, "");
  const TemporaryFile file(
      bad + mrtRecord(16, 9, session() + update(origin, octets("00000007 180a0102"))) + bad +
      messageRecord(update(octets("c01008 4004fde84e000000"), octets("080a 180a"))));
  const std::string name = ' ' + file.name(), sample = "samples/rib.bird.mrt.gz";
  const std::string two = file.name() +
                          ": 2 malformed, the first badRecord (record 1, octet 0): fields that do "
                          "not fit (type 16, subtype 4, length 0)";
  const std::string early = "standard input: gzip data end too early (record 94, octet 11125)";
  expectRuns({
      // clang-format off
      {"bgpcomm paths" + name + " | cut -f3", "10.1.2.0/24#7\n10.0.0.0/8 ?\n", 0, two},
      {"bgpcomm paths --json" + name + " | grep -o '.prefixes.*,.standard.:'",
       R"("prefixes":[{"prefix":"10.1.2.0/24","pathId":7}],"standard":)" "\n"
       R"("prefixes":[{"prefix":"10.0.0.0/8"}],"prefixesCutShort":true,"standard":)" "\n", 0, two},
      {"bgpcomm verify" + name, file.name() + ": 1 lists compared, 0 differ, 2 malformed\n", 0, two},
      {"head -c 3000 " + sample + " | bgpcomm paths - | wc -l", "113\n", 0, early},
      {"head -c 3000 " + sample + " | bgpcomm summary - | grep compression", "    compression                  1\n", 0, early},
      {"bgpcomm summary - <&- | grep malformed", "  malformed                      0\n", 0,
       "standard input: Bad file descriptor (record 1, octet 0)"},
      {"bgpcomm summary " + sample + " | grep -c '^ *standard *extended IPv6 extended *large$'", "1\n"},
      // clang-format on
  });
}

TEST(HeldLists, CountPathsAndTheMemoryThatTheyShare) {
  const CommunityTables tables(sharedParser());
  const auto others = listTypes[0].makeHeld(tables);
  others->hold(view(octets("fde803e7")));
  const auto held = listTypes[0].makeHeld(tables);
  for (U32 path = 0; path < 42; ++path) held->hold(view(number(0xFDE80000 + path % 12, 4)));
  ListFigures figures, one;
  held->figures(figures, 10);
  others->figures(one, 10);
  EXPECT_EQ(figures.unsharedOctets, 42 * one.unsharedOctets);
  const U64 empty = tables.of<Routing::Bgp::CommList>().lists()->dedupHashTable()->octets();
  EXPECT_GT(figures.internedOctets, empty);
  EXPECT_GT(one.internedOctets, figures.internedOctets) << "the other's lists are not its own";
}

/// The values found, by list type, and the faults: `standard:fde80064 attrLength=1 `
std::string communities(const char* attributes) {
  const Bytes block = octets(attributes);
  const CommunityValues values = findCommunities(view(block));
  std::string text;
  for (std::size_t type = 0; type < listTypeCount; ++type) {
    const std::string key(listTypes[type].key);
    if (!values[type].empty()) text += key + ':' + hex(values[type]) + ' ';
  }
  for (std::size_t i = 0; i < faultNames.size(); ++i)
    if (const U64 count = values.faults[Fault(i)])
      text += std::string(faultNames[i]) + '=' + std::to_string(count) + ' ';
  return text + (values.wrongFlags ? "wrongFlags=" + std::to_string(values.wrongFlags) : "");
}

TEST(Reading, FindsChecksAndCountsAttributes) {
  const std::pair<const char*, const char*> cases[] = {
      // clang-format off
      {"40010100 40020a 02020000fc580000fc59", ""}, {"d0080004fde80064", "standard:fde80064 "},
      {"c00805fde8006400 c0100400020000 c01900 c02001ff",
       "attrLength=4 "},
      {"c00804fde80064 c00804fde80065 c00803fde800", "standard:fde80064 "},  // the first counts
      {"c00800 c00804fde80065", "attrLength=1 "},         // even so
      {"800804fde80064 400804fde80065 e01008030b000000000007 402001ff",
       "standard:fde80064 extended:030b000000000007 attrLength=1 wrongFlags=2"},
      {"c00804fde80064 c02018 00", "standard:fde80064 attrOverrun=1 "},
      {"c00804fde80064 c00808 00", "standard:fde80064 attrOverrun=1 "},
      {"c00804fde80064 c020", "standard:fde80064 attrOverrun=1 "},
      {"d00800", "attrOverrun=1 "}, {"d008ffff fde80064", "attrOverrun=1 "},
      {"c0100800020000fc580001 c01914000220010db80000000000000000000000010007c0200c0000fc580000000100000002",
       "extended:00020000fc580001 ipv6Extended:000220010db80000000000000000000000010007 "
       "large:0000fc580000000100000002 "},
      // clang-format on
  };
  for (const auto& [attributes, found] : cases)
    EXPECT_EQ(communities(attributes), found) << attributes;
}

}  // namespace

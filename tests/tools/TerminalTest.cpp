// The command line, the standard descriptors, messages and signals: how the tool meets its user.
#include "tools/bgpcomm/Terminal.h"

#include <poll.h>
#include <pty.h>

#include <csignal>
#include <thread>

#include "RunTool.h"
#include "tools/bgpcomm/Progress.h"

namespace bgpcomm {
namespace {

Bytes onePath() { return messageRecord(update(octets("c00804fde80064"), octets("180a0102"))); }

struct Terminal : ToolTest {
  Terminal() { ::setenv("FILE", file_.name().c_str(), 1); }
  const TemporaryFile file_{onePath()};
};

TEST_F(Terminal, AnEmptyValueIsRefused) {
  const TemporaryFile other("x");
  ::setenv("OTHER", other.name().c_str(), 1);
  const std::string empty = ": its value is empty; see bgpcomm --help";
  expectRuns({
      // clang-format off
      {"bgpcomm save --to= $OTHER $FILE; echo $?; cat $OTHER", "2\nx", 0, "--to" + empty},
      {"bgpcomm save $FILE --to ''", "", 2, "--to: its value is empty; see bgpcomm save --help"},
      {"bgpcomm paths --community= no-export $FILE", "", 2, "--community" + empty},
      {"bgpcomm decode --format= ui 40010100", "", 2, "--format" + empty}, {"bgpcomm --version >/dev/null", ""},
      {"bgpcomm decode --json= 40010100", "", 2, "--json" + empty},
      {"cd $(mktemp -d) && cp $FILE ./--=x= && cp $FILE ./--a= && bgpcomm verify -- --a= --=x=\nrm -r $PWD",
       "--a=: 1 lists compared, 0 differ, 0 malformed\n--=x=: 1 lists compared, 0 differ, 0 malformed\n"},
      {"bgpcomm paths --community=65000:= $FILE", "", 2,
       "--community 65000:=: at 6: \"=\": expected a decimal number below 65536"},
      // clang-format on
  });
}

TEST_F(Terminal, AClosedStandardDescriptorIsNoOtherFile) {
  expectRuns({
      // clang-format off
      {"bgpcomm verify $FILE - <&- | cut -d: -f2", " 1 lists compared, 0 differ, 0 malformed\n"
       " 0 lists compared, 0 differ, 0 malformed\n", 0, "-: Bad file descriptor (record 1, octet 0)"},
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
class Screen {
 public:
  Screen() {
    ::openpty(&descriptor_, &slave_, nullptr, nullptr, nullptr);
    ::setenv("SCREEN", ::ptsname(descriptor_), 1);
  }
  ~Screen() {
    ::close(descriptor_);
    ::close(slave_);
  }
  /// Whether the text comes within ten seconds.
  bool shows(const std::string& text) {
    pollfd waiting{descriptor_, POLLIN, 0};
    while (got_.find(text) == got_.npos && ::poll(&waiting, 1, 10'000) > 0) {
      char octets[4096];
      got_.append(octets,
                  std::size_t(std::max<ssize_t>(0, ::read(descriptor_, octets, sizeof octets))));
    }
    return got_.find(text) != got_.npos;
  }
  const std::string& got() const { return got_; }
  int slave() const { return slave_; }

 private:
  int descriptor_, slave_;
  std::string got_;
};

TEST(ProgressLine, ShowsHowFarAFileIsReadAndGoesWithItsObject) {
  const TemporaryFile file(Bytes(8 << 20, 'x'));
  Screen screen;
  const int before = ::dup(STDERR_FILENO);
  ::dup2(screen.slave(), STDERR_FILENO);
  std::signal(SIGHUP, SIG_IGN);
  const std::string name = file.name().substr(file.name().rfind('/') + 1), gone = "\r\033[K";
  {
    Input input(file.name());
    Progress progress(file.name(), input, true);
    // A quarter of the file is read ahead meanwhile.
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    for (U64 paths = 1; paths <= 256; ++paths) progress.update(paths);
    EXPECT_TRUE(screen.shows('\r' + name + " [######..................] 25 % ")) << screen.got();
    EXPECT_TRUE(screen.shows(" paths/s, 4 s left\033[K")) << screen.got();
  }
  EXPECT_TRUE(screen.shows(gone));
  printError("last");
  ::dup2(before, STDERR_FILENO);
  EXPECT_TRUE(screen.shows("left\033[K" + gone + "bgpcomm: last")) << "it went once";
  EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST_F(Terminal, TheProgressLineFitsAndIsGoneWhenASignalEndsTheTool) {
  Bytes paths;
  while (paths.size() < 600'000) paths += onePath();
  const TemporaryFile file(paths);
  ::setenv("PATHS", file.name().c_str(), 1);
  std::string faces;
  for (int i = 0; i < 40; ++i) faces += "\U0001f600";
  const std::pair<int, std::string> cases[] = {{SIGTERM, std::string(99, 'a')}, {SIGHUP, faces}};
  for (const auto& [signal, name] : cases) {
    ::setenv("PIPE", (file.name() + name).c_str(), 1);
    Screen screen;
    FILE* const script = ::popen(
        "exec 2>&-; mkfifo $PIPE\n"
        "(cat $PATHS; sleep 0.2; cat $PATHS; exec sleep 9) >$PIPE &"
        "\"$BGPCOMM\" summary $PIPE >/dev/null 2>$SCREEN & echo $!\n"
        "wait $!; echo $?; rm $PIPE",
        "r");
    int tool = 0, code = 0;
    ASSERT_EQ(std::fscanf(script, "%d", &tool), 1);
    EXPECT_TRUE(screen.shows("paths/s\033[K"));
    // As wide as the terminal but for the last column; no character is cut.
    const std::string line = screen.got().substr(0, screen.got().find('\033'));
    EXPECT_EQ(line.substr(0, 5), '\r' + name.substr(0, 4));
    EXPECT_TRUE(name == faces ? line.size() <= 80 : line.size() == 80) << line;
    ::kill(tool, signal);
    ASSERT_EQ(std::fscanf(script, "%d", &code), 1);
    ::pclose(script);
    EXPECT_EQ(code, 128 + signal);
    EXPECT_TRUE(screen.shows("paths/s\033[K\r\033[K")) << signal;
  }
}

}  // namespace
}  // namespace bgpcomm

// Runs the tool as its user does.
#pragma once

#include <sys/wait.h>

#include "tests/mrt/TestOctets.h"
#include "tools/bgpcomm/ReaderNames.h"

namespace bgpcomm {

struct ToolRun {
  int exitCode;
  std::string out, err;
};

/// Runs a line in the shell, which sees the tool as `bgpcomm`.
inline ToolRun runTool(const std::string& commandLine) {
  const TemporaryFile out, err;
  const std::string script = "bgpcomm() { \"$BGPCOMM\" \"$@\"; }\n{ " + commandLine + "\n} >" +
                             out.name() + " 2>" + err.name();
  const int status = std::system(script.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out.content(), err.content()};
}

struct ToolCase {
  std::string command, out;
  int exitCode = 0;
  std::string err = "";  ///< without the "bgpcomm: " before and the newline behind
};

inline void expectRuns(std::initializer_list<ToolCase> cases) {
  for (const ToolCase& c : cases) {
    const ToolRun run = runTool(c.command);
    EXPECT_EQ(run.exitCode, c.exitCode) << c.command;
    EXPECT_EQ(run.out, c.out) << c.command;
    EXPECT_EQ(run.err, c.err.empty() ? "" : "bgpcomm: " + c.err + '\n') << c.command;
  }
}

/// Skips its tests where there is no tool.
struct ToolTest : testing::Test {
  void SetUp() override {
    if (!std::getenv("BGPCOMM")) GTEST_SKIP() << "$BGPCOMM does not name the tool";
    ::setenv("XDG_CONFIG_HOME", "/nonexistent", 1);  // no descriptions of the user's own
  }
};

}  // namespace bgpcomm

// Runs the tool as its user does.
#pragma once

#include <sys/wait.h>

#include "TestOctets.h"

namespace bgpcomm {

struct ToolRun {
  int exitCode;
  std::string out, err;
};

inline bool toolIsThere() { return std::getenv("BGPCOMM") != nullptr; }

/// By the shell, which sees the tool as `bgpcomm`.
inline ToolRun runTool(const std::string& commandLine) {
  const TemporaryFile out, err;
  const std::string script = "bgpcomm() { \"$BGPCOMM\" \"$@\"; }\n{ " + commandLine + "\n} >" +
                             out.name() + " 2>" + err.name();
  const int status = std::system(script.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out.content(), err.content()};
}

}  // namespace bgpcomm

// Runs the tool as its user does.
#pragma once

#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <set>

#include "tests/Rows.h"
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

/// Lines of JSON that are written with single quotes.
inline std::string json(std::string lines) {
  std::ranges::replace(lines, '\'', '"');
  return lines;
}

inline void expectRuns(std::initializer_list<ToolCase> cases) {
  for (const ToolCase& c : cases) {
    const ToolRun run = runTool(c.command);
    EXPECT_EQ(run.exitCode, c.exitCode) << c.command;
    EXPECT_EQ(run.out, c.out) << c.command;
    EXPECT_EQ(run.err, c.err.empty() ? "" : "bgpcomm: " + c.err + '\n') << c.command;
  }
}

/// Arguments of a command, and what it says.
inline void expectRuns(const std::string& command,
                       std::initializer_list<std::pair<std::string, std::string>> cases) {
  for (const auto& [arguments, out] : cases) expectRuns({{command + arguments, out}});
}

/// Rows of arguments and of the message with which they are refused.
inline void expectRefused(const char* table) {
  for (const Cells& row : rowsOf(table)) expectRuns({{"bgpcomm " + row[0], "", 2, row.at(1)}});
}

/// A file that commands find under the name of a variable.
struct NamedFile : TemporaryFile {
  explicit NamedFile(const char* variable, const Bytes& content = "") : TemporaryFile(content) {
    ::setenv(variable, name().c_str(), 1);
  }
};

/// A folder that goes with its files.
class Folder {
 public:
  ~Folder() { std::filesystem::remove_all(name_); }
  const std::string& name() const { return name_; }
  /// A file's path, which is written unless there is no content.
  std::string file(const std::string& name, const Bytes& content = "") const {
    if (!content.empty()) std::ofstream(name_ + '/' + name, std::ios::binary) << content;
    return name_ + '/' + name;
  }
  /// Each with its size.
  std::string files() const {
    std::string text;
    for (const auto& one : std::filesystem::directory_iterator(name_))
      text += one.path().filename().string() + ' ' + std::to_string(one.file_size()) + ' ';
    return text;
  }

 private:
  std::string made_ = testing::TempDir() + "bgpcomm-XXXXXX";
  const std::string name_ = ::mkdtemp(made_.data());
};

/// A message's sender, and the record's subtype.
struct Sender {
  std::string peer = "c0000201";
  U32 as = 64600;
  U16 subtype = 4;
};
/// 192.0.2.N, of AS 64600 + N.
inline Sender sender(U8 n, U16 subtype = 4) {
  return {"c00002" + hex(view(number(n, 1))), 64600u + n, subtype};
}
inline Bytes updateOf(const Sender& from, const std::string& attributes,
                      const std::string& nlri = "", const std::string& withdrawn = "") {
  const Bytes message = update(octets(attributes), octets(nlri), octets(withdrawn));
  return mrtRecord(16, from.subtype, session(octets(from.peer), 4, from.as) + message);
}
/// So many seconds after 2023-11-14T22:13:20Z.
inline Bytes after(U8 seconds, Bytes record) {
  record[3] = char(seconds);
  return record;
}
/// The update of a path of 192.0.2.1, AS 64600.
inline Bytes path(const std::string& attributes, const std::string& nlri = "",
                  const std::string& withdrawn = "") {
  return updateOf({}, attributes, nlri, withdrawn);
}

/// Skips its tests where there is no tool.
struct ToolTest : testing::Test {
  void SetUp() override {
    if (!std::getenv("BGPCOMM")) GTEST_SKIP() << "$BGPCOMM does not name the tool";
    ::setenv("XDG_CONFIG_HOME", "/nonexistent", 1);  // no descriptions of the user's own
  }
};

}  // namespace bgpcomm

using namespace bgpcomm;

// The page of questions says what the tool answers.
#include <fstream>

#include "RunTool.h"

namespace bgpcomm {
namespace {

class Questions : public ToolTest {};

TEST_F(Questions, ThePageIsTrue) {
  std::ifstream page("docs/questions.md");
  std::string command, answer;
  int asked = 0;
  const auto ask = [&] {
    if (command.empty()) return;
    const ToolRun run = runTool(command);
    EXPECT_EQ(run.exitCode, 0) << command << '\n' << run.err;
    EXPECT_TRUE(!answer.empty() && run.out.starts_with(answer)) << command << '\n' << run.out;
    ++asked;
    command = answer = "";
  };
  const std::string indent = "    ", prompt = indent + "$ ";
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with(prompt)) {
      ask();
      command = line.substr(prompt.size());
    } else if (line.starts_with(indent) && !command.empty()) {
      answer += line.substr(indent.size()) + '\n';
    } else {
      ask();
    }
  }
  EXPECT_GE(asked, 10);
}

}  // namespace
}  // namespace bgpcomm

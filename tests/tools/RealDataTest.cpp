// The tool's figures on other people's dumps, against those that another program computed.

#include <filesystem>
#include <nlohmann/json.hpp>

#include "RunTool.h"

namespace bgpcomm {
namespace {

/// The folder with `expected.json`; empty when there is none.
std::filesystem::path dataFolder() {
  const char* const named = std::getenv("BGPCOMM_DATA");
  const std::filesystem::path folder = named ? named : "../shared/data";
  return exists(folder / "expected.json") ? folder : "";
}

class RealData : public testing::Test {
 protected:
  void SetUp() override {
    if (!toolIsThere()) GTEST_SKIP() << "$BGPCOMM does not name the tool";
    if (folder_.empty()) GTEST_SKIP() << "no expected.json in $BGPCOMM_DATA, nor in ../shared/data";
    std::ifstream(folder_ / "expected.json") >> expected_;
    ASSERT_FALSE(expected_.empty());
  }

  std::filesystem::path folder_ = dataFolder();
  nlohmann::json expected_;
};

TEST_F(RealData, FiguresAreAsExpected) {
  for (const auto& [name, expected] : expected_.items()) {
    const ToolRun run = runTool("bgpcomm summary --json '" + (folder_ / name).string() + "'");
    const nlohmann::json summary = nlohmann::json::parse(run.out, nullptr, false);
    ASSERT_TRUE(summary.contains("files")) << name << run.err;
    const nlohmann::json& figures = summary["files"][0];
    for (const char* const key : {"records", "paths", "malformed", "malformedBy"})
      EXPECT_EQ(figures[key], expected[key]) << name << ' ' << key;
    ASSERT_TRUE(figures.contains("standard"));
    for (const auto& [kind, ofKind] : expected.items()) {
      if (!ofKind.contains("distinctLists") || !figures.contains(kind)) continue;
      for (const auto& [key, value] : figures[kind].items())
        EXPECT_EQ(value, ofKind[key]) << name << ' ' << kind << ' ' << key;
    }
    const bool cutShort = expected["malformedBy"].contains("truncatedRecord") ||
                          expected["malformedBy"].contains("compression");
    EXPECT_EQ(run.exitCode, cutShort ? 1 : 0) << name;
  }
}

TEST_F(RealData, EveryListGoesBackToTheWireAsItCame) {
  for (const auto& [name, expected] : expected_.items()) {
    const ToolRun run = runTool("bgpcomm verify '" + (folder_ / name).string() +
                                "' | sed 's/.*: //; s/,\\([0-9]\\)/\\1/g'");
    const std::string lists = expected["standard"]["attributes"].dump();
    EXPECT_EQ(run.out,
              lists + " lists compared, 0 differ, " + expected["malformed"].dump() + " malformed\n")
        << name;
  }
}

}  // namespace
}  // namespace bgpcomm

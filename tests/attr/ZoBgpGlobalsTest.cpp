#include "attr/ZoBgpGlobals.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "Mox/Exception.h"
#include "Mox/PtrInterface.h"

namespace Routing::Bgp {
namespace {

Mox::String dump(U32 indent) {
  const Mox::Ptr<Orv::DumpContext> context = Mox::makeNew<Orv::DumpContext>();
  ZoBgpGlobals::dumpState(context, indent);
  return context->text();
}

void variableIs(const char* name, const char* value) {
  if (value)
    ::setenv(name, value, 1);
  else
    ::unsetenv(name);
}

/// Runs in a process of its own: the answers are found once per process. Asks twice, the
/// environment turned round between, and ends with 0 when both dumps are the expected one.
[[noreturn]] void askTwice(const char* mt, const char* rxMt, const Mox::String& expected) {
  variableIs("DISABLE_ZOBGP_MT", mt);
  variableIs("DISABLE_ZOBGP_RX_MT", rxMt);
  const Mox::String first = dump(0);
  variableIs("DISABLE_ZOBGP_MT", mt ? nullptr : "1");
  variableIs("DISABLE_ZOBGP_RX_MT", rxMt ? nullptr : "1");
  const Mox::String second = dump(0);
  if (first != expected || second != expected) std::fprintf(stderr, "%s", (first + second).c_str());
  std::exit(first == expected && second == expected ? 0 : 1);
}

TEST(ZoBgpGlobalsDeathTest, AnswersFromTheEnvironmentOnce) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // starts the program anew
  struct {
    const char* mt;
    const char* rxMt;
    const char* answers[2];
  } const cases[] = {
      {nullptr, nullptr, {"1", "1"}}, {nullptr, "", {"1", "0"}},  {nullptr, "1", {"1", "0"}},
      {"", nullptr, {"0", "0"}},      {"0", nullptr, {"0", "0"}}, {"1", "1", {"0", "0"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(std::pair(c.mt, c.rxMt)));
    const Mox::String expected =
        Mox::String("ZoBgp Globals\n") + "   multiThreaded : " + c.answers[0] +
        "\n   rxMultiThreaded : " + c.answers[1] + "\n   bribMultiThreaded : 0\n";
    EXPECT_EXIT(askTwice(c.mt, c.rxMt, expected), testing::ExitedWithCode(0), "");
  }
}

TEST(ZoBgpGlobals, DumpsIndented) {
  const Mox::String text = dump(4);
  EXPECT_EQ(text.find("    ZoBgp Globals\n       multiThreaded : "), 0u) << text;
  EXPECT_NE(text.find("\n       rxMultiThreaded : "), text.npos) << text;
  EXPECT_NE(text.find("\n       bribMultiThreaded : 0\n"), text.npos) << text;
}

TEST(ZoBgpGlobals, HasTheEmptyText) {
  ZoBgpGlobals globals;
  std::ostringstream stream;
  stream << globals << valueToStrep(globals);
  EXPECT_EQ(stream.str(), "");
  sequenceToValue("", globals);
  EXPECT_THROW(sequenceToValue(" ", globals), Mox::ParseException);
  EXPECT_EQ(globals, ZoBgpGlobals());
  EXPECT_TRUE(Mox::Type::find("Routing::Bgp::ZoBgpGlobals"));
}

}  // namespace
}  // namespace Routing::Bgp

#include "attr/ZoBgpGlobals.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "Mox/Exception.h"

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

/// The four lines, each behind `indent`.
Mox::String lines(const Mox::String& indent, const char* mt, const char* rxMt) {
  return indent + "ZoBgp Globals\n" + indent + "   multiThreaded : " + mt + "\n" + indent +
         "   rxMultiThreaded : " + rxMt + "\n" + indent + "   bribMultiThreaded : 0\n";
}

struct Case {
  const char *mtVariable, *rxMtVariable;  // null: not set
  const char *mt, *rxMt;
};

/// Runs in a process of its own: the answers are found once per process. Asks twice, the
/// environment turned round between, and ends with 0 when both dumps are as expected.
[[noreturn]] void askTwice(const Case& c) {
  variableIs("DISABLE_ZOBGP_MT", c.mtVariable);
  variableIs("DISABLE_ZOBGP_RX_MT", c.rxMtVariable);
  const Mox::String first = dump(0);
  variableIs("DISABLE_ZOBGP_MT", c.mtVariable ? nullptr : "1");
  variableIs("DISABLE_ZOBGP_RX_MT", c.rxMtVariable ? nullptr : "1");
  const Mox::String second = dump(4);
  std::fprintf(stderr, "%s%s", first.c_str(), second.c_str());
  std::exit(first == lines("", c.mt, c.rxMt) && second == lines("    ", c.mt, c.rxMt) ? 0 : 1);
}

TEST(ZoBgpGlobalsDeathTest, AnswersFromTheEnvironmentOnce) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // starts the program anew
  const Case cases[] = {
      {nullptr, nullptr, "1", "1"}, {nullptr, "", "1", "0"},  {nullptr, "1", "1", "0"},
      {"", nullptr, "0", "0"},      {"0", nullptr, "0", "0"}, {"1", "1", "0", "0"},
  };
  for (const Case& c : cases) EXPECT_EXIT(askTwice(c), testing::ExitedWithCode(0), "");
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

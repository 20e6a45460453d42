#include "attr/ZoBgpGlobals.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "Mox/Exception.h"

namespace Routing::Bgp {
namespace {

/// Sets a variable, or none for null.
void variableIs(const char* name, const char* value) {
  value ? ::setenv(name, value, 1) : ::unsetenv(name);
}

void dumpWith(const char* disableMt, const char* disableRxMt, U32 indent) {
  variableIs("DISABLE_ZOBGP_MT", disableMt);
  variableIs("DISABLE_ZOBGP_RX_MT", disableRxMt);
  const auto context = Mox::makeNew<Orv::DumpContext>();
  ZoBgpGlobals::dumpState(context, indent);
  std::fputs(context->text().c_str(), stderr);
}

TEST(ZoBgpGlobalsDeathTest, AnswersFromTheEnvironmentOncePerProcess) {
  const struct {
    const char *disableMt, *disableRxMt, *mt, *rxMt;
  } cases[] = {{nullptr, nullptr, "1", "1"}, {nullptr, "", "1", "0"},  {nullptr, "1", "1", "0"},
               {"", nullptr, "0", "0"},      {"0", nullptr, "0", "0"}, {"1", "1", "0", "0"}};
  for (const auto& c : cases) {
    std::string expected = "^";
    for (const std::string indent : {"", "    "})
      expected += indent + "ZoBgp Globals\n" + indent + "   multiThreaded : " + c.mt + '\n' +
                  indent + "   rxMultiThreaded : " + c.rxMt + '\n' + indent +
                  "   bribMultiThreaded : 0\n";
    const auto dumpTwice = [&] {
      dumpWith(c.disableMt, c.disableRxMt, 0);
      dumpWith(c.disableMt ? nullptr : "1", c.disableRxMt ? nullptr : "1", 4);
      std::exit(0);
    };
    EXPECT_EXIT(dumpTwice(), testing::ExitedWithCode(0), expected + '$');
  }
}

TEST(ZoBgpGlobals, IsTheEmptyText) {
  ZoBgpGlobals globals;
  sequenceToValue(valueToStrep(globals), globals);
  EXPECT_THROW(sequenceToValue(" ", globals), Mox::ParseException);
}

}  // namespace
}  // namespace Routing::Bgp

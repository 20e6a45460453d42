#include "attr/ZoBgpGlobals.h"

#include <cstdlib>

#include "Mox/Exception.h"

namespace Routing::Bgp {
namespace {

bool absent(const char* variable) { return !std::getenv(variable); }

}  // namespace

const Mox::Type ZoBgpGlobals::type{"Routing::Bgp::ZoBgpGlobals", nullptr, {}};

bool ZoBgpGlobals::multiThreaded() {
  static const bool answer = absent("DISABLE_ZOBGP_MT");
  return answer;
}

bool ZoBgpGlobals::rxMultiThreaded() {
  static const bool answer = absent("DISABLE_ZOBGP_MT") && absent("DISABLE_ZOBGP_RX_MT");
  return answer;
}

void ZoBgpGlobals::dumpState(const Mox::Ptr<const Orv::DumpContext>& context, U32 indent) {
  context->line(indent, "ZoBgp Globals\n");
  context->line(indent, "   multiThreaded : %d\n", multiThreaded());
  context->line(indent, "   rxMultiThreaded : %d\n", rxMultiThreaded());
  context->line(indent, "   bribMultiThreaded : %d\n", bribMultiThreaded());
}

void sequenceToValue(std::string_view text, ZoBgpGlobals&) {
  if (!text.empty()) throw Mox::ParseException("text where none is expected", 0);
}

}  // namespace Routing::Bgp

// The threading switches of the agent, read once from the environment of the process:
//
//   DISABLE_ZOBGP_MT      set, even to nothing: neither multi-threaded nor in the receive path
//   DISABLE_ZOBGP_RX_MT   set, even to nothing: not multi-threaded in the receive path
//
// Each answer is found when it is first asked for and stays the same from then on. The questions
// may be asked from any thread.
#pragma once

#include "Mox/Ptr.h"
#include "Mox/Type.h"
#include "Orv/DumpContext.h"

namespace Routing::Bgp {

/// A value with nothing in it: every operation is static.
class ZoBgpGlobals {
 public:
  static const Mox::Type type;

  /// Whether the agent's threads share interned values, so that intern tables must lock.
  static bool multiThreaded();
  /// Whether received messages are taken apart by several threads.
  static bool rxMultiThreaded();
  /// Never: kept for its line in the dump.
  static constexpr bool bribMultiThreaded() { return false; }

  /// Writes a title and the three answers, one per line.
  static void dumpState(const Mox::Ptr<const Orv::DumpContext>& context, U32 indent);

  friend bool operator==(const ZoBgpGlobals&, const ZoBgpGlobals&) = default;
  /// The empty text.
  friend Mox::String valueToStrep(const ZoBgpGlobals&) { return {}; }
  friend std::ostream& operator<<(std::ostream& stream, const ZoBgpGlobals&) { return stream; }
};

/// ParseException for any text but the empty one.
void sequenceToValue(std::string_view text, ZoBgpGlobals& globals);

}  // namespace Routing::Bgp

// Diagnostic lines, off by default; each costs one branch when off.
//
//   if (Mox::traceEnabled(8)) Mox::trace(8, "Destashing " + name);
#pragma once

#include <atomic>

#include "Mox/Types.h"

namespace Mox {

/// Lines up to this level are written; 0 is none.
extern std::atomic<U32> traceLevel;

/// Whether lines of this level are written.
inline bool traceEnabled(U32 level) { return traceLevel.load(std::memory_order_relaxed) >= level; }

/// Takes the lines, which have no line end, on the thread that traces. Null is standard error, as
/// at the start. REQUIRES: the sink is set before traces are switched on.
using TraceSink = void (*)(U32 level, std::string_view line);
/// Hands lines to this sink from now on.
void traceSinkIs(TraceSink sink);

/// Hands a line to the sink. Ask `traceEnabled` before.
void trace(U32 level, std::string_view line);

}  // namespace Mox

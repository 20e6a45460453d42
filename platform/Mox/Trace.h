// Diagnostic lines, off by default; each costs one branch when off.
//
//   if (Mox::traceEnabled(8)) Mox::trace(8, "Destashing " + name);
#pragma once

#include <atomic>

#include "Mox/Types.h"

namespace Mox {

/// Lines up to this level are written; 0 is none.
extern std::atomic<U32> traceLevel;

inline bool traceEnabled(U32 level) { return traceLevel.load(std::memory_order_relaxed) >= level; }

/// Where the lines go: standard error, unless the host says otherwise. Called on the thread that
/// traces; lines carry no line end. To be set before traces are switched on.
using TraceSink = void (*)(U32 level, std::string_view line);
void traceSinkIs(TraceSink sink);

void trace(U32 level, std::string_view line);

}  // namespace Mox

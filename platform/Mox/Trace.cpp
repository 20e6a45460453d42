#include "Mox/Trace.h"

#include <cstdio>

namespace Mox {
namespace {

void toStandardError(U32 level, std::string_view line) {
  std::fprintf(stderr, "[%u] %.*s\n", unsigned(level), int(line.size()), line.data());
}

std::atomic<TraceSink> traceSink{toStandardError};

}  // namespace

std::atomic<U32> traceLevel{0};

void traceSinkIs(TraceSink sink) { traceSink = sink ? sink : toStandardError; }

void trace(U32 level, std::string_view line) { traceSink.load()(level, line); }

}  // namespace Mox

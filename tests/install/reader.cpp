// A reader of MRT files as somebody else would build it.
#include <iostream>

#include "mrt/Nlri.h"

using namespace Routing::Mrt;

int main(int, char** arguments) {
  Input input(arguments[1]);
  RecordReader reader(input);
  PathCutter cutter;
  U64 prefixes = 0;
  while (const std::optional<Record> record = reader.next())
    cutter.cut(*record,
               [&](const Path& path) { visitPrefixes(path, [&](const Prefix&) { ++prefixes; }); });
  std::cout << reader.records() << " records, " << prefixes << " prefixes\n";
  return input.failure() || prefixes == 0;
}

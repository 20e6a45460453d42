#include "AsWay.h"

#include <algorithm>

namespace bgpcomm {
namespace {

// Types of hops that no segment has.
constexpr char emptyPath = 0, malformedPath = 5;

/// Each AS counts once.
AsHop hopOf(AsSegmentType type, std::vector<U32> numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  AsHop hop(1, char(type));
  for (const U32 number : numbers)
    for (const int shift : {24, 16, 8, 0}) hop += char(number >> shift);
  return hop;
}

}  // namespace

AsWay::AsWay(const AsPath& path) {
  const auto add = [this](AsHop hop) {
    if (!hops.empty() && hops.back() == hop) {
      ++times.back();
      return;
    }
    hops.push_back(std::move(hop));
    times.push_back(1);
  };
  AsSegmentReader segments = path.segments();
  while (const AsSegment* const segment = segments.next()) {
    const AsSegmentType type = segment->type;
    if (type == AsSegmentType::set || type == AsSegmentType::confedSet)
      add(hopOf(type, {segment->numbers.begin(), segment->numbers.end()}));
    else
      for (const U32 number : segment->numbers) add(hopOf(type, {number}));
  }
  if (hops.empty()) add(AsHop(1, path.malformed() ? malformedPath : emptyPath));
  std::reverse(hops.begin(), hops.end());
  std::reverse(times.begin(), times.end());
}

std::string hopText(const AsHop& hop) {
  struct Signs {
    std::string_view open, close;
  };
  constexpr Signs signs[] = {
      {"(empty AS path)", ""},    {"{", "}"}, {"AS", ""}, {"(", ")"}, {"[", "]"},
      {"(malformed AS path)", ""}};
  const Signs& its = signs[U8(hop[0])];
  std::string text(its.open), between;
  for (Cursor numbers(asOctets(hop).subspan(1)); !numbers.atEnd(); between = ",")
    text += between + std::to_string(numbers.u32());
  return text.append(its.close);
}

}  // namespace bgpcomm

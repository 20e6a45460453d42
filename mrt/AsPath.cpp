#include "mrt/AsPath.h"

#include <array>
#include <utility>

#include "mrt/internal/Attributes.h"

namespace Routing::Mrt {
namespace {

constexpr unsigned as4Width = 4;

//   segment:  type 1, AS numbers in it 1, the numbers, 2 or 4 octets each
/// Fails the cursor when the segment is malformed.
AsSegment takeSegment(Cursor& in, unsigned width) {
  const U8 type = in.u8(), count = in.u8();
  const bool known =
      type >= U8(AsSegmentType::set) && type <= U8(AsSegmentType::confedSet) && count > 0;
  const Octets numbers = in.take(known ? std::size_t(count) * width : in.left().size() + 1);
  return {AsSegmentType(type), AsNumbers(numbers, width)};
}

std::size_t lengthOf(const AsSegment& segment) {
  if (inConfederation(segment.type)) return 0;
  return segment.type == AsSegmentType::set ? 1 : segment.numbers.size();
}

/// Nothing when a segment is malformed.
std::optional<std::size_t> lengthOf(Octets path, unsigned width) {
  std::size_t length = 0;
  Cursor in(path);
  while (!in.atEnd()) length += lengthOf(takeSegment(in, width));
  return in ? std::optional(length) : std::nullopt;
}

/// The first attribute of each type that an AS path is made of.
struct Attributes {
  std::optional<Octets> path, as4Path, aggregator, as4Aggregator;
  bool cutShort = false;
};
Attributes findAttributes(Octets attributes) {
  Attributes all;
  const auto keep = [](std::optional<Octets>& first, Octets value) {
    if (!first) first = value;
  };
  Cursor in(attributes);
  while (!in.atEnd()) {
    const Attribute found = takeAttribute(in);
    if (!in) break;
    switch (found.type) {
      case asPathAttribute:
        keep(all.path, found.value);
        break;
      case aggregatorAttribute:
        keep(all.aggregator, found.value);
        break;
      case as4PathAttribute:
        keep(all.as4Path, found.value);
        break;
      case as4AggregatorAttribute:
        keep(all.as4Aggregator, found.value);
        break;
      default:
        break;
    }
  }
  all.cutShort = !in;
  return all;
}

//   AGGREGATOR:  AS 2, address 4        AS4_AGGREGATOR:  AS 4, address 4
/// Whether a speaker that knows AS numbers of 2 octets only aggregated the route: what the other
/// attributes say is older than that (RFC 6793, section 4.2.3).
bool aggregatedSince(const Attributes& all) {
  constexpr U16 asTrans = 23456;
  return all.aggregator && all.aggregator->size() == 6 && all.as4Aggregator &&
         all.as4Aggregator->size() == 8 && Cursor(*all.aggregator).u16() != asTrans;
}

}  // namespace

AsPath::AsPath(const Path& path) : width_(path.as4 ? as4Width : 2) {
  const Attributes all = findAttributes(path.attributes);
  const std::optional<std::size_t> length = lengthOf(all.path.value_or(Octets()), width_);
  malformed_ = !length || (!all.path && all.cutShort);
  if (malformed_ || !all.path) return;
  path_ = *all.path;
  length_ = leading_ = *length;
  if (path.as4 || !all.as4Path || aggregatedSince(all)) return;
  const std::optional<std::size_t> restored = lengthOf(*all.as4Path, as4Width);
  if (!restored || *restored > length_) return;
  as4Path_ = *all.as4Path;
  leading_ -= *restored;
}

std::optional<U32> AsPath::origin() const {
  std::optional<U32> origin;
  AsSegmentReader reader = segments();
  while (const AsSegment* const segment = reader.next()) {
    if (inConfederation(segment->type)) continue;
    origin = std::nullopt;
    if (segment->type == AsSegmentType::sequence)
      origin = segment->numbers[segment->numbers.size() - 1];
  }
  return origin;
}

std::string AsPath::text() const {
  struct Signs {
    const char *open, *between, *close;
  };
  constexpr std::array<Signs, 4> signs = {
      {{"{", ",", "}"}, {"", " ", ""}, {"(", " ", ")"}, {"[", ",", "]"}}};
  std::string text;
  AsSegmentReader reader = segments();
  while (const AsSegment* const segment = reader.next()) {
    const Signs& sign = signs[std::size_t(segment->type) - 1];
    if (!text.empty()) text += ' ';
    const char* before = sign.open;
    for (const U32 as : segment->numbers) {
      text += std::exchange(before, sign.between);
      text += std::to_string(as);
    }
    text += sign.close;
  }
  return text;
}

const AsSegment* AsSegmentReader::next() {
  for (;;) {
    if (in_.atEnd()) {
      if (as4Path_.empty()) return nullptr;
      in_ = Cursor(std::exchange(as4Path_, {}));
      width_ = as4Width;
      restored_ = true;
    }
    segment_ = takeSegment(in_, width_);
    if (restored_ ? !inConfederation(segment_.type) : takeLeading()) return &segment_;
  }
}

/// Segments of confederations come along as long as the others come whole (RFC 6793, section
/// 4.2.3).
bool AsSegmentReader::takeLeading() {
  const std::size_t length = lengthOf(segment_);
  const bool whole = length <= left_;
  if (!whole) {
    segment_.numbers = segment_.numbers.first(left_);
    in_ = Cursor(Octets());
  }
  left_ -= std::min(length, left_);
  return !segment_.numbers.empty();
}

}  // namespace Routing::Mrt

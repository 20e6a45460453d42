#include "mrt/internal/Bzip2Pieces.h"

#include <algorithm>
#include <array>

namespace Routing::Mrt {
namespace {

constexpr U64 marks[] = {Bzip2Piece::blockMark, Bzip2Piece::endMark};
constexpr U64 maskOf(unsigned count) { return (U64{1} << count) - 1; }

/// For the octet before the last: a bit for each shift by which a mark could end before the end of
/// the last. Few octets have any.
constexpr std::array<U8, 256> possibleShifts = [] {
  std::array<U8, 256> shifts{};
  for (const U64 mark : marks)
    for (unsigned shift = 0; shift < 8; ++shift) shifts[U8(mark >> (8 - shift))] |= U8(1 << shift);
  return shifts;
}();

bool isMark(U64 bits) {
  bits &= maskOf(Bzip2Piece::markBits);
  return bits == marks[0] || bits == marks[1];
}

}  // namespace

U64 Bzip2Piece::bits(U64 from, unsigned count) const {
  const U64 first = begin % 8 + from, last = first + count;
  U64 value = 0;
  for (U64 octet = first / 8; octet < (last + 7) / 8; ++octet) value = value << 8 | octets[octet];
  return value >> (7 - (last + 7) % 8) & maskOf(count);
}

void Bzip2Piece::add(const Bzip2Piece& next) {
  octets.resize(next.begin / 8 - begin / 8);
  octets.insert(octets.end(), next.octets.begin(), next.octets.end());
  end = next.end;
  last = next.last;
  tooLong = next.tooLong;
}

std::optional<Bzip2Piece> Bzip2Splitter::next() {
  while (!ended_) {
    const Octets input = source_.ahead();
    const bool tooLong = octets_.size() > longestPiece;
    if (input.empty() || tooLong) {
      ended_ = true;
      Bzip2Piece piece = cut(8 * taken_);
      piece.last = true;
      piece.tooLong = tooLong;
      return piece;
    }
    if (takeUpToMark(input)) return cut(mark_);
  }
  return std::nullopt;
}

bool Bzip2Splitter::takeUpToMark(Octets input) {
  std::size_t size = 0;
  bool found = false;
  while (size < input.size() && !found) {
    lastBits_ = lastBits_ << 8 | input[size++];
    const U8 shifts = possibleShifts[U8(lastBits_ >> 8)];
    for (unsigned shift = 0; shifts >> shift; ++shift) {
      if (!isMark(lastBits_ >> shift)) continue;
      found = true;
      mark_ = 8 * (taken_ + size) - shift - Bzip2Piece::markBits;
    }
  }
  octets_.insert(octets_.end(), input.begin(), input.begin() + std::ptrdiff_t(size));
  taken_ += size;
  source_.take(size);
  return found;
}

Bzip2Piece Bzip2Splitter::cut(U64 end) {
  Bzip2Piece piece{begin_, end, std::move(octets_)};
  const auto at = [&](U64 octet) {
    return piece.octets.begin() + std::ptrdiff_t(octet - piece.begin / 8);
  };
  octets_.assign(at(end / 8), piece.octets.end());
  piece.octets.erase(at((end + 7) / 8), piece.octets.end());
  begin_ = end;
  return piece;
}

}  // namespace Routing::Mrt

// Where the blocks of bzip2 data begin. Each begins with a mark of 48 bits, at any bit of an octet,
// and can be decoded without those before it; nothing says how long it is.
//
//   data:   "BZh1" to "BZh9", blocks, end; all of this may come again
//   block:  mark 48 bits, check sum 32, compressed values
//   end:    mark 48 bits, check sum of the check sums 32, then zeros up to a whole octet
#pragma once

#include <optional>
#include <vector>

#include "mrt/internal/Decoder.h"

namespace Routing::Mrt {

/// The data from one mark to the next.
struct Bzip2Piece {
  static constexpr U64 blockMark = 0x314159265359;
  static constexpr U64 endMark = 0x177245385090;
  static constexpr unsigned markBits = 48;
  static constexpr unsigned sumBits = 32;

  /// In bits of all data.
  U64 begin = 0;
  U64 end = 0;
  /// From the octet that `begin` lies in to the one before `end`.
  std::vector<U8> octets;
  /// The data end with it, or it is longer than a block can be.
  bool last = false;
  bool tooLong = false;

  U64 size() const { return end - begin; }
  /// Up to 56 bits from a bit on that is counted from `begin`; they have to be there.
  U64 bits(U64 from, unsigned count) const;
  bool startsWith(U64 mark) const { return size() >= markBits && bits(0, markBits) == mark; }
  /// Appends the piece that follows.
  void add(const Bzip2Piece& next);
};

/// Cuts at everything that looks like a mark: values may happen to, so a piece that is no whole
/// block may be one together with the next. The first piece is the header.
class Bzip2Splitter {
 public:
  explicit Bzip2Splitter(Source& source) : source_(source) {}

  /// Nothing behind the last piece. Throws what the source throws.
  std::optional<Bzip2Piece> next();

 private:
  /// Room for the longest block of values that are as badly compressed as can be.
  static constexpr std::size_t longestPiece = 4 * 1024 * 1024;

  bool takeUpToMark(Octets input);
  Bzip2Piece cut(U64 end);

  Source& source_;
  std::vector<U8> octets_;  ///< from the octet on that the piece begins in
  U64 begin_ = 0;
  U64 taken_ = 0;     ///< octets of all data
  U64 lastBits_ = 0;  ///< the last 64 taken
  U64 mark_ = 0;      ///< where the mark begins that was found
  bool ended_ = false;
};

}  // namespace Routing::Mrt

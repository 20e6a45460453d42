// One block of bzip2 data, decoded by itself: made into data of a single block first.
//
// Threads: any one at a time.
#pragma once

#include <bzlib.h>

#include <memory>

#include "mrt/internal/Bzip2Pieces.h"

namespace Routing::Mrt {

/// The memory of decoding, kept from one block for the next: the pages of new memory cost time.
class Bzip2Memory {
 public:
  /// The functions that the decompressor calls.
  void lendTo(bz_stream& stream);
  std::vector<U8>& part() { return part_; }

 private:
  struct Allocation {
    std::vector<U8> octets;
    bool lent;
  };
  void* allocate(std::size_t size);
  void free(const void* memory);

  std::vector<Allocation> allocations_;
  std::vector<U8> part_;
};

class Bzip2Block {
 public:
  Bzip2Block(Bzip2Piece piece, std::shared_ptr<Bzip2Memory> memory)
      : piece_(std::move(piece)), memory_(std::move(memory)) {}
  ~Bzip2Block() { BZ2_bzDecompressEnd(&stream_); }
  Bzip2Block(const Bzip2Block&) = delete;
  Bzip2Block& operator=(const Bzip2Block&) = delete;

  enum class State {
    more,     ///< Another call of `decode` has the next part.
    whole,    ///< Ends where the piece does, and its check sum is right.
    damaged,  ///< No block, or not the whole of it, or something follows.
  };
  /// Decodes the next part. Blocks that are not made to be large have only one.
  void decode();
  State state() const { return state_; }
  /// The decoded octets. Nothing of a part in which a fault was found, unless it is a whole block
  /// with the right check sum and the fault stands behind.
  Octets part() const { return Octets(memory_->part()).first(size_); }
  const Bzip2Piece& piece() const { return piece_; }
  U32 checkSum() const { return U32(piece_.bits(Bzip2Piece::markBits, Bzip2Piece::sumBits)); }

 private:
  /// More than the 900,000 octets of the largest block: runs of equal octets are stored shorter,
  /// which may make it up to 51 times as many.
  static constexpr std::size_t partSize = 1024 * 1024;

  bool open();
  void run();

  Bzip2Piece piece_;
  std::shared_ptr<Bzip2Memory> memory_;
  State state_ = State::more;
  std::vector<U8> input_;
  bz_stream stream_{};
  std::size_t size_ = 0;
  bool opened_ = false;
};

}  // namespace Routing::Mrt

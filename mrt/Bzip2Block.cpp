#include "mrt/internal/Bzip2Block.h"

#include <algorithm>
#include <array>

namespace Routing::Mrt {
namespace {

constexpr U64 headerBits = 0x425a6839;  // "BZh9", whose blocks may have any size

class BitWriter {
 public:
  /// Up to 56 bits.
  void add(U64 bits, unsigned count) {
    held_ = held_ << count | bits;
    heldBits_ += count;
    for (; heldBits_ >= 8; heldBits_ -= 8) octets_.push_back(U8(held_ >> (heldBits_ - 8)));
  }
  void add(const Bzip2Piece& piece) {
    octets_.reserve(piece.octets.size() + 32);
    for (U64 at = 0; at < piece.size();) {
      const auto count = unsigned(std::min<U64>(56, piece.size() - at));
      add(piece.bits(at, count), count);
      at += count;
    }
  }
  /// With zeros up to a whole octet.
  std::vector<U8> finish() {
    if (heldBits_ > 0) add(0, 8 - heldBits_);
    return std::move(octets_);
  }

 private:
  std::vector<U8> octets_;
  U64 held_ = 0;
  unsigned heldBits_ = 0;
};

/// The check sum of bzip2: CRC-32, from the highest bit of each octet on.
U32 checkSumOf(Octets octets) {
  static constexpr std::array<U32, 256> table = [] {
    std::array<U32, 256> sums{};
    for (U32 i = 0; i < sums.size(); ++i) {
      sums[i] = i << 24;
      for (int bit = 0; bit < 8; ++bit) sums[i] = sums[i] << 1 ^ (sums[i] >> 31) * 0x04c11db7;
    }
    return sums;
  }();
  U32 sum = ~U32{0};
  for (const U8 octet : octets) sum = sum << 8 ^ table[sum >> 24 ^ octet];
  return ~sum;
}

}  // namespace

void Bzip2Memory::lendTo(bz_stream& stream) {
  stream.opaque = this;
  stream.bzalloc = [](void* self, int count, int size) {
    return static_cast<Bzip2Memory*>(self)->allocate(std::size_t(count) * std::size_t(size));
  };
  stream.bzfree = [](void* self, void* memory) { static_cast<Bzip2Memory*>(self)->free(memory); };
}

void* Bzip2Memory::allocate(std::size_t size) try {
  auto one = std::find_if(allocations_.begin(), allocations_.end(), [size](const Allocation& each) {
    return !each.lent && each.octets.size() == size;
  });
  if (one == allocations_.end()) one = allocations_.insert(one, {std::vector<U8>(size), false});
  one->lent = true;
  return one->octets.data();
} catch (const std::bad_alloc&) {
  return nullptr;
}

void Bzip2Memory::free(const void* memory) {
  for (Allocation& one : allocations_)
    if (one.octets.data() == memory) one.lent = false;
}

void Bzip2Block::decode() {
  const bool first = !opened_;
  size_ = 0;
  state_ = State::damaged;
  if (first && !open()) return;
  run();
  if (state_ != State::damaged) return;
  const bool onlyWhatFollows = first && size_ > 0 && checkSumOf(part()) == checkSum();
  if (!onlyWhatFollows) size_ = 0;
}

/// False when there is not even a check sum.
bool Bzip2Block::open() {
  if (piece_.size() < Bzip2Piece::markBits + Bzip2Piece::sumBits) return false;
  BitWriter data;
  data.add(headerBits, 32);
  data.add(piece_);
  if (!piece_.last) {
    data.add(Bzip2Piece::endMark, Bzip2Piece::markBits);
    data.add(checkSum(), Bzip2Piece::sumBits);
  }
  input_ = data.finish();
  memory_->lendTo(stream_);
  if (BZ2_bzDecompressInit(&stream_, 0, 0) != BZ_OK) throw std::bad_alloc();
  opened_ = true;
  stream_.next_in = reinterpret_cast<char*>(input_.data());
  stream_.avail_in = unsigned(input_.size());
  memory_->part().resize(partSize);
  return true;
}

void Bzip2Block::run() {
  stream_.next_out = reinterpret_cast<char*>(memory_->part().data());
  stream_.avail_out = partSize;
  const int result = BZ2_bzDecompress(&stream_);
  size_ = partSize - stream_.avail_out;
  if (result == BZ_MEM_ERROR) throw std::bad_alloc();
  if (result == BZ_STREAM_END)
    state_ = stream_.avail_in == 0 ? State::whole : State::damaged;
  else if (result == BZ_OK && stream_.avail_out == 0)
    state_ = State::more;
}

}  // namespace Routing::Mrt

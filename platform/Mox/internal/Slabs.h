// Memory by size: slabs of equal pieces without headers, and free pieces kept by each thread.
//
//   FreePieces mine;                      // of one thread
//   void* memory = mine.take(48);         // the piece freed last, or one of a slab
//   mine.give(memory, 48);
//   mine.giveAll();                       // the thread ends
//
//   slab, 8 KiB aligned to 8 KiB:    [ head 48 | piece | piece | ... ]
//   depot, one for each size:        the slabs that have free pieces, behind a mutex
//
// 1. Sizes are steps of 8 octets up to 256; memory of other sizes comes from `operator new`. Pieces
//    are aligned to 16 octets if their size is a multiple of 16, otherwise to 8.
// 2. A thread takes from its own free pieces and gives to them, which costs a few instructions and
//    no atomic one. It meets the depot once for many pieces, when it has none left or too many.
// 3. A slab goes back to `operator delete` once all its pieces are in the depot. A thread keeps up
//    to 32 free pieces of each size, and each may hold back a slab; of each size one slab without
//    any piece in use is kept; and a slab stays as long as one piece of it is in use.
// 4. Under AddressSanitizer free pieces are poisoned.
//
// With `MOX_SLABS=0` in the environment when memory is first taken, all of it comes from `operator
// new`: for valgrind, and for processes whose `operator new` is as good. AddressSanitizer's builds
// do so by themselves, which sees more then; `MOX_SLABS=1` has the slabs there too.
//
// Lock order: a depot's mutex is the innermost. `operator new` and `delete` are called outside.
#pragma once

#include <array>
#include <cstddef>
#include <new>

#include "Mox/Types.h"

#ifdef __has_feature
#if __has_feature(address_sanitizer)
#define __SANITIZE_ADDRESS__ 1
#endif
#endif
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

namespace Mox {

/// The free pieces that one thread keeps.
/// REQUIRES: constant initialization; used by one thread at a time.
class FreePieces {
 public:
  static constexpr std::size_t step = 8, mostOctets = 256;

  /// Throws `std::bad_alloc`.
  void* take(std::size_t octets);
  /// `octets` as given to `take`, of this thread or another.
  void give(void* memory, std::size_t octets) noexcept;
  /// All free pieces to the depots.
  void giveAll() noexcept;

  /// Octets of all slabs.
  static std::size_t slabOctets();

  // The same for threads that keep nothing.
  static void* takeShared(std::size_t octets);
  static void giveShared(void* memory, std::size_t octets) noexcept;

  /// A free piece holds the address of the next one.
  struct Piece {
    Piece* next;
  };

 private:
  struct Pieces {
    Piece* first = nullptr;
    U32 room = 0;  // for so many more; none before the first are taken, nor without slabs
  };
  static std::size_t indexOf(std::size_t octets) { return (octets - 1) / step; }
  static std::size_t pieceOctets(std::size_t octets) { return (indexOf(octets) + 1) * step; }
  void* takeSlowly(std::size_t octets);
  void giveSlowly(void* memory, std::size_t octets) noexcept;

  std::array<Pieces, mostOctets / step> pieces_;
};

/// Nobody may use the memory until it is given out again.
inline void poison([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t octets) {
#ifdef __SANITIZE_ADDRESS__
  __asan_poison_memory_region(memory, octets);
#endif
}
inline void unpoison([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t octets) {
#ifdef __SANITIZE_ADDRESS__
  __asan_unpoison_memory_region(memory, octets);
#endif
}

inline void* FreePieces::take(std::size_t octets) {
  if (octets - 1 < mostOctets) [[likely]] {  // nor zero
    Pieces& pieces = pieces_[indexOf(octets)];
    if (Piece* const piece = pieces.first) [[likely]] {
      unpoison(piece, pieceOctets(octets));
      pieces.first = piece->next;
      ++pieces.room;
      return piece;
    }
  }
  return takeSlowly(octets);
}

inline void FreePieces::give(void* memory, std::size_t octets) noexcept {
  if (octets - 1 < mostOctets) [[likely]] {
    Pieces& pieces = pieces_[indexOf(octets)];
    if (pieces.room) [[likely]] {
      pieces.first = ::new (memory) Piece{pieces.first};
      --pieces.room;
      return poison(memory, pieceOctets(octets));
    }
  }
  giveSlowly(memory, octets);
}

}  // namespace Mox

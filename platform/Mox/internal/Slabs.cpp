#include "Mox/internal/Slabs.h"

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <mutex>
#include <string_view>
#include <utility>

namespace Mox {
namespace {

using Piece = FreePieces::Piece;

constexpr std::size_t slabAlignment = 1 << 13;
// Leaves room for what the allocator puts between two of them, so that they stand side by side.
constexpr std::size_t slabSize = slabAlignment - 16;
constexpr std::size_t headOctets = 48;

// Pieces that go between a thread and a depot at a time; a thread keeps up to twice as many.
constexpr U32 batch = 16;

std::atomic<std::size_t> slabs{0};

// The links of pieces that are free, hence poisoned.
Piece* nextOf(Piece* piece) {
  unpoison(piece, sizeof *piece);
  Piece* const next = piece->next;
  poison(piece, sizeof *piece);
  return next;
}
void nextIs(Piece* piece, Piece* next) {
  unpoison(piece, sizeof *piece);
  piece->next = next;
  poison(piece, sizeof *piece);
}

/// The head of a slab. It stands in its depot's list as long as it has free pieces.
struct Slab {
  Slab* next = nullptr;
  Slab* previous = nullptr;
  Piece* given = nullptr;  // free pieces that were in use before
  U32 free = 0;            // pieces that are free, used before or not
  U32 used = 0;            // pieces that have ever been in use: the first ones

  static Slab* of(void* piece) {
    const auto inside = reinterpret_cast<std::uintptr_t>(piece) & (slabAlignment - 1);
    return reinterpret_cast<Slab*>(static_cast<char*>(piece) - inside);
  }
  static U32 pieces(std::size_t pieceOctets) { return U32((slabSize - headOctets) / pieceOctets); }
  bool isWhole(std::size_t pieceOctets) const { return free == pieces(pieceOctets); }

  static Slab* make(std::size_t pieceOctets) {
    void* const memory = ::operator new(slabSize, std::align_val_t(slabAlignment));
    Slab* const slab = ::new (memory) Slab;
    slabs.fetch_add(1, std::memory_order_relaxed);
    slab->free = pieces(pieceOctets);
    poison(slab->start(), slabSize - headOctets);
    return slab;
  }
  static void drop(Slab* slab) {
    unpoison(slab->start(), slabSize - headOctets);
    ::operator delete(slab, std::align_val_t(slabAlignment));
    slabs.fetch_sub(1, std::memory_order_relaxed);
  }
  /// REQUIRES: some are free.
  Piece* take(std::size_t pieceOctets) {
    --free;
    if (given) return std::exchange(given, nextOf(given));
    return reinterpret_cast<Piece*>(start() + pieceOctets * used++);
  }
  void give(Piece* piece) {
    nextIs(piece, given);
    given = piece;
    ++free;
  }

 private:
  char* start() { return reinterpret_cast<char*>(this) + headOctets; }
};
static_assert(sizeof(Slab) <= headOctets);

/// Pieces on their way to a thread, each linked to the next.
struct Chain {
  Piece* first = nullptr;
  U32 pieces = 0;
};

/// The slabs of one size.
class alignas(64) Depot {
 public:
  constexpr Depot() = default;

  /// At least one piece and at most so many. Throws `std::bad_alloc`.
  Chain take(std::size_t pieceOctets, U32 most) {
    std::unique_lock lock(mutex_);
    if (!slabs_) {
      lock.unlock();
      Slab* const fresh = Slab::make(pieceOctets);
      lock.lock();
      link(fresh);
      ++whole_;
    }
    Chain chain;
    Piece* last = nullptr;
    while (chain.pieces < most && slabs_) {
      Slab* const slab = slabs_;
      whole_ -= slab->isWhole(pieceOctets);
      while (chain.pieces < most && slab->free) {
        Piece* const piece = slab->take(pieceOctets);
        nextIs(piece, nullptr);
        last ? nextIs(last, piece) : void(chain.first = piece);
        last = piece;
        ++chain.pieces;
      }
      if (!slab->free) unlink(slab);
    }
    return chain;
  }

  /// `pieces` of the chain that begins with `first`; returns the next one behind.
  Piece* give(Piece* first, U32 pieces, std::size_t pieceOctets) noexcept {
    Slab* unused = nullptr;
    {
      const std::lock_guard guard(mutex_);
      for (; pieces; --pieces) {
        Piece* const piece = std::exchange(first, nextOf(first));
        Slab* const slab = Slab::of(piece);
        if (!slab->free) link(slab);
        slab->give(piece);
        if (!slab->isWhole(pieceOctets)) continue;
        if (whole_ == 0) {
          ++whole_;
        } else {
          unlink(slab);
          slab->next = std::exchange(unused, slab);
        }
      }
    }
    while (unused) Slab::drop(std::exchange(unused, unused->next));
    return first;
  }

 private:
  friend void lockDepots();
  friend void unlockDepots();

  void link(Slab* slab) {
    slab->previous = nullptr;
    slab->next = slabs_;
    if (slabs_) slabs_->previous = slab;
    slabs_ = slab;
  }
  void unlink(Slab* slab) {
    (slab->previous ? slab->previous->next : slabs_) = slab->next;
    if (slab->next) slab->next->previous = slab->previous;
  }

  std::mutex mutex_;  // guards all below, and what slabs and their free pieces hold
  Slab* slabs_ = nullptr;
  U32 whole_ = 0;  // of these, slabs of which no piece is in use
};

// Never destroyed: objects of static lifetime are freed at the very end.
constinit std::array<Depot, FreePieces::mostOctets / FreePieces::step> depots;

// A fork finds all depots whole, as it does the memory of `operator new`.
void lockDepots() {
  for (Depot& depot : depots) depot.mutex_.lock();
}
void unlockDepots() {
  for (Depot& depot : depots) depot.mutex_.unlock();
}

// While the library is loaded no other thread can fork: a child would lack the thread that was just
// asking for the handlers, and wait for it.
const int forkHandlers = pthread_atfork(lockDepots, unlockDepots, unlockDepots);

/// Asked by the first who takes memory; nobody has any to give before. Several may ask at once, and
/// find the same; a static with a lock of its own would be locked for good in the child of a fork.
bool slabsAreUsed() {
  enum : U8 { unknown, no, yes };
  static constinit std::atomic<U8> used{unknown};
  if (const U8 known = used.load(std::memory_order_relaxed)) return known == yes;
  const char* const wish = std::getenv("MOX_SLABS");
#ifdef __SANITIZE_ADDRESS__
  const std::string_view otherwise = "0";
#else
  const std::string_view otherwise = "1";
#endif
  const bool wanted = (wish && *wish ? std::string_view(wish) : otherwise) != "0";
  used.store(wanted ? yes : no, std::memory_order_relaxed);
  return wanted;
}

bool isOfSlab(std::size_t octets) {
  return octets - 1 < FreePieces::mostOctets && slabsAreUsed();  // nor zero
}

}  // namespace

void* FreePieces::takeSlowly(std::size_t octets) {
  if (!isOfSlab(octets)) return ::operator new(octets);
  const std::size_t size = pieceOctets(octets);
  const Chain chain = depots[indexOf(octets)].take(size, batch);
  Pieces& pieces = pieces_[indexOf(octets)];
  pieces.first = nextOf(chain.first);
  pieces.room = 2 * batch - (chain.pieces - 1);
  unpoison(chain.first, size);
  return chain.first;
}

// A full thread gives half of its pieces to the depot, those freed last.
void FreePieces::giveSlowly(void* memory, std::size_t octets) noexcept {
  if (!isOfSlab(octets)) return ::operator delete(memory);
  const std::size_t size = pieceOctets(octets);
  Pieces& pieces = pieces_[indexOf(octets)];
  if (pieces.first) pieces.first = depots[indexOf(octets)].give(pieces.first, batch, size);
  pieces.room = pieces.first ? batch : 2 * batch;
  give(memory, octets);
}

void FreePieces::giveAll() noexcept {
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    Pieces& pieces = pieces_[i];
    const std::size_t size = (i + 1) * step;
    if (pieces.first) depots[i].give(pieces.first, 2 * batch - pieces.room, size);
    pieces = {};
  }
}

std::size_t FreePieces::slabOctets() {
  return slabs.load(std::memory_order_relaxed) * slabAlignment;
}

void* FreePieces::takeShared(std::size_t octets) {
  if (!isOfSlab(octets)) return ::operator new(octets);
  const std::size_t size = pieceOctets(octets);
  Piece* const piece = depots[indexOf(octets)].take(size, 1).first;
  unpoison(piece, size);
  return piece;
}

void FreePieces::giveShared(void* memory, std::size_t octets) noexcept {
  if (!isOfSlab(octets)) return ::operator delete(memory);
  const std::size_t size = pieceOctets(octets);
  Piece* const piece = ::new (memory) Piece{nullptr};
  poison(piece, size);
  depots[indexOf(octets)].give(piece, 1, size);
}

}  // namespace Mox

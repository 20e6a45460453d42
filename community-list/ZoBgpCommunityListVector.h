// The elements of a list, and where they lie: a vector that is built by appending and ends sorted
// and exact, and objects whose elements stand behind them in one piece of memory.
//
// A list that is made ready, as those from the wire are, costs one allocation to make and one to
// end. A list that is built element by element keeps them in a piece of its own.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <span>
#include <utility>

#include "Mox/Entity.h"

namespace Routing::Bgp {

/// Sorts ascending and drops repeats, of which the first stays; returns how many are left. Most
/// lists are short: for these the plainest sort is the quickest.
template <class T, class Less = std::less<T>, class Same = std::equal_to<T>>
std::size_t sortAndDropRepeats(std::span<T> values, Less less = {}, Same same = {}) {
  constexpr std::size_t few = 32;
  if (values.size() > few) {
    std::sort(values.begin(), values.end(), less);
  } else {
    for (std::size_t i = 1; i < values.size(); ++i) {
      T value = std::move(values[i]);
      std::size_t at = i;
      for (; at > 0 && less(value, values[at - 1]); --at) values[at] = std::move(values[at - 1]);
      values[at] = std::move(value);
    }
  }
  return std::size_t(std::unique(values.begin(), values.end(), same) - values.begin());
}

/// Whether the elements ascend and none is there twice.
template <class T, class Less = std::less<T>>
bool ascends(std::span<T> values, Less less = {}) {
  const auto notAscending = [&](const T& a, const T& b) { return !less(a, b); };
  return std::adjacent_find(values.begin(), values.end(), notAscending) == values.end();
}

/// Sixteen octets on 64 bits. The storage is counted under the element's type, or with the object
/// behind which it stands.
template <class T>
class CommVector {
 public:
  static constexpr U32 longest = (1u << 29) - 1;

  CommVector() = default;
  CommVector(const CommVector&) = delete;
  CommVector& operator=(const CommVector&) = delete;
  ~CommVector() {
    std::destroy_n(data_, size_);
    freeStorage();
  }

  U32 size() const { return size_; }
  bool empty() const { return size_ == 0; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + size_; }
  const T& operator[](std::size_t i) const { return data_[i]; }
  std::size_t sizeInOctets() const { return size_ * sizeof(T); }

  /// Appends; legal also after the vector was exact, which it then no longer is.
  void add(T value) {
    if (size_ == capacity()) moveTo(std::max(2 * size_, U32{1}));
    new (data_ + size_) T(std::move(value));
    ++size_;
  }
  /// Appends all of another, which is empty then.
  void take(CommVector& other) {
    for (T& value : std::span(other.data_, other.size_)) add(std::move(value));
    std::destroy_n(other.data_, other.size_);
    other.room_ = other.capacity();
    other.exact_ = false;
    other.size_ = 0;
  }
  /// Room for `count` elements in total, if there is less.
  void reserve(U32 count) {
    if (count > capacity()) moveTo(count);
  }
  /// Sorts by `less`, keeps the first of the equal ones, and trims the storage to the size.
  template <class Less = std::less<T>, class Same = std::equal_to<T>>
  void sortAndTrim(Less less = {}, Same same = {}) {
    const std::span<T> all(data_, size_);
    const U32 left = ascends(all, less) ? size_ : U32(sortAndDropRepeats(all, less, same));
    std::destroy(data_ + left, data_ + size_);
    size_ = left;
    trim();
  }
  /// Trims the storage to the size.
  void trim() {
    if (size_ != capacity()) moveTo(size_);
    exact_ = true;
  }

  /// Room behind an object, which frees it: for exactly `count` elements, all of which are added
  /// before anything else is done.
  void roomIs(void* room, U32 count) {
    data_ = static_cast<T*>(room);
    room_ = count;
    inside_ = true;
    exact_ = count == 0;
  }
  bool inside() const { return inside_; }

  /// Whether the elements ascend and none is there twice; the owner's word.
  bool sorted() const { return sorted_; }
  void sortedIs(bool sorted) { sorted_ = sorted; }

  /// Where a table places this; kept while the vector is exact, from when it was set.
  U32 place() const { return room_; }
  void placeIs(U32 place) {
    MOX_ASSERT(size_ == capacity(), "size() == capacity()");
    exact_ = true;
    room_ = place;
  }

 private:
  using Allocator = Mox::TrackedAllocator<T>;

  U32 capacity() const { return exact_ ? size_ : room_; }
  void freeStorage() {
    if (data_ && !inside_) Allocator().deallocate(data_, capacity());
  }
  void moveTo(U32 count) {
    MOX_ASSERT(count <= longest, "size < 2^29");
    T* const to = count ? Allocator().allocate(count) : nullptr;
    std::uninitialized_move_n(data_, size_, to);
    std::destroy_n(data_, size_);
    freeStorage();
    data_ = to;
    inside_ = exact_ = false;
    room_ = count;
  }

  U32 size_ : 29 = 0;
  U32 exact_ : 1 = true;    // there is room for just the elements that are there
  U32 inside_ : 1 = false;  // the storage is part of an object
  U32 sorted_ : 1 = false;
  U32 room_ = 0;  // elements that there is room for; once exact, the place
  T* data_ = nullptr;
};

/// Octets behind an object, part of its memory.
struct Tail {
  std::size_t octets = 0;
};

/// As Mox::Entity, for classes whose objects may have a tail. `Object` says how long its own is:
/// `tailOctets()`.
template <class Object, class Base>
class TailEntity : public Mox::Entity<Object, Base> {
 public:
  using Mox::Entity<Object, Base>::Entity;

  /// A new object with its notifications on.
  static Mox::Ptr<Object> withTail(Tail tail, auto&&... arguments) {
    Mox::Ptr<Object> object(new (tail) Object(std::forward<decltype(arguments)>(arguments)...));
    object->hasNotificationActiveIs(true);
    return object;
  }
  void* tail() { return static_cast<Object*>(this) + 1; }

  static void* operator new(std::size_t octets) { return allocate(octets); }
  static void* operator new(std::size_t octets, Tail tail) {
    return allocate(octets + tail.octets);
  }
  static void operator delete(TailEntity* base, std::destroying_delete_t) {
    auto* const object = static_cast<Object*>(base);
    const std::size_t octets = sizeof(Object) + object->tailOctets();
    object->~Object();
    Object::type.allocation().deallocate(object, octets);
  }
  // For constructors that throw.
  static void operator delete(void* memory, std::size_t octets) noexcept {
    Object::type.allocation().deallocate(memory, octets);
  }
  static void operator delete(void* memory, Tail tail) noexcept {
    Object::type.allocation().deallocate(memory, sizeof(Object) + tail.octets);
  }

 private:
  static void* allocate(std::size_t octets) { return Object::type.allocation().allocate(octets); }
};

}  // namespace Routing::Bgp

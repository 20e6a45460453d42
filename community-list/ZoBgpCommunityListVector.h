// The elements of a list: a vector that is built by appending and ends sorted and exact.
//
//   CommVector<U32> values;
//   for (const U32 value : {5, 3, 5}) values.add(value);
//   values.sortAndTrim();   // 3, 5; the storage holds two
//
// 1. Elements are `T`s that can be moved: numbers, structures of numbers, smart pointers. Copies of
//    a vector are not to be had; a list is interned, not copied.
// 2. A vector allocates storage of its own, unless it is given room behind an object; see
//    ZoBgpCommunityListTail.h.
// 3. An `add` or `reserve` that std::bad_alloc ends has changed nothing in the vector.
//
// Threads: as any container of the standard library.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <span>
#include <utility>

#include "Mox/Allocation.h"
#include "Mox/Assert.h"

namespace Routing::Bgp {

/// Sorts ascending and drops repeats, of which the first stays; returns how many elements are left.
/// The elements behind these have unspecified values; the caller drops them. Most lists are short,
/// and the plainest sort is the quickest for these: up to 32 elements are sorted by insertion.
/// `same` is asked only about neighbours in the sorted order.
template <class T, class Less = std::less<T>, class Same = std::equal_to<T>>
std::size_t sortAndDropRepeats(std::span<T> values, Less less = {}, Same same = {}) {
  constexpr std::size_t few = 32;
  if (values.size() > few) {
    if constexpr (std::is_trivially_copyable_v<T>)  // equal ones cannot be told apart
      std::sort(values.begin(), values.end(), less);
    else
      std::stable_sort(values.begin(), values.end(), less);
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

/// Whether each element is less than the next one: sorted, and none twice. O(n).
template <class T, class Less = std::less<T>>
bool ascends(std::span<T> values, Less less = {}) {
  const auto notAscending = [&](const T& a, const T& b) { return !less(a, b); };
  return std::adjacent_find(values.begin(), values.end(), notAscending) == values.end();
}

/// Sixteen octets on 64 bits. Storage of its own is counted under the element's type, see
/// Mox/Allocation.h. References to elements hold until the vector grows, is sorted or is trimmed.
template <class T>
class CommVector {
 public:
  /// The most elements.
  static constexpr U32 longest = (1u << 29) - 1;

  CommVector() = default;
  CommVector(const CommVector&) = delete;
  CommVector& operator=(const CommVector&) = delete;
  ~CommVector() {
    if (!keepsWord_) std::destroy_n(data_, size_);
    freeStorage();
  }

  U32 size() const { return size_; }
  bool empty() const { return size_ == 0; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + size_; }
  /// REQUIRES: i < size(); not checked.
  const T& operator[](std::size_t i) const { return data_[i]; }

  /// Appends; amortized O(1), the storage doubles. Asserts "size < 2^29".
  void add(T value) {
    if (size_ == capacity()) moveTo(std::max(2 * size_, U32{1}));
    new (data_ + size_) T(std::move(value));
    ++size_;
  }
  /// Appends all elements of `other`, which is empty afterwards.
  void take(CommVector& other) {
    for (T& value : std::span(other.data_, other.size_)) add(std::move(value));
    std::destroy_n(other.data_, other.size_);
    other.size_ = 0;
  }
  /// Makes room for `count` elements in total, if there is less. Asserts "size < 2^29".
  void reserve(U32 count) {
    if (count > capacity()) moveTo(count);
  }
  /// Sorts by `less`, keeps the first of equal elements, trims the storage to the size. O(n) when
  /// the elements ascend already, as those of most peers do. Does not touch `sorted`.
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
  }

  /// Uses `count` elements' room behind an object; the object frees it and outlives the vector.
  /// REQUIRES: the vector is new, the room is aligned for `T`; not checked.
  void roomIs(void* room, U32 count) {
    data_ = static_cast<T*>(room);
    capacity_ = count;
    inside_ = true;
  }
  /// Octets of the room behind an object that the vector uses.
  std::size_t roomOctets() const { return inside_ ? capacity() * sizeof(T) : 0; }

  // A vector that has all its elements may keep a word of its owner's in place of its capacity,
  // until it grows. REQUIRES: none is taken from it meanwhile, by `take` or by `sortAndTrim`.

  /// Keeps the word. REQUIRES: the storage is trimmed.
  void wordIs(U32 word) requires std::is_trivially_destructible_v<T> { keepsWordIs(word); }
  /// Keeps the word, and gives away the references that the elements hold, `take(T)` for each. The
  /// elements can be read as before. They take their references again when the vector grows.
  /// REQUIRES: somebody holds the same objects for as long as the elements are read; `take` does
  /// not throw; the storage is trimmed.
  template <class Take>
  void lend(U32 word, Take take) {
    keepsWordIs(word);
    for (const T& value : std::span(data_, size_)) take(T::adopt(value.get()));
  }
  /// Whether there is a word; elements that hold references have lent them then.
  bool keepsWord() const { return keepsWord_; }
  /// REQUIRES: `keepsWord()`.
  U32 word() const { return capacity_; }
  /// Takes the references again. Needs no memory. REQUIRES: they are dropped.
  void reclaim() {
    for (const T& value : std::span(data_, size_)) (void)T(value).release();
    forgetWord();
  }

  /// Whether the elements ascend and none is there twice. Set by the owner; not checked.
  bool sorted() const { return sorted_; }
  /// See `sorted`.
  void sortedIs(bool sorted) { sorted_ = sorted; }

 private:
  using Allocator = Mox::TrackedAllocator<T>;

  U32 capacity() const { return keepsWord_ ? size_ : capacity_; }
  void keepsWordIs(U32 word) {
    MOX_ASSERT(size_ == capacity(), "size == capacity");
    keepsWord_ = true;
    capacity_ = word;
  }
  void forgetWord() {
    capacity_ = capacity();
    keepsWord_ = false;
  }
  void freeStorage() {
    if (data_ && !inside_) Allocator().deallocate(data_, capacity());
  }
  void moveTo(U32 count) {
    MOX_ASSERT(count <= longest, "size < 2^29");
    if constexpr (requires { &T::release; })
      if (keepsWord_) reclaim();
    forgetWord();
    T* const to = count ? Allocator().allocate(count) : nullptr;
    std::uninitialized_move_n(data_, size_, to);
    std::destroy_n(data_, size_);
    freeStorage();
    data_ = to;
    inside_ = false;
    capacity_ = count;
  }

  U32 size_ : 29 = 0;
  U32 inside_ : 1 = false;  // the storage is part of an object
  U32 sorted_ : 1 = false;
  U32 keepsWord_ : 1 = false;  // and elements that hold references have lent them
  U32 capacity_ = 0;  // elements that the storage has room for, at least `size_`; or a word
  T* data_ = nullptr;
};

}  // namespace Routing::Bgp

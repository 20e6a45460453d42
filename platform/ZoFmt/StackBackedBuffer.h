// A buffer for text of unknown length that starts on the stack and moves to the heap when full.
//
//   ZoFmt::StackBackedBuffer<128, 1024> buffer;
//   char* at = buffer.allocateSpace(12);        // room for 12 characters
//   buffer.written(4);                          // of which 4 were used
//   buffer.text()                               // those 4
//
// A formatter asks once, for the worst case of its whole text: growth copies the text that is
// there, and its step is small.
//
// Threads: one at a time.
#pragma once

#include <cstddef>
#include <string_view>

#include "Mox/Types.h"

namespace ZoFmt {

/// A buffer of any inline size, as formatters take it.
class DynamicBufferInterface {
 public:
  DynamicBufferInterface(const DynamicBufferInterface&) = delete;
  DynamicBufferInterface& operator=(const DynamicBufferInterface&) = delete;

  /// Where to write: there is room for at least `required` octets. Valid until the next call.
  /// Throws `std::bad_alloc`; the text is then as it was.
  char* allocateSpace(std::size_t required) {
    if (std::size_t(end_ - write_) < required) grow(required);
    return write_;
  }
  /// Adds so many octets of the space to the text.
  /// REQUIRES: they were written, and fit into the space.
  void written(std::size_t octets) { write_ += octets; }

  /// Octets of the text.
  std::size_t used() const { return std::size_t(write_ - begin_); }
  /// Octets that it may have before it grows.
  std::size_t capacity() const { return std::size_t(end_ - begin_); }
  /// Valid until the next call of `allocateSpace`.
  std::string_view text() const { return {begin_, used()}; }

 protected:
  /// REQUIRES: the space lives as long as the buffer.
  DynamicBufferInterface(char* inlineSpace, std::size_t size, std::size_t doublingCap)
      : inline_(inlineSpace),
        begin_(inlineSpace),
        write_(inlineSpace),
        end_(inlineSpace + size),
        doublingCap_(doublingCap) {}
  ~DynamicBufferInterface();

 private:
  // To max(min(2 x used, cap), used + required).
  void grow(std::size_t required);

  char* const inline_;
  char* begin_;
  char* write_;
  char* end_;
  const std::size_t doublingCap_;
};

/// A buffer with `inlineSize` octets inside the object. Growth doubles up to `doublingCap`; beyond
/// that it adds just the octets that are asked for.
template <std::size_t inlineSize, std::size_t doublingCap>
class StackBackedBuffer final : public DynamicBufferInterface {
 public:
  StackBackedBuffer() : DynamicBufferInterface(space_, inlineSize, doublingCap) {}

 private:
  char space_[inlineSize];
};

}  // namespace ZoFmt

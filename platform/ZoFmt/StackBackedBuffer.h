// A buffer for text of unknown length that starts on the stack and moves to the heap when full.
//
//   ZoFmt::StackBackedBuffer<128, 1024> buffer;
//   char* at = buffer.allocateSpace(12);        // room for 12 characters
//   buffer.written(4);                          // of which 4 were used
//   buffer.text()                               // those 4
//
// A formatter asks once, for the worst case of its whole text: growth copies what is there, and the
// step by which it grows is small.
#pragma once

#include <cstddef>
#include <string_view>

#include "Mox/Types.h"

namespace ZoFmt {

class DynamicBufferInterface {
 public:
  DynamicBufferInterface(const DynamicBufferInterface&) = delete;
  DynamicBufferInterface& operator=(const DynamicBufferInterface&) = delete;

  /// Where to write; at least `required` octets may be.
  char* allocateSpace(std::size_t required) {
    if (std::size_t(end_ - write_) < required) grow(required);
    return write_;
  }
  /// So many octets of the space were written.
  void written(std::size_t octets) { write_ += octets; }

  std::size_t used() const { return std::size_t(write_ - begin_); }
  std::size_t capacity() const { return std::size_t(end_ - begin_); }
  std::string_view text() const { return {begin_, used()}; }

 protected:
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

/// `inlineSize` octets inside the object; growth doubles up to `doublingCap`, and beyond that gives
/// what is asked for.
template <std::size_t inlineSize, std::size_t doublingCap>
class StackBackedBuffer final : public DynamicBufferInterface {
 public:
  StackBackedBuffer() : DynamicBufferInterface(space_, inlineSize, doublingCap) {}

 private:
  char space_[inlineSize];
};

}  // namespace ZoFmt

// The agent's byte buffer: octets are appended in network order and taken out as a string.
//
//   Serialize buffer;
//   buffer.addU8(0xC0);
//   buffer.addU32hton(0xFDE80064);
//   buffer.serializedString(1)   // FD E8 00 64
//
// 4096 octets are held inside, so a message of ordinary size costs no allocation; beyond that the
// buffer lives on the heap and doubles. It never shrinks. A copy holds the same octets.
//
// Threads: one at a time.
#pragma once

#include "Zonet/Ip6Addr.h"
#include "Zonet/NetworkOrder.h"

namespace Routing::Bgp {

class Serialize {
 public:
  static constexpr U32 inlineCapacity = 4096;

  Serialize() = default;
  /// A copy of the contents.
  Serialize(const Serialize& other) { *this = other; }
  /// Takes over the contents; the capacity never shrinks.
  Serialize& operator=(const Serialize& other);
  ~Serialize() {
    if (data_ != inline_) delete[] data_;
  }

  // Appending; doubles the capacity when there is no room. Asserts "octets <= largest - length_"
  // beyond 4 GiB.
  void addU8(U8 value) { *append(1) = value; }
  void addU16hton(U16 value) { Zonet::storeNetworkOrder(append(sizeof value), value); }
  void addU32hton(U32 value) { Zonet::storeNetworkOrder(append(sizeof value), value); }
  void addU64hton(const U64& value) { Zonet::storeNetworkOrder(append(sizeof value), value); }
  void addIpv6Addr(const Zonet::Ip6Addr& address) {
    std::memcpy(append(sizeof address.octets()), address.octets().data(), sizeof address.octets());
  }
  /// Appends that many octets for the caller to fill, until the next change of the buffer: the
  /// quick way for many values at once.
  U8* append(U32 octets) {
    if (capacity_ - length_ < octets) [[unlikely]]
      makeRoom(octets);
    U8* const place = data_ + length_;
    length_ += octets;
    return place;
  }

  /// Makes the capacity at least `capacity`, and never smaller.
  void growBuffer(U32 capacity);

  /// Octets of the contents.
  U32 length() const { return length_; }
  /// Octets that they may have before memory is asked for.
  U32 capacity() const { return capacity_; }
  /// The octets from `offset` to the end; asserts "offset <= length_".
  Mox::String serializedString(U32 offset) const;

 protected:
  /// Moves the write position; what lies beyond it is kept but is not part of the contents.
  void lengthIs(U32 length) { length_ = length; }

 private:
  void makeRoom(U32 octets);

  U8* data_ = inline_;             // inline_ or an array of its own
  U32 length_ = 0;                 // the write position, at most capacity_
  U32 capacity_ = inlineCapacity;  // octets at data_
  U8 inline_[inlineCapacity];      // left as it is: clearing it would cost more than filling it
};

}  // namespace Routing::Bgp

// Attributes as they come from a peer, on their way to a list.
//
//   auto read = CommList::fromWire(octets of the attribute's value);
//   if (!read) log(read.fault->toStrep());   // what a peer sends is never an assertion
//   else path.communities = read.list->dedup(table);
//
//   list type          attribute   octets of a value
//   standard                   8    4    one 32-bit word (RFC 1997)
//   extended                  16    8    see ZoBgpCommunityContent.h (RFC 4360)
//   extended, IPv6            25   20    see ExtCommIp6Content.h (RFC 5701)
//   large                     32   12    three 32-bit words (RFC 8092)
//
// An attribute holds these one behind the other and nothing else, numbers in network order. Here is
// the part of reading one that all list types have in common.
//
// Threads: all functions may be called from any; they share nothing.
#pragma once

#include <array>
#include <bit>
#include <optional>
#include <span>

#include "Mox/Ptr.h"
#include "Zonet/NetworkOrder.h"
#include "attr/BgpPathAttributeEnums.h"
#include "community-list/ZoBgpCommunityListVector.h"

namespace Routing::Bgp {

/// Why an attribute's value is no list (RFC 7606 section 7, RFC 8092 section 6). For one that is
/// empty or cut short these have the receiver treat the route as withdrawn, which is the caller's
/// to do.
struct WireFault {
  /// The fault of the octets.
  enum class Reason {
    empty,          ///< no octets: an attribute without communities is malformed
    notMultiple,    ///< the last value is cut short
    tooLong,        ///< more octets than an attribute's length can say
    linkBandwidth,  ///< a second link bandwidth, different from the first
  };

  BgpPathAttrType attribute = {};
  Reason reason = {};
  U32 offset = 0;     ///< in the value, where the fault begins
  U32 found = 0;      ///< octets that are there from `offset` on
  U32 valueSize = 0;  ///< octets of one community

  /// One line for people: "Community attribute, offset 8: 3 octets, expected a value of 4".
  Mox::String toStrep() const;
};

/// The result of reading an attribute's value: a list, or the fault. A look-up that finds nothing
/// gives neither.
template <class List>
struct FromWire {
  Mox::Ptr<List> list;  ///< private from `fromWire`, interned from `dedupWire`
  std::optional<WireFault> fault;
  U32 repeats = 0;  ///< values that were there more than once, and were dropped

  explicit operator bool() const { return bool(list); }
};

/// The most octets that an attribute's value can have: its length is two octets.
inline constexpr U32 maxAttributeOctets = 0xFFFF;

/// The fault of a length that `checkWireLength` refuses.
WireFault wireLengthFault(BgpPathAttrType attribute, std::size_t octets, U32 valueSize);

/// The length rule of all list types: a non-zero multiple of the value's size. Nothing for a length
/// that keeps it.
inline std::optional<WireFault> checkWireLength(BgpPathAttrType attribute, std::size_t octets,
                                                U32 valueSize) {
  if (octets != 0 && octets <= maxAttributeOctets && octets % valueSize == 0) [[likely]]
    return std::nullopt;
  return wireLengthFault(attribute, octets, valueSize);
}

/// Calls `use(word)` with the 32-bit words that values are made of, in order.
template <class Value, class Use>
void forEachWord(std::span<const Value> values, Use use) {
  for (const Value& value : values)
    for (const U32 word : std::bit_cast<std::array<U32, sizeof value / sizeof(U32)>>(value))
      use(word);
}

/// The value of `sizeof(Value)` octets of the wire. Values of 32-bit words have these in network
/// order; a content of extended communities knows its own octets.
template <class Value>
Value fromWireOctets(const U8* octets) {
  if constexpr (requires(const Value& value) { value.octets(); }) {
    return Value::fromOctets(std::span<const U8, sizeof(Value)>(octets, sizeof(Value)));
  } else {
    std::array<U32, sizeof(Value) / sizeof(U32)> words;
    for (std::size_t word = 0; word < words.size(); ++word)
      words[word] = Zonet::loadNetworkOrder<U32>(octets + word * sizeof(U32));
    return std::bit_cast<Value>(words);
  }
}

/// The octets of a value on the wire, which `fromWireOctets` reads.
template <class Value>
std::array<U8, sizeof(Value)> wireOctets(const Value& value) {
  if constexpr (requires { value.octets(); }) {
    return value.octets();
  } else {
    std::array<U8, sizeof(Value)> octets;
    U8* at = octets.data();
    forEachWord(std::span(&value, 1), [&](U32 word) {
      Zonet::storeNetworkOrder(at, word);
      at += sizeof word;
    });
    return octets;
  }
}

/// Reads the values of an attribute into `scratch` and returns them ascending and without repeats.
/// Most attributes have them so: found out on the way, without a branch. REQUIRES: the length is
/// one that `checkWireLength` lets pass, and `scratch` has room for all values; not checked.
template <class Value>
std::span<const Value> decodeAscending(std::span<const U8> octets, Value* scratch) {
  const std::size_t count = octets.size() / sizeof(Value);
  bool ascending = true;
  for (std::size_t i = 0; i < count; ++i) {
    scratch[i] = fromWireOctets<Value>(octets.data() + i * sizeof(Value));
    if (i) ascending &= scratch[i - 1] < scratch[i];
  }
  return {scratch, ascending ? count : sortAndDropRepeats(std::span(scratch, count))};
}

/// Calls `use(scratch)` with room for `count` values on the stack, so that a look-up allocates
/// nothing. The longest attribute takes 64 KiB of stack, usual ones 1 KiB. REQUIRES: `count` values
/// fit in an attribute; not checked.
template <class Value, class Use>
auto withScratch(std::size_t count, Use use) {
  static_assert(std::is_trivially_copyable_v<Value>);
  constexpr std::size_t usual = 1024;
  if (count * sizeof(Value) <= usual) [[likely]] {
    alignas(Value) std::byte scratch[usual];
    return use(reinterpret_cast<Value*>(scratch));
  }
  return [&]() __attribute__((noinline)) {
    alignas(Value) std::byte scratch[maxAttributeOctets];
    return use(reinterpret_cast<Value*>(scratch));
  }
  ();
}

}  // namespace Routing::Bgp

// Attributes as they come from a peer, on their way to a list.
//
//   auto read = CommList::fromWire(octets of the attribute's value);
//   if (!read) log(read.fault->toStrep());   // what a peer sends is never an assertion
//   else path.communities = read.list->dedup(table);
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <optional>
#include <span>

#include "Mox/Ptr.h"
#include "Zonet/NetworkOrder.h"
#include "attr/BgpPathAttributeEnums.h"

namespace Routing::Bgp {

/// Why an attribute's value is no list (RFC 7606 section 7, RFC 8092 section 6).
struct WireFault {
  enum class Reason {
    empty,        ///< no octets: an attribute without communities is malformed
    notMultiple,  ///< the last value is cut short
    tooLong,      ///< more octets than an attribute's length can say
  };

  BgpPathAttrType attribute = {};
  Reason reason = {};
  U32 offset = 0;     ///< in the value, where the fault begins
  U32 found = 0;      ///< octets that are there from `offset` on
  U32 valueSize = 0;  ///< octets of one community

  /// One line for people: "Community attribute, offset 8: 3 octets, expected a value of 4".
  Mox::String toStrep() const;
};

/// The length rule of all four kinds: a non-zero multiple of the value's size.
std::optional<WireFault> checkWireLength(BgpPathAttrType attribute, std::size_t octets,
                                         U32 valueSize);

/// What reading an attribute's value gives: a list, or the fault. A look-up that finds nothing
/// gives neither.
template <class List>
struct FromWire {
  Mox::Ptr<List> list;
  std::optional<WireFault> fault;
  U32 repeats = 0;  ///< values that were there more than once, and were dropped

  explicit operator bool() const { return bool(list); }
};

/// The most octets that an attribute's value can have: its length is two octets.
inline constexpr U32 maxAttributeOctets = 0xFFFF;

/// The 32-bit words that values are made of, in order.
template <class Value, class Use>
void forEachWord(std::span<const Value> values, Use use) {
  for (const Value& value : values)
    for (const U32 word : std::bit_cast<std::array<U32, sizeof value / sizeof(U32)>>(value))
      use(word);
}

/// Reads values whose words are in network order. Returns whether they ascend without repeats, as
/// in most attributes: found on the way, without a branch.
template <class Value>
bool decodeWords(std::span<const U8> octets, Value* values) {
  bool ascending = true;
  for (std::size_t i = 0; i < octets.size() / sizeof(Value); ++i) {
    std::array<U32, sizeof(Value) / sizeof(U32)> words;
    for (std::size_t word = 0; word < words.size(); ++word)
      words[word] = Zonet::loadNetworkOrder<U32>(&octets[(i * words.size() + word) * sizeof(U32)]);
    values[i] = std::bit_cast<Value>(words);
    if (i) ascending &= values[i - 1] < values[i];
  }
  return ascending;
}

/// Sorts ascending and drops repeats; returns how many values are left. Most lists are short: for
/// these the plainest sort is the quickest.
template <class Value>
std::size_t sortAndDropRepeats(std::span<Value> values) {
  constexpr std::size_t few = 32;
  if (values.size() > few) {
    std::sort(values.begin(), values.end());
  } else {
    for (std::size_t i = 1; i < values.size(); ++i) {
      const Value value = values[i];
      std::size_t at = i;
      for (; at > 0 && value < values[at - 1]; --at) values[at] = values[at - 1];
      values[at] = value;
    }
  }
  return std::size_t(std::unique(values.begin(), values.end()) - values.begin());
}

/// Calls `use(scratch)` with room for `count` values on the stack, so that a look-up allocates
/// nothing even for the longest attribute (64 KiB of stack then, 1 KiB for usual ones).
template <class Value, class Use>
auto withScratch(std::size_t count, Use use) {
  constexpr std::size_t usual = 1024 / sizeof(Value);
  if (count <= usual) [[likely]] {
    Value scratch[usual];
    return use(scratch);
  }
  return [&]() __attribute__((noinline)) {
    Value scratch[maxAttributeOctets / sizeof(Value)];
    return use(scratch);
  }
  ();
}

}  // namespace Routing::Bgp

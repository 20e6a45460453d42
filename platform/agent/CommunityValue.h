// A large community as policy handles it (RFC 8092): three numbers.
//
//   Acl::CommunityValue value(65000, 1, 2);
//   valueToStrep(value)                           // "65000:1:2"
//   value < Acl::CommunityValue(65000, 2, 0)      // true
//
// 1. A value has twelve octets and no padding: lists compare and copy values as memory.
#pragma once

#include <compare>

#include "Mox/Allocation.h"

namespace Acl {
using namespace Mox::Words;

/// A plain value, ordered word by word.
class CommunityValue {
 public:
  constexpr CommunityValue() = default;
  /// In the order of the wire.
  constexpr CommunityValue(U32 globalAdmin, U32 localData1, U32 localData2)
      : globalAdmin_(globalAdmin), localData1_(localData1), localData2_(localData2) {}

  // The Global Administrator and the two Local Data Parts of RFC 8092.
  constexpr U32 globalAdmin() const { return globalAdmin_; }
  constexpr U32 localData1() const { return localData1_; }
  constexpr U32 localData2() const { return localData2_; }

  friend constexpr auto operator<=>(const CommunityValue&, const CommunityValue&) = default;

 private:
  U32 globalAdmin_ = 0;  // as a rule the number of the AS that gives the others their meaning
  U32 localData1_ = 0;
  U32 localData2_ = 0;
};

/// The three words in decimal, with colons between them.
Mox::String valueToStrep(const CommunityValue& value);

}  // namespace Acl

template <>
const Mox::AllocationTracker& Mox::storageTracker<Acl::CommunityValue>();

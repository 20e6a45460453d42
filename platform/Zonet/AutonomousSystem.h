// The number of an autonomous system and its text (RFC 5396).
//
//   Zonet::AutonomousSystem(65636).displayString(false)   // "65636", asplain
//   Zonet::AutonomousSystem(65636).displayString(true)    // "1.100", asdot
//   Zonet::AutonomousSystem(65000).displayString(true)    // "65000"
#pragma once

#include "Mox/Types.h"

namespace Zonet {

class AutonomousSystem {
 public:
  static constexpr std::size_t longestText = 11;

  /// Two octets or four: the number does not say.
  constexpr explicit AutonomousSystem(U32 number) : number_(number) {}

  /// In host order.
  constexpr U32 number() const { return number_; }
  /// Decimal; with `asdot`, a number above 65535 as its two halves with a dot between them.
  Mox::String displayString(bool asdot) const;
  /// Writes the same text, at most `longestText` characters, and returns its end.
  char* toChars(char* at, bool asdot) const;

 private:
  U32 number_;
};

}  // namespace Zonet

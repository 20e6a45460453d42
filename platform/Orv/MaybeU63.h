// A number of 63 bits, or none, in 64 bits: the top bit says that there is none.
//
//   Orv::MaybeU63 length;              // valueToStrep(length) is "-"
//   length = Orv::MaybeU63(24);        // "24"
//   sequenceToValue("-", length);      // none again
#pragma once

#include "Mox/Text.h"

namespace Orv {

class MaybeU63 {
 public:
  static constexpr U64 nullBit = 1ULL << 63;
  static constexpr U64 unspecifiedValue = nullBit;

  constexpr MaybeU63() = default;
  /// RangeException for a number that needs the top bit, which would otherwise read as "none".
  explicit MaybeU63(U64 number);

  /// Whether there is none.
  constexpr bool isUnspecified() const { return word_ & nullBit; }
  /// The number; `unspecifiedValue` when there is none.
  constexpr U64 word() const { return word_; }

  friend constexpr bool operator==(const MaybeU63&, const MaybeU63&) = default;

 private:
  U64 word_ = unspecifiedValue;  // the top bit alone, or a number without it
};

/// Decimal, or "-" when there is none.
Mox::String valueToStrep(const MaybeU63& value);
std::ostream& operator<<(std::ostream& stream, const MaybeU63& value);
/// Reads what `valueToStrep` writes. ParseException for other text, RangeException for a number
/// of more than 63 bits; `value` is then unchanged.
void sequenceToValue(std::string_view text, MaybeU63& value);

}  // namespace Orv

// Compact values of path attributes: an optional number with bounds, and a word of packed fields.
//
//   BgpExtCommPktSubtype subtype;           // unspecified, "-"
//   subtype.valueIs(2);                     // U64(subtype) is 2
//   subtype.valueIs(256);                   // RangeException, and unspecified again
//
//   BgpDenseU32Attr word;
//   word.valueU8Is(1, 0xAB);                // word.value() is 0x0000AB00
//   word.valueBool(8)                       // true
//
// Both are plain values, to be held inside the records of others.
#pragma once

#include "Mox/Type.h"
#include "Orv/MaybeU63.h"

namespace Routing::Bgp {

/// An unsigned 63-bit number that may be unspecified. Subclasses set the bounds. The bounds here
/// admit nothing, on purpose: a plain `BgpMaybeU63` can only be unspecified, and a subclass that
/// forgets its bounds refuses its first number.
class BgpMaybeU63 {
 public:
  static const Mox::Type type;
  static constexpr U64 nullBit = Orv::MaybeU63::nullBit;
  static constexpr U64 unspecifiedValue = Orv::MaybeU63::unspecifiedValue;

  /// The smallest and the largest number allowed.
  virtual U64 min() const { return 1; }
  /// See `min`.
  virtual U64 max() const { return 0; }
  /// The number that "unspecified" counts as when paths are compared.
  virtual U64 bestpathCompareUnspecifiedValue() const { return 0; }

  /// Whether there is no number.
  bool isUnspecified() const { return value_.isUnspecified(); }
  /// The number. Asserts "Caller must check isUnspecified() before getting value()".
  operator U64() const;
  /// The number that paths are compared by.
  U64 bestpathCompareValue() const {
    return isUnspecified() ? bestpathCompareUnspecifiedValue() : value_.word();
  }

  /// RangeException for a number outside the bounds. The number is dropped first, so that the value
  /// is unspecified afterwards.
  void checkValue();

  /// Decimal, or "-" when unspecified.
  Mox::String toStrep() const { return valueToStrep(value_); }

  /// Numbers are compared, not bounds; unspecified is equal to itself.
  friend bool operator==(const BgpMaybeU63& a, const BgpMaybeU63& b) {
    return a.value_ == b.value_;
  }
  /// As `toStrep`.
  friend Mox::String valueToStrep(const BgpMaybeU63& value) { return value.toStrep(); }
  friend std::ostream& operator<<(std::ostream& stream, const BgpMaybeU63& value) {
    return stream << value.value_;
  }
  /// Reads what `toStrep` writes, as Orv::MaybeU63 does. The bounds are not looked at: call
  /// `checkValue()` after reading untrusted text.
  friend void sequenceToValue(std::string_view text, BgpMaybeU63& value) {
    sequenceToValue(text, value.value_);
  }

 protected:
  /// Stores a number and checks it, for constructors and mutators of subclasses. A number that
  /// needs the top bit is outside of any bounds.
  void numberIs(U64 number);

 private:
  Orv::MaybeU63 value_;
};

/// The subtype octet of an extended community, unspecified for a type that has no subtypes.
class BgpExtCommPktSubtype : public BgpMaybeU63 {
 public:
  static const Mox::Type type;

  BgpExtCommPktSubtype() = default;
  /// RangeException for a value outside the bounds.
  explicit BgpExtCommPktSubtype(U64 value) { numberIs(value); }

  U64 min() const override { return 0; }
  U64 max() const override { return 255; }
  /// RangeException for a value outside the bounds; the subtype is then unspecified.
  void valueIs(const U64& value) {
    if (isUnspecified() || U64(*this) != value) numberIs(value);
  }
};

/// A word seen as sixteen flags (bits 0 to 15), four octets or two halves, which overlap: octet 0
/// is flags 0 to 7, half 0 is octets 0 and 1. The owner decides which part is read how. Every
/// field always has a value, so nothing can be deleted.
///
/// An index beyond a view raises RangeException with the operation's name and changes nothing;
/// deleting raises NotDeletableException, for every index.
class BgpDenseU32Attr {
 public:
  static const Mox::Type type;

  BgpDenseU32Attr() = default;
  /// All views at once.
  explicit BgpDenseU32Attr(U32 value) : value_(value) {}

  /// The word.
  U32 value() const { return value_; }
  /// Replaces all views.
  void valueIs(U32 value) { value_ = value; }

  // Flags, 0 to 15.
  bool valueBool(U8 index) const;
  void valueBoolIs(U8 index, bool value);
  [[noreturn]] void valueBoolDel(U8 index);

  // Octets, 0 to 3; 0 is the least significant.
  U8 valueU8(U8 index) const;
  void valueU8Is(U8 index, U8 value);
  [[noreturn]] void valueU8Del(U8 index);

  // Halves, 0 and 1; 0 is the less significant.
  U16 valueU16(U8 index) const;
  void valueU16Is(U8 index, U16 value);
  [[noreturn]] void valueU16Del(U8 index);

  friend bool operator==(const BgpDenseU32Attr&, const BgpDenseU32Attr&) = default;
  /// The word in decimal.
  friend Mox::String valueToStrep(const BgpDenseU32Attr& attr) {
    return Mox::valueToStrep(attr.value_);
  }
  friend std::ostream& operator<<(std::ostream& stream, const BgpDenseU32Attr& attr) {
    return Mox::writeText(stream, valueToStrep(attr));
  }
  /// Reads a decimal number, as for any U32.
  friend void sequenceToValue(std::string_view text, BgpDenseU32Attr& attr) {
    Mox::sequenceToValue(text, attr.value_);
  }

 private:
  U32 value_ = 0;
};

static_assert(sizeof(BgpMaybeU63) == sizeof(void*) + sizeof(U64));
static_assert(sizeof(BgpDenseU32Attr) == sizeof(U32));

}  // namespace Routing::Bgp

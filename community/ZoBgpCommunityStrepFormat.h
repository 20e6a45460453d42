// The flags that choose what the policy text of an extended community shows.
//
//   ExtComm::StrepFormat format(strepFormatClassification | strepFormatUI);
//   comm->toStrepForPolicy(format)        // "Route-Target-AS:65000:100"
//   format.has(strepFormatAsdot)          // false
//   ExtComm::StrepFormat(0x40)            // RangeException
//
// Each family has a class of its own; the two differ in the name in their text.
#pragma once

#include "attr/BgpEnum.h"

namespace Routing::Bgp {

/// - `Qualifier`: mark four-octet AS numbers with an `L`
/// - `Classification`: say what the community is
/// - `UI`: in full words; alone it changes nothing
/// - `Asdot`: large AS numbers as `1.100` instead of `65636`
/// - `LinkBwWeighted`: link bandwidth as the number instead of with a unit
#define MOX_ROWS(X)                  \
  X(strepFormatDefault, 0x01)        \
  X(strepFormatQualifier, 0x02)      \
  X(strepFormatClassification, 0x04) \
  X(strepFormatUI, 0x08)             \
  X(strepFormatAsdot, 0x10)          \
  X(strepFormatLinkBwWeighted, 0x20)
enum StrepFormatFlag : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(StrepFormatFlag, MOX_ROWS);
#undef MOX_ROWS

// Bodies that both families share.
[[noreturn]] void raiseStrepFormatRange();
Mox::String strepFormatText(std::string_view typeName, U32 value);
U32 readStrepFormat(std::string_view typeName, std::string_view text);

/// `Family::strepFormatName` is the qualified name that the text shows.
template <class Family>
class StrepFormatOf {
 public:
  static constexpr U32 max = 0x3f;

  /// No flag.
  constexpr StrepFormatOf() = default;
  /// RangeException for a value above `max`.
  constexpr explicit StrepFormatOf(U32 value) { valueIs(value); }

  /// The flags, or-ed.
  constexpr U32 value() const { return value_; }
  /// RangeException for a value above `max`; nothing changes then.
  constexpr void valueIs(U32 value) {
    if (value > max) raiseStrepFormatRange();
    value_ = value;
  }
  /// Whether all of these flags are set.
  constexpr bool has(U32 flags) const { return (value_ & flags) == flags; }
  /// Whether the text says what the community is, and in full words.
  constexpr bool inFull() const { return has(strepFormatClassification | strepFormatUI); }

  friend constexpr bool operator==(const StrepFormatOf&, const StrepFormatOf&) = default;
  /// `Value('Routing::Bgp::ExtComm::StrepFormat', ** {'strepFormatDefault': True, ...})`, all six
  /// in the order of their bits.
  friend Mox::String valueToStrep(const StrepFormatOf& format) {
    return strepFormatText(Family::strepFormatName, format.value_);
  }
  friend std::ostream& operator<<(std::ostream& stream, const StrepFormatOf& format) {
    return Mox::writeText(stream, valueToStrep(format));
  }
  /// Reads exactly what `valueToStrep` writes; ParseException says where another text departs from
  /// it, and the format is unchanged then.
  friend void sequenceToValue(std::string_view text, StrepFormatOf& format) {
    format.valueIs(readStrepFormat(Family::strepFormatName, text));
  }

 private:
  U32 value_ = 0;
};

}  // namespace Routing::Bgp

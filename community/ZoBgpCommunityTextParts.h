// Reading the text of a community part by part: `route-target-as2:65000:100` has three.
//
//   CommunityTextParts parts("65000:100");
//   const auto as = parts.number(16);       // 65000
//   const auto value = parts.number(16);    // 100
//   if (!as || !value) return parts.error();
//
// A part is the text between two colons; colons in brackets, as those of an IPv6 address, do not
// divide. The first error is kept: position, token, what was expected. Nothing is thrown but
// `std::bad_alloc`.
#pragma once

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "Mox/Types.h"

namespace Routing::Bgp {
using namespace Mox::Words;

/// Why a text is no community.
struct CommunityTextError {
  std::size_t position = 0;  ///< of the token in the text, in octets from 0
  Mox::String token = {};
  Mox::String expected = {};  ///< after "expected", as "a decimal number below 65536"
  Mox::String nearest = {};   ///< an identifier that is close to the token, if there is one

  /// `at 17: "65536": expected a decimal number below 65536`, then `; did you mean "..."?`. Of the
  /// token the first 64 octets, with all but printable ASCII escaped.
  Mox::String text() const;
};

/// A value, or why there is none.
template <class Value>
struct ParsedCommunity {
  std::optional<Value> value = {};
  CommunityTextError error = {};

  explicit operator bool() const { return value.has_value(); }
  /// REQUIRES: there is a value.
  const Value& operator*() const { return *value; }
  /// REQUIRES: there is a value.
  const Value* operator->() const { return &*value; }
};

class CommunityTextParts {
 public:
  /// REQUIRES: the text lives as long as the parts.
  explicit CommunityTextParts(std::string_view text);

  /// How many parts there are, at least one.
  std::size_t count() const { return parts_.size(); }
  /// How many have not been taken.
  std::size_t left() const { return parts_.size() - next_; }
  /// A part, whether taken or not. REQUIRES: index < count().
  std::string_view operator[](std::size_t index) const { return parts_[index]; }
  /// The part that is taken next. REQUIRES: left() > 0.
  std::string_view peek() const { return parts_[next_]; }
  /// The same, and moves on. REQUIRES: left() > 0.
  std::string_view take() { return parts_[next_++]; }

  // Each takes one part, and gives nothing, and keeps the error, when it is something else or there
  // is none.

  /// Decimal, without sign or leading zeros, of at most so many bits (1 to 64).
  std::optional<U64> number(U32 bits);
  /// Two hexadecimal digits.
  std::optional<U8> octet();

  /// Keeps an error about the part taken last, or about the whole text when none was, unless there
  /// is one.
  void fail(std::string_view expected);
  /// The same about any piece of the text.
  void fail(std::string_view token, std::string_view expected);
  /// Whether an error is kept.
  bool failed() const { return error_.has_value(); }
  /// REQUIRES: failed().
  const CommunityTextError& error() const { return *error_; }

 private:
  std::string_view text_;
  std::vector<std::string_view> parts_;  // at least one
  std::size_t next_ = 0;
  std::optional<CommunityTextError> error_;
};

/// A decimal number without sign or leading zeros; nothing for any other text, or beyond `bits`.
std::optional<U64> decimalNumber(std::string_view text, U32 bits);

/// The letter that names are compared by: in lower case, and `-`, `_` and a blank are one.
constexpr char comparedLetter(char c) {
  if (c == '-' || c == ' ') return '_';
  return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}
/// Whether names differ in these only, as `no-export` and `NO_EXPORT`.
constexpr bool isSameWord(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, comparedLetter, comparedLetter);
}

}  // namespace Routing::Bgp

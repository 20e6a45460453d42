#include "community/ZoBgpCommunityTextParts.h"

#include <charconv>

namespace Routing::Bgp {

Mox::String CommunityTextError::text() const {
  constexpr std::size_t shown = 64;
  Mox::String text = "at " + std::to_string(position) + ": \"";
  for (const char c : std::string_view(token).substr(0, shown)) {
    constexpr char digits[] = "0123456789abcdef";
    const auto octet = U8(c);
    if (octet < 0x20 || octet >= 0x7f)
      text += {'\\', 'x', digits[octet >> 4], digits[octet & 15]};
    else
      text += c;
  }
  text += (token.size() > shown ? "...\": expected " : "\": expected ") + expected;
  if (!nearest.empty()) text += "; did you mean \"" + nearest + "\"?";
  return text;
}

CommunityTextParts::CommunityTextParts(std::string_view text) : text_(text) {
  std::size_t begin = 0;
  bool inBrackets = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '[') inBrackets = true;
    if (text[i] == ']') inBrackets = false;
    if (text[i] != ':' || inBrackets) continue;
    parts_.push_back(text.substr(begin, i - begin));
    begin = i + 1;
  }
  parts_.push_back(text.substr(begin));
}

std::optional<U64> decimalNumber(std::string_view text, U32 bits) {
  if (text.size() > 1 && text[0] == '0') return {};
  U64 number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, number);
  if (fault != std::errc() || stop != end || (bits < 64 && number >> bits)) return {};
  return number;
}

std::optional<U64> CommunityTextParts::number(U32 bits) {
  if (left() == 0) {
    fail("a number more");
    return {};
  }
  const auto number = decimalNumber(take(), bits);
  if (!number)
    fail("a decimal number " +
         (bits < 64 ? "below " + std::to_string(1ULL << bits) : Mox::String("of 64 bits")));
  return number;
}

std::optional<U8> CommunityTextParts::octet() {
  U8 octet = 0;
  if (left()) {
    const std::string_view part = take();
    const auto [stop, fault] = std::from_chars(part.data(), part.data() + part.size(), octet, 16);
    if (part.size() == 2 && fault == std::errc() && stop == part.data() + 2) return octet;
  }
  fail("two hexadecimal digits");
  return {};
}

void CommunityTextParts::fail(std::string_view expected) {
  fail(next_ ? parts_[next_ - 1] : text_, expected);
}

void CommunityTextParts::fail(std::string_view token, std::string_view expected) {
  if (!error_)
    error_ = CommunityTextError{std::size_t(token.data() - text_.data()), Mox::String(token),
                                Mox::String(expected)};
}

}  // namespace Routing::Bgp

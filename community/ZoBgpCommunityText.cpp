#include "community/ZoBgpCommunityText.h"

namespace Routing::Bgp {

CommText& CommText::operator<<(double number) {
  constexpr std::size_t longest = 16;  // "-1.23457e-308" and room to spare
  return append(longest, [number](char* at) {
    return std::to_chars(at, at + longest, number, std::chars_format::general, 6).ptr;
  });
}

CommText& CommText::hex(U8 octet) {
  constexpr char digits[] = "0123456789abcdef";
  return *this << digits[octet >> 4] << digits[octet & 0xF];
}

CommText& CommText::content(const ExtCommContent& content, const std::ostream& stream) {
  const bool upper = stream.flags() & std::ios_base::uppercase;
  const char* const digits = upper ? "0123456789ABCDEF" : "0123456789abcdef";
  // Like `std::showbase`: zero gets no 0x, so it prints as 18 zeros.
  *this << (content.value() == 0 ? "00" : upper ? "0X" : "0x");
  return append(16, [&](char* at) {
    for (int shift = 60; shift >= 0; shift -= 4) *at++ = digits[content.value() >> shift & 0xF];
    return at;
  });
}

CommText& CommText::typeAndSubtype(std::string_view name, U8 type, U8 subtype, bool transitive) {
  return hex(type & 0xBF).hex(subtype) << name << (transitive ? "" : "(NT)");
}

}  // namespace Routing::Bgp

// Text of one community in the making.
//
//   CommText text;
//   text << "RT:" << U32{65000} << ':' << U16{100};
//   return text.str();   // or text.writeTo(stream)
//
// The text is never cut: beyond 256 characters, more than any text of this library has, it goes on
// the heap. Neither a stream's format nor a locale changes it.
#pragma once

#include <charconv>
#include <cstring>
#include <ostream>
#include <streambuf>

#include "Mox/Enum.h"
#include "ZoFmt/StackBackedBuffer.h"
#include "Zonet/AutonomousSystem.h"
#include "Zonet/Ip4Addr.h"
#include "Zonet/Ip6Addr.h"
#include "community/ZoBgpCommunityContent.h"

namespace Routing::Bgp {

class CommText {
 public:
  /// The text as it is.
  CommText& operator<<(std::string_view text) {
    text.copy(buffer_.allocateSpace(text.size()), text.size());
    buffer_.written(text.size());
    return *this;
  }
  /// The character as it is.
  CommText& operator<<(char character) { return *this << std::string_view(&character, 1); }
  /// Decimal, octets too.
  template <std::unsigned_integral U>
  CommText& operator<<(U number) {
    return append(20, [number](char* at) { return std::to_chars(at, at + 20, number).ptr; });
  }
  /// Six significant digits, in scientific notation where that is shorter, like a stream whose
  /// format nobody has changed. `inf` and `nan` have their sign.
  CommText& operator<<(double number);
  /// The name, or the number when it has none.
  template <Mox::Enumeration E>
  CommText& operator<<(E value) {
    const auto* row = Mox::enumTableOf<E>.find(U32(value));
    return row ? *this << row->name : *this << U32(value);
  }
  /// As `Zonet::Ip4Addr::toStrep`.
  CommText& operator<<(const Zonet::Ip4Addr& address) {
    return append(address.longestText, [&](char* at) { return address.toChars(at); });
  }
  /// As `Zonet::Ip6Addr::toStrep`.
  CommText& operator<<(const Zonet::Ip6Addr& address) {
    return append(address.longestText + 1, [&](char* at) { return address.toChars(at); });
  }

  /// See Zonet::AutonomousSystem.
  CommText& asNumber(U32 number, bool asdot) {
    const Zonet::AutonomousSystem as(number);
    return append(as.longestText, [&](char* at) { return as.toChars(at, asdot); });
  }
  /// Two lower-case hexadecimal digits.
  CommText& hex(U8 octet);
  /// The eighteen characters of a content, in upper case when `stream` writes so.
  CommText& content(const ExtCommContent& content, const std::ostream& stream);
  /// The beginning of a policy text: type and subtype as `0302`, then `name`, then `(NT)` unless
  /// transitive. The type is shown without its bit 0x40, which says so.
  CommText& typeAndSubtype(std::string_view name, U8 type, U8 subtype, bool transitive);

  /// All that was written.
  Mox::String str() const { return Mox::String(buffer_.text()); }
  /// The same, in one write.
  std::ostream& writeTo(std::ostream& stream) const {
    return Mox::writeText(stream, buffer_.text());
  }

 private:
  template <class Write>
  CommText& append(std::size_t atMost, Write write) {
    char* const start = buffer_.allocateSpace(atMost);
    buffer_.written(std::size_t(write(start) - start));
    return *this;
  }

  ZoFmt::StackBackedBuffer<256, 1024> buffer_;
};

/// A stream's buffer that gathers a text, for texts that can be had through a stream only.
class CommTextSink final : public std::streambuf {
 public:
  /// All that was written.
  Mox::String str() const { return text_.str(); }

 private:
  std::streamsize xsputn(const char* characters, std::streamsize count) override {
    text_ << std::string_view(characters, std::size_t(count));
    return count;
  }
  int_type overflow(int_type character) override {
    if (character != traits_type::eof()) text_ << traits_type::to_char_type(character);
    return traits_type::not_eof(character);
  }

  CommText text_;
};

}  // namespace Routing::Bgp

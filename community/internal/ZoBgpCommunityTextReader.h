// Reading a text of known shape piece by piece. Every fault is a ParseException that says where in
// the whole text it is.
//
//   TextReader reader("type=T;rest");
//   reader.literal("type=");
//   reader.octet();    // 'T'
//   reader.rest();     // ";rest"
#pragma once

#include "Mox/Exception.h"
#include "attr/BgpEnum.h"

namespace Routing::Bgp {

class TextReader {
 public:
  explicit TextReader(std::string_view text) : text_(text) {}

  /// Steps over `expected`.
  void literal(std::string_view expected);
  /// Any next octet.
  U8 octet();
  /// `True` or `False`.
  bool boolean();
  /// The text before the next `mark`.
  std::string_view upTo(std::string_view mark);
  /// All text that is left.
  std::string_view rest();
  /// A fault when text is left.
  void end();

  /// Reads a value from a piece of the text. A fault's offset counts from the start of the text.
  template <class Value>
  void read(std::string_view piece, Value& value) const {
    try {
      sequenceToValue(piece, value);
    } catch (const Mox::ParseException& fault) {
      const auto start = std::size_t(piece.data() - text_.data());
      throw Mox::ParseException(fault.what(), start + fault.offset());
    }
  }

 private:
  [[noreturn]] void raise(std::string_view expected, std::size_t offset) const;

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace Routing::Bgp

// Octets as people have them in hex: digits in a piece, in pairs with something between, with 0x or
// \x before each, or as packet tools print them, with offsets in front and letters behind.
//
//   readHexText("C0 08:04 fde80064")           // c0 08 04 fd e8 00 64, not in one piece
//   readHexText("0x0000:  4001 0100 ...")      // a line of a dump: its offset is no octet
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ReaderNames.h"

namespace bgpcomm {

struct HexText {
  std::vector<U8> octets;
  bool inOnePiece = true;  ///< nothing but digits, and perhaps 0x in front
};

/// Throws DataError, which says at which character the text is something else. `plain` accepts only
/// blanks and colons between pairs.
HexText readHexText(std::string_view text, bool plain = false);

/// A dump, line by line. A line begins with the number of octets before it, in four or more
/// hexadecimal digits or in seven octal ones, and a colon or two blanks; one is enough in front of
/// pairs. `*` stands for lines like the one before.
class Dump {
 public:
  /// Takes a line that begins the dump or goes on with it; false for any other.
  bool take(std::string_view line);
  bool empty() const { return octets_.empty(); }
  /// Whether the last line was the length of all.
  bool complete() const { return complete_; }
  /// Throws DataError when a `*` was last: nothing says how many lines it stands for.
  const std::vector<U8>& octets() const;

 private:
  /// Whether an offset is the next one. Fills in what a `*` stands for.
  bool isNext(std::string_view digits, int base);

  std::vector<U8> octets_;
  std::size_t lineSize_ = 0;  // octets of the last line
  int base_ = 0;              // of offsets, once one has told
  bool repeats_ = false;      // a `*` was last
  bool complete_ = false;
};

}  // namespace bgpcomm

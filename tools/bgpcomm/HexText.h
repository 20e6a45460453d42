// Octets as people have them in hex: digits in a piece, in pairs with something between, with 0x or
// \x before each, or as packet tools print them, with offsets in front and letters behind.
//
//   readHexText("C0 08:04 fde80064")           // c0 08 04 fd e8 00 64, not in one piece
//   readHexText("0x0000:  4001 0100 ...")      // a line of a dump: its offset is none of the
//   octets
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

/// Whether the line is one of a dump whose lines before hold so many octets: it begins with this
/// number, in four or more hexadecimal digits, and a colon or two blanks.
bool isDumpLine(std::string_view line, std::size_t octetsBefore);
/// Appends the octets of such a line; false when there are none.
bool appendDumpLine(std::string_view line, std::vector<U8>& octets);

}  // namespace bgpcomm

#include "HexText.h"

#include <charconv>
#include <optional>

#include "Errors.h"
#include "Hex.h"

namespace bgpcomm {
namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

/// The two digits at a position as an octet.
std::optional<U8> pairAt(std::string_view text, std::size_t at) {
  if (at + 1 >= text.size()) return {};
  const int high = hexDigit(text[at]), low = hexDigit(text[at + 1]);
  if (high < 0 || low < 0) return {};
  return U8(high << 4 | low);
}

/// How long the prefix of an octet is: `0x`, or `\x`.
std::size_t prefixAt(std::string_view text, std::size_t at) {
  const bool prefix = at + 1 < text.size() && (text[at] == '0' || text[at] == '\\') &&
                      (text[at + 1] == 'x' || text[at + 1] == 'X');
  return prefix ? 2 : 0;
}

/// The digits of the offset that a line of a dump begins with, and where its octets begin.
struct Offset {
  std::string_view digits;
  std::size_t end;
};
std::optional<Offset> offsetOf(std::string_view line) {
  std::size_t at = 0;
  while (at < line.size() && isBlank(line[at])) ++at;
  at += prefixAt(line, at);
  const std::size_t start = at;
  while (at < line.size() && hexDigit(line[at]) >= 0) ++at;
  const std::string_view digits = line.substr(start, at - start);
  if (digits.size() < 4) return {};
  const bool colon = at < line.size() && line[at] == ':';
  at += colon;
  std::size_t blanks = 0;
  while (at < line.size() && isBlank(line[at])) ++at, ++blanks;
  // One blank is enough behind a colon, or where octets in pairs follow.
  const bool pairs = at + 2 <= line.size() && (at + 2 == line.size() || isBlank(line[at + 2]));
  const bool longer = blanks >= 2 || (blanks == 1 && (colon || (pairs && digits.size() >= 6)));
  if (!longer && at < line.size()) return {};
  return Offset{digits, at};
}

std::size_t appendOctets(std::string_view line, std::size_t at, std::vector<U8>& octets) {
  constexpr std::size_t longest = 16;
  const std::size_t before = octets.size();
  // Two blanks end the octets, but for one such gap in the middle of a full line of pairs.
  while (octets.size() - before < longest) {
    const auto octet = pairAt(line, at);
    if (!octet) break;
    octets.push_back(*octet);
    at += 2;
    std::size_t blanks = 0;
    while (at < line.size() && isBlank(line[at])) ++at, ++blanks;
    const bool middle =
        octets.size() - before == longest / 2 && at + 2 < line.size() && isBlank(line[at + 2]);
    if (blanks > 1 && !middle) break;
  }
  return octets.size() - before;
}

std::vector<U8> readDump(std::string_view text) {
  Dump dump;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.find_first_not_of(" \t\r") != line.npos && !dump.take(line))
      throw DataError("a line of the dump does not begin with the number of octets before it, " +
                      std::to_string(dump.octets().size()));
  }
  return dump.octets();
}

}  // namespace

bool Dump::take(std::string_view line) {
  if (!empty() && line.find_first_not_of("* \t\r") == line.npos && line.find('*') != line.npos)
    return repeats_ = true;
  const auto offset = offsetOf(line);
  if (!offset || !(isNext(offset->digits, 16) || isNext(offset->digits, 8))) return false;
  const std::size_t size = appendOctets(line, offset->end, octets_);
  complete_ = size == 0;
  if (size) lineSize_ = size;
  return !empty();
}

bool Dump::isNext(std::string_view digits, int base) {
  constexpr std::size_t octalDigits = 7, mostFilled = 1 << 20;
  std::size_t value = 0;
  const auto [stop, fault] = std::from_chars(digits.begin(), digits.end(), value, base);
  if (fault != std::errc() || stop != digits.end()) return false;
  const bool octal = digits.size() == octalDigits && base_ != 16;
  // Behind a `*`, several numbers might fit: seven digits are octal then, if nothing else was seen.
  if (base == 8 ? !octal : base_ == 8 || (repeats_ && octal)) return false;
  const std::size_t more = value - octets_.size();
  if (more && (!repeats_ || value < octets_.size() || value > mostFilled || more % lineSize_))
    return false;
  for (std::size_t i = 0; i < more; ++i) octets_.push_back(octets_[octets_.size() - lineSize_]);
  if (value) base_ = base;
  repeats_ = false;
  return true;
}

const std::vector<U8>& Dump::octets() const {
  if (repeats_)
    throw DataError("a dump ends in `*`, which leaves out lines; hexdump -v shows all of them");
  return octets_;
}

HexText readHexText(std::string_view text, bool plain) {
  if (!plain && Dump().take(text.substr(0, text.find('\n')))) return {readDump(text), false};
  HexText read;
  read.octets.reserve(text.size() / 2);
  const auto isBetween = [plain](char c) {
    return c == ' ' || c == ':' || (!plain && (isBlank(c) || c == ',' || c == '-' || c == '\n'));
  };
  for (std::size_t i = prefixAt(text, 0); i < text.size();) {
    if (isBetween(text[i])) {
      read.inOnePiece = false;
      ++i;
      continue;
    }
    if (const std::size_t prefix = plain || i == 0 ? 0 : prefixAt(text, i); prefix && i > 2) {
      read.inOnePiece = false;
      i += prefix;
    }
    const std::string character = " at character " + std::to_string(i + 1);
    if (i >= text.size() || hexDigit(text[i]) < 0)
      throw DataError("no hexadecimal digit" + character);
    const auto octet = pairAt(text, i);
    if (!octet) throw DataError("half an octet" + character);
    read.octets.push_back(*octet);
    i += 2;
  }
  return read;
}

}  // namespace bgpcomm

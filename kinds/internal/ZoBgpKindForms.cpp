#include "kinds/internal/ZoBgpKindForms.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

#include "Mox/Exception.h"
#include "kinds/ZoBgpKindCheck.h"
#include "kinds/internal/ZoBgpDataCollection.h"

namespace Routing::Bgp {
namespace {

std::span<const U8> octetsOf(const KindField& field, std::span<const U8> value) {
  return value.subspan(field.bit / 8, field.bits / 8);
}

const KindName* nameOf(const KindField& field, U64 number) {
  const auto at = std::ranges::find(field.names, number, &KindName::number);
  return at == field.names.end() ? nullptr : &*at;
}

/// The number of a name or of a decimal number of so many bits.
std::optional<U64> numberOf(const KindField& field, std::string_view text, U32 bits) {
  for (const KindName& row : field.names)
    if (equalIgnoringCase(row.name, text)) return row.number;
  return decimalNumber(text, bits);
}

/// `A, S or `, in front of what may stand instead of a name.
Mox::String namesForErrors(const KindField& field) {
  Mox::String text;
  for (const KindName& row : field.names)
    text += (text.empty() ? "" : ", ") + Mox::String(row.name);
  return text.empty() ? text : text + " or ";
}

// --- IPv6 addresses: RFC 5952, without the dotted tail that it allows for some prefixes.

void writeIp6(CommText& text, std::span<const U8> octets) {
  U32 groups[8];
  for (U32 i = 0; i < 8; ++i) groups[i] = U32(octets[2 * i] << 8 | octets[2 * i + 1]);
  U32 longest = 0, longestLength = 1;  // one zero group alone is not shortened
  for (U32 i = 0, length = 0; i < 8; ++i) {
    length = groups[i] ? 0 : length + 1;
    if (length <= longestLength) continue;
    longest = i + 1 - length;
    longestLength = length;
  }
  text << '[';
  for (U32 i = 0; i < 8; ++i) {
    if (longestLength > 1 && i == longest) {
      text << "::";
      i += longestLength - 1;
      continue;
    }
    if (i && !(longestLength > 1 && i == longest + longestLength)) text << ':';
    char digits[4];
    const char* const end = std::to_chars(digits, digits + 4, groups[i], 16).ptr;
    text << std::string_view(digits, end);
  }
  text << ']';
}

bool readIp6(CommunityTextParts& parts, std::span<U8> octets) {
  const std::string_view part = parts.take();
  Zonet::Ip6Addr address;
  if (part.size() > 2 && part.front() == '[' && part.back() == ']') try {
      sequenceToValue(part.substr(1, part.size() - 2), address);
      std::ranges::copy(address.octets(), octets.begin());
      return true;
    } catch (const Mox::ParseException&) {
    }
  parts.fail("an IPv6 address in brackets");
  return false;
}

bool readIp4(CommunityTextParts& parts, std::span<U8> octets) {
  std::string_view rest = parts.take();
  for (std::size_t i = 0; i < 4; ++i) {
    const auto end = i < 3 ? rest.find('.') : rest.size();
    const auto number = decimalNumber(rest.substr(0, end), 8);
    if (!number || end == rest.npos) {
      parts.fail("an IPv4 address");
      return false;
    }
    octets[i] = U8(*number);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return true;
}

// --- Rates: the shortest decimal text that reads back, never with an exponent.

void writeRate(CommText& text, float rate) {
  if (std::isinf(rate)) {
    text << (rate < 0 ? "-inf" : "inf");
    return;
  }
  char digits[160];  // the longest has 151
  const auto end = std::to_chars(digits, std::end(digits), rate, std::chars_format::fixed).ptr;
  text << std::string_view(digits, end);
}

bool readRate(CommunityTextParts& parts, float& rate) {
  const std::string_view part = parts.take();
  const bool negative = part.starts_with('-');
  const std::string_view digits = part.substr(negative);
  if (equalIgnoringCase(digits, "inf")) {
    rate = negative ? -INFINITY : INFINITY;
    return true;
  }
  const char* const end = part.data() + part.size();
  if (isDecimalFraction(digits))
    if (const auto [stop, fault] = std::from_chars(part.data(), end, rate);
        fault == std::errc() && stop == end)
      return true;
  parts.fail("a rate: a decimal number that fits a 32-bit float, or inf");
  return false;
}

// --- Enumerations and flags.

bool readEnumeration(CommunityTextParts& parts, const KindField& field, std::span<U8> value) {
  const auto number = numberOf(field, parts.take(), field.bits);
  if (number)
    bitsAre(value, field.bit, field.bits, *number);
  else
    parts.fail(namesForErrors(field) + "a decimal number of at most " + std::to_string(field.bits) +
               " bits");
  return number.has_value();
}

void writeFlags(CommText& text, const KindField& field, U64 flags) {
  bool first = true;
  for (U32 i = 0; i < field.bits; ++i) {
    if (!(flags >> (field.bits - 1 - i) & 1)) continue;
    if (!first) text << ':';
    first = false;
    const KindName* const row = nameOf(field, field.first + i);
    row ? text << row->name : text << U32(field.first + i);
  }
}

bool readFlags(CommunityTextParts& parts, const KindField& field, std::size_t count,
               std::span<U8> value) {
  U64 flags = 0;
  const bool none = count == 1 && !field.optional && parts.peek().empty();
  if (none) parts.take();
  for (std::size_t i = 0; i < count && !none; ++i) {
    const auto number = numberOf(field, parts.take(), 16);
    if (!number || *number < field.first || *number - field.first >= field.bits) {
      parts.fail("a flag: " + namesForErrors(field) + "a bit from " + std::to_string(field.first) +
                 " to " + std::to_string(field.first + field.bits - 1));
      return false;
    }
    const U64 bit = 1ULL << (field.bits - 1 - (*number - field.first));
    if (flags & bit) {
      parts.fail("each flag once");
      return false;
    }
    flags |= bit;
  }
  bitsAre(value, field.bit, field.bits, flags);
  return true;
}

bool readLabel(CommunityTextParts& parts, const KindField& field, std::span<U8> value) {
  const std::string_view part = parts.take();
  const auto slash = part.find('/');
  const auto label = decimalNumber(part.substr(0, slash), 20);
  const auto low = slash == part.npos ? 0 : decimalNumber(part.substr(slash + 1), 4);
  if (label && low)
    bitsAre(value, field.bit, field.bits, *label << 4 | *low);
  else
    parts.fail("a label below 1048576, and `/` and a number below 16 for the four bits behind it");
  return label && low;
}

bool readNumber(CommunityTextParts& parts, const KindField& field, std::span<U8> value) {
  const auto number = parts.number(field.bits);
  if (number) bitsAre(value, field.bit, field.bits, *number);
  return number.has_value();
}

}  // namespace

U64 bitsOf(std::span<const U8> octets, U32 bit, U32 bits) {
  U64 number = 0;
  while (bits) {
    const U32 behind = 8 - bit % 8;  // bits of this octet from there on
    const U32 taken = std::min(bits, behind);
    number = number << taken | (octets[bit / 8] >> (behind - taken) & ((1u << taken) - 1));
    bit += taken;
    bits -= taken;
  }
  return number;
}

void bitsAre(std::span<U8> octets, U32 bit, U32 bits, U64 number) {
  while (bits) {
    const U32 behind = 8 - bit % 8;
    const U32 taken = std::min(bits, behind);
    const U32 mask = ((1u << taken) - 1) << (behind - taken);
    bits -= taken;
    const auto piece = U32(number >> bits) << (behind - taken);
    octets[bit / 8] = U8((octets[bit / 8] & ~mask) | (piece & mask));
    bit += taken;
  }
}

void writeOctets(CommText& text, std::span<const U8> octets) {
  bool first = true;
  for (const U8 octet : octets) {
    if (!first) text << ':';
    first = false;
    text.hex(octet);
  }
}

bool readOctets(CommunityTextParts& parts, std::span<U8> octets) {
  for (U8& octet : octets) {
    const auto read = parts.octet();
    if (!read) return false;
    octet = *read;
  }
  return true;
}

bool isDecimalFraction(std::string_view text) {
  const auto isDigitAt = [text](std::size_t i) {
    return i < text.size() && kindCheck::isDigit(text[i]);
  };
  const auto dot = text.find('.');
  return isDigitAt(0) && !(text[0] == '0' && isDigitAt(1)) &&
         (dot == text.npos || isDigitAt(dot + 1));
}

bool isMalformed(const KindField& field, std::span<const U8> value) {
  if (field.form == KindForm::float32)
    return std::isnan(std::bit_cast<float>(U32(bitsOf(value, field.bit, field.bits))));
  if (field.form != KindForm::reserved) return false;
  for (U32 bit = field.bit; bit < field.end(); bit += 64)
    if (bitsOf(value, bit, std::min(64u, field.end() - bit))) return true;
  return false;
}

KindParts partsOf(const KindField& field) {
  switch (field.form) {
    case KindForm::reserved:
      return {0, 0};
    case KindForm::mac:
    case KindForm::hex:
      return {field.bits / 8u, field.bits / 8u};
    case KindForm::dataCollection:
      return {1, 3};
    case KindForm::flags:
      return {field.optional ? 0u : 1u, field.bits};
    default:
      return {field.optional ? 0u : 1u, 1};
  }
}

bool isLeftOut(const KindField& field, std::span<const U8> value) {
  return field.form == KindForm::reserved ||
         (field.optional && bitsOf(value, field.bit, field.bits) == 0);
}

void writeField(CommText& text, const KindField& field, std::span<const U8> value) {
  if (isLeftOut(field, value)) return;
  switch (field.form) {
    case KindForm::ipv6:
      writeIp6(text, octetsOf(field, value));
      return;
    case KindForm::mac:
    case KindForm::hex:
      writeOctets(text, octetsOf(field, value));
      return;
    default:
      break;
  }
  const U64 number = bitsOf(value, field.bit, field.bits);
  switch (field.form) {
    case KindForm::ipv4:
      text << Zonet::Ip4Addr(U32(number));
      break;
    case KindForm::enumeration: {
      const KindName* const row = nameOf(field, number);
      row ? text << row->name : text << number;
      break;
    }
    case KindForm::flags:
      writeFlags(text, field, number);
      break;
    case KindForm::float32:
      writeRate(text, std::bit_cast<float>(U32(number)));
      break;
    case KindForm::label:
      text << (number >> 4);
      if (number & 15) text << '/' << (number & 15);
      break;
    case KindForm::dataCollection:
      writeDataCollection(text, U16(number));
      break;
    default:
      text << number;
  }
}

bool readField(CommunityTextParts& parts, const KindField& field, std::size_t count,
               std::span<U8> value) {
  if (count == 0) return true;  // reserved or left out: zero
  const auto octets = [&] { return value.subspan(field.bit / 8, field.bits / 8); };
  switch (field.form) {
    case KindForm::ipv6:
      return readIp6(parts, octets());
    case KindForm::mac:
    case KindForm::hex:
      return readOctets(parts, octets());
    case KindForm::enumeration:
      return readEnumeration(parts, field, value);
    case KindForm::flags:
      return readFlags(parts, field, count, value);
    case KindForm::label:
      return readLabel(parts, field, value);
    case KindForm::float32: {
      float rate = 0;
      if (!readRate(parts, rate)) return false;
      bitsAre(value, field.bit, field.bits, std::bit_cast<U32>(rate));
      return true;
    }
    case KindForm::dataCollection: {
      const auto collection = readDataCollection(parts, count);
      if (collection) bitsAre(value, field.bit, field.bits, *collection);
      return collection.has_value();
    }
    case KindForm::ipv4: {
      U8 address[4];
      if (!readIp4(parts, address)) return false;
      bitsAre(value, field.bit, field.bits, bitsOf(address, 0, 32));
      return true;
    }
    default:
      return readNumber(parts, field, value);
  }
}

}  // namespace Routing::Bgp

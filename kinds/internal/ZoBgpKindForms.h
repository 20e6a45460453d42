// How each form of a field is written into a text and read from one. The value of a community is a
// row of bits; a field is a piece of it.
#pragma once

#include "community/ZoBgpCommunityText.h"
#include "community/ZoBgpCommunityTextParts.h"
#include "kinds/ZoBgpKind.h"

namespace Routing::Bgp {

/// Bits of a row of octets as a number, the first the most significant. REQUIRES: at most 64,
/// inside the row.
U64 bitsOf(std::span<const U8> octets, U32 bit, U32 bits);
void bitsAre(std::span<U8> octets, U32 bit, U32 bits, U64 number);

/// Octets of two hexadecimal digits each, `:` between them.
void writeOctets(CommText& text, std::span<const U8> octets);
/// Takes as many parts; false, and the parts keep the error, when one is something else.
bool readOctets(CommunityTextParts& parts, std::span<U8> octets);

/// Whether the text begins as a decimal number does, with a digit on both sides of a dot; nan, +1,
/// .5, 1. and 01 do not.
bool isDecimalFraction(std::string_view text);

/// Whether the field alone makes the value malformed.
bool isMalformed(const KindField& field, std::span<const U8> value);

/// The least and the largest number of parts that the field takes.
struct KindParts {
  std::size_t least;
  std::size_t most;
};
KindParts partsOf(const KindField& field);

/// Writes the field; nothing for one that is left out.
void writeField(CommText& text, const KindField& field, std::span<const U8> value);
/// Whether the field is not written at all: a reserved one, an optional one that is zero.
bool isLeftOut(const KindField& field, std::span<const U8> value);
/// Takes so many parts and sets the field's bits; false, and the parts keep the error, when they
/// say something else. REQUIRES: `count` is one that the field takes, and not more than are left.
bool readField(CommunityTextParts& parts, const KindField& field, std::size_t count,
               std::span<U8> value);

}  // namespace Routing::Bgp

// Text of lists of plain values.
#pragma once

#include <span>

#include "Mox/Text.h"
#include "ZoFmt/StackBackedBuffer.h"

namespace Routing::Bgp {

/// Writes them into room for `longest` characters and a space each; returns their end. REQUIRES:
/// there are some.
template <class Value, class Write>
char* writeJoined(char* at, std::span<const Value> values, Write write) {
  for (const Value& value : values) {
    at = write(at, value);
    *at++ = ' ';
  }
  return at - 1;
}

/// The values' texts with single spaces between them. `write(at, value)` writes one, of at most
/// `longest` characters, and returns its end. Up to 128 characters are made without allocating.
template <std::size_t longest, class Value, class Write>
Mox::String joinedText(std::span<const Value> values, Write write) {
  if (values.empty()) return {};
  ZoFmt::StackBackedBuffer<128, 1024> buffer;
  char* const start = buffer.allocateSpace(values.size() * (longest + 1));
  buffer.written(std::size_t(writeJoined(start, values, write) - start));
  return Mox::String(buffer.text());
}

/// The same behind what `to` holds.
template <std::size_t longest, class Value, class Write>
void appendJoinedText(Mox::String& to, std::span<const Value> values, Write write) {
  if (values.empty()) return;
  const std::size_t before = to.size();
  to.resize(before + values.size() * (longest + 1));
  to.resize(std::size_t(writeJoined(to.data() + before, values, write) - to.data()));
}

/// One value's text into a caller's buffer; returns its length.
template <std::size_t longest, class Write>
U32 formatOne(ZoFmt::DynamicBufferInterface& buffer, Write write) {
  char* const start = buffer.allocateSpace(longest + 1);
  char* const end = write(start);
  *end = '\0';  // for readers of the raw buffer; not part of the text
  buffer.written(std::size_t(end - start));
  return U32(end - start);
}

}  // namespace Routing::Bgp

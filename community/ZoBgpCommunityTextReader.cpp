#include "community/internal/ZoBgpCommunityTextReader.h"

#include <algorithm>

namespace Routing::Bgp {

void TextReader::raise(std::string_view expected, std::size_t offset) const {
  throw Mox::ParseException("expected \"" + Mox::String(expected) + "\"", offset);
}

void TextReader::literal(std::string_view expected) {
  const std::string_view next = text_.substr(at_);
  const auto [differs, end] =
      std::mismatch(expected.begin(), expected.end(), next.begin(), next.end());
  at_ += std::size_t(differs - expected.begin());
  if (differs != expected.end()) raise(expected, at_);
}

U8 TextReader::octet() {
  if (at_ == text_.size()) throw Mox::ParseException("expected an octet", at_);
  return U8(text_[at_++]);
}

bool TextReader::boolean() {
  const bool value = text_.substr(at_).starts_with('T');
  literal(value ? "True" : "False");
  return value;
}

std::string_view TextReader::upTo(std::string_view mark) {
  const std::size_t start = at_, found = text_.find(mark, at_);
  if (found == text_.npos) raise(mark, text_.size());
  at_ = found;
  return text_.substr(start, found - start);
}

std::string_view TextReader::rest() {
  const std::size_t start = at_;
  at_ = text_.size();
  return text_.substr(start);
}

void TextReader::end() {
  if (at_ != text_.size()) throw Mox::ParseException("expected the end of the text", at_);
}

}  // namespace Routing::Bgp

#include "kinds/ZoBgpKindFields.h"

#include <algorithm>
#include <bit>

#include "kinds/internal/ZoBgpKindForms.h"

namespace Routing::Bgp {

U64 KindFieldValue::number() const {
  MOX_ASSERT(field_->bits <= 64, "field().bits <= 64");
  return bitsOf(community_.value(), field_->bit, field_->bits);
}

float KindFieldValue::rate() const {
  MOX_ASSERT(field_->form == KindForm::float32, "field().form == KindForm::float32");
  return std::bit_cast<float>(U32(number()));
}

void KindFieldValue::appendTo(CommText& text) const {
  writeField(text, *field_, community_.value());
}

Mox::String KindFieldValue::text() const {
  CommText text;
  appendTo(text);
  return text.str();
}

std::vector<Mox::String> KindFieldValue::names() const {
  std::vector<Mox::String> names;
  if (field_->form == KindForm::enumeration) {
    const U64 value = number();
    for (const KindName& row : field_->names)
      if (row.number == value) names.emplace_back(row.name);
  } else if (field_->form == KindForm::flags && number()) {
    const Mox::String flags = text();
    CommunityTextParts parts(flags);
    while (parts.left()) names.emplace_back(parts.take());
  }
  return names;
}

bool isMalformed(const AnyCommunity& community, const Kind& kind) {
  const CommunityOctets octets(community);
  return std::ranges::any_of(
      kind.fields, [&](const KindField& field) { return isMalformed(field, octets.value()); });
}

std::optional<KindFieldValue> kindField(const AnyCommunity& community, std::string_view name,
                                        const KindTable& table) {
  std::optional<KindFieldValue> found;
  forEachKindField(community, table, [&](const KindFieldValue& value) {
    if (!found && value.field().name == name) found = value;
  });
  return found;
}

std::optional<KindFieldValue> kindField(const AnyCommunity& community, std::size_t index,
                                        const KindTable& table) {
  const Kind* const kind = table.find(community);
  if (!kind || index >= kind->fields.size()) return {};
  return KindFieldValue(CommunityOctets(community), kind->fields[index]);
}

std::optional<CommunityTextError> readKindField(std::string_view text, const KindField& field,
                                                std::span<U8> value) {
  CommunityTextParts parts(text);
  const auto [least, most] = partsOf(field);
  if (parts.count() < std::max<std::size_t>(least, 1) || parts.count() > most)
    parts.fail(text, least == most ? "text of " + std::to_string(most) + " parts"
                                   : "text of at most " + std::to_string(most) + " parts");
  std::array<U8, 20> read{};
  std::ranges::copy(value, read.begin());
  const std::span<U8> bits(read.data(), value.size());
  if (parts.failed() || !readField(parts, field, parts.count(), bits)) return parts.error();
  std::ranges::copy(bits, value.begin());
  return {};
}

}  // namespace Routing::Bgp

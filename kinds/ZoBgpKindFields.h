// The fields of a community, by name and as what they are.
//
//   const ExtCommContent mobility(0x0600010000000005);
//   const auto sequence = kindField(mobility, "sequence");
//   if (sequence) use(sequence->number());        // 5
//   forEachKindField(community, table, [](const KindFieldValue& field) {
//     std::cout << field.field().name << ' ' << field.text() << '\n';
//   });
//
// Fields are those of the row of the content, whatever class an object has. Reserved ones are
// handed out too. Pure functions; call from any thread.
#pragma once

#include "community/ZoBgpCommunityText.h"
#include "community/ZoBgpCommunityTextParts.h"
#include "kinds/ZoBgpKindTable.h"

namespace Routing::Bgp {

/// One field of one community. Keeps the octets of the community.
/// REQUIRES: the table whose row it is lives as long, or a copy of it.
class KindFieldValue {
 public:
  /// REQUIRES: the row is the community's.
  KindFieldValue(const CommunityOctets& community, const KindField& field)
      : community_(community), field_(&field) {}

  /// Its row.
  const KindField& field() const { return *field_; }
  /// Its bits as a number, the first the most significant. REQUIRES: at most 64 bits.
  U64 number() const;
  /// The rate. REQUIRES: of form float32.
  float rate() const;
  /// As in the canonical text of the community: possibly several parts, or none.
  Mox::String text() const;
  /// The same, appended.
  void appendTo(CommText& text) const;
  /// The names of the flags that are set, or the decimal numbers of such as have none; the one name
  /// of an enumeration if the number has one. Empty for other forms.
  std::vector<Mox::String> names() const;
  /// Whether it is of the bits that must be zero.
  bool isReserved() const { return field_->form == KindForm::reserved; }

 private:
  CommunityOctets community_;
  const KindField* field_;
};

/// Whether the community has a reserved bit set, or a rate that is no number. Its fields can be
/// read all the same.
bool isMalformed(const AnyCommunity& community, const Kind& kind);

/// A field by name, whose letter case counts; nothing when the community has no row, or the row no
/// such field. Of several reserved fields the first.
std::optional<KindFieldValue> kindField(const AnyCommunity& community, std::string_view name,
                                        const KindTable& table = KindTable::builtIn());
/// A field by its index in the row.
std::optional<KindFieldValue> kindField(const AnyCommunity& community, std::size_t index,
                                        const KindTable& table = KindTable::builtIn());
/// Calls `use(KindFieldValue)` for each field, in the order of the row.
void forEachKindField(const AnyCommunity& community, const KindTable& table, auto use) {
  const Kind* const kind = table.find(community);
  if (!kind) return;
  const CommunityOctets octets(community);
  for (const KindField& field : kind->fields) use(KindFieldValue(octets, field));
}

/// Reads the text of a field, in every spelling that canonical texts may have, into its bits of a
/// value; or says what is wrong, the value unchanged. An optional field that is left out has no
/// text. REQUIRES: value is as long as that of the field's row, see CommunityOctets; the field is
/// not reserved.
std::optional<CommunityTextError> readKindField(std::string_view text, const KindField& field,
                                                std::span<U8> value);

}  // namespace Routing::Bgp

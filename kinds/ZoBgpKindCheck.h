// Whether rows of kinds say what they must: one check, for the compiler and for rows read from a
// file.
//
//   static_assert(!checkKinds(rows));
//   if (const auto fault = checkKinds(rows, table.rows())) std::cerr << fault->text();
//
// A row that passes has one text for each value and one value for each text: its fields divide all
// bits of the value, without overlap, in their order, and at most one of them takes a number of
// parts that depends on the value.
#pragma once

#include <functional>
#include <tuple>
#include <vector>

#include "community/ZoBgpCommunityTextParts.h"
#include "kinds/ZoBgpKind.h"

namespace Routing::Bgp {

/// The first thing wrong with a row.
struct KindFault {
  const Kind* kind = nullptr;
  const KindField* field = nullptr;  ///< null when the fault is not in one field
  std::string_view reason;
  const Kind* other = nullptr;  ///< the row that this one clashes with

  /// `kind "mac-mobility", field "sequence": begins at another bit than the one before ends`
  Mox::String text() const;
};

/// The names that texts use for what is no kind.
inline constexpr std::string_view unknownTransitive = "unknown-transitive";
inline constexpr std::string_view unknownNonTransitive = "unknown-non-transitive";
inline constexpr std::string_view malformedWord = "malformed";

/// ASCII letters only; any other character stays.
constexpr char lowerCase(char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; }
/// Letter case does not count anywhere in texts of communities.
constexpr bool equalIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (lowerCase(a[i]) != lowerCase(b[i])) return false;
  return true;
}

namespace kindCheck {

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool isLetter(char c) { return lowerCase(c) >= 'a' && lowerCase(c) <= 'z'; }

/// A word that cannot be taken for a number or for more than one part.
constexpr bool isWord(std::string_view text) {
  if (text.empty() || !isLetter(text[0])) return false;
  for (const char c : text)
    if (!isLetter(c) && !isDigit(c) && c != '-' && c != '_') return false;
  return true;
}

constexpr bool isReservedWord(std::string_view text) {
  return equalIgnoringCase(text, unknownTransitive) ||
         equalIgnoringCase(text, unknownNonTransitive) || equalIgnoringCase(text, malformedWord);
}

/// Whether two of `count` texts are equal. `text(i)` is the i-th; empty ones do not count.
constexpr bool hasRepeat(std::size_t count, auto text) {
  for (std::size_t i = 0; i < count; ++i)
    for (std::size_t j = i + 1; j < count; ++j)
      if (!text(i).empty() && equalIgnoringCase(text(i), text(j))) return true;
  return false;
}

constexpr bool isWidthOf(KindForm form, U32 bits) {
  switch (form) {
    case KindForm::integer:
    case KindForm::flags:
      return bits <= 64;
    case KindForm::enumeration:
      return bits <= 32;
    case KindForm::as2:
    case KindForm::dataCollection:
      return bits == 16;
    case KindForm::as4:
    case KindForm::ipv4:
    case KindForm::float32:
      return bits == 32;
    case KindForm::ipv6:
      return bits == 128;
    case KindForm::mac:
      return bits == 48;
    case KindForm::label:
      return bits == 24;
    case KindForm::hex:
      return bits % 8 == 0;
    case KindForm::reserved:
      return true;
  }
  return false;
}

constexpr bool isOfOctets(KindForm form) {
  return form == KindForm::hex || form == KindForm::mac || form == KindForm::ipv6;
}

/// Whether the field takes a number of parts that depends on its value.
constexpr bool isOfVariableParts(const KindField& field) {
  return field.form == KindForm::flags || field.form == KindForm::dataCollection || field.optional;
}

/// Whether the text can be printed as it is, on one line of any terminal.
constexpr bool isPrintable(std::string_view text) {
  for (const char c : text)
    if (c < ' ' || c > '~') return false;
  return true;
}

/// Whether a malformed value can show the field as it is in every value.
constexpr bool isAdministrator(const KindField& field) {
  return !isOfVariableParts(field) && field.form != KindForm::reserved &&
         field.form != KindForm::float32;
}

constexpr std::string_view faultOf(const KindField& field) {
  if (field.name.empty()) return "has no name";
  if (!isWord(field.name)) return "has a name that is no word of letters, digits and - or _";
  if (field.bits == 0) return "has no bits";
  if (!isWidthOf(field.form, field.bits)) return "has a number of bits that its form cannot have";
  if (isOfOctets(field.form) && field.bit % 8) return "does not begin at an octet";
  const bool named = field.form == KindForm::enumeration || field.form == KindForm::flags;
  if (!named && !field.names.empty()) return "has names, but is neither an enumeration nor flags";
  if (field.optional && !named) return "is optional, but is neither an enumeration nor flags";
  if (field.first && field.form != KindForm::flags) return "numbers flags, but has none";
  if (field.first + field.bits > 0x10000) return "numbers flags beyond 65535";
  for (std::size_t i = 0; i < field.names.size(); ++i) {
    const KindName& name = field.names[i];
    if (!isWord(name.name) || isReservedWord(name.name)) return "has a name that cannot be read";
    const bool fits = field.form == KindForm::flags
                          ? name.number >= field.first && name.number - field.first < field.bits
                          : field.bits == 32 || name.number >> field.bits == 0;
    if (!fits) return "names a number that it cannot have";
    for (std::size_t j = i + 1; j < field.names.size(); ++j)
      if (field.names[j].number == name.number) return "names a number twice";
  }
  if (hasRepeat(field.names.size(), [&](std::size_t i) { return field.names[i].name; }))
    return "gives one name to two numbers";
  return {};
}

}  // namespace kindCheck

/// The first thing wrong with a row by itself; nothing when it is good. For `static_assert`, too.
constexpr std::optional<KindFault> checkKind(const Kind& kind) {
  using namespace kindCheck;
  const auto fault = [&](std::string_view reason, const KindField* field = nullptr) {
    return KindFault{&kind, field, reason, nullptr};
  };
  const bool standard = kind.attribute == BgpPathAttrType::community;
  if (!kind.isExtended() && !standard && kind.attribute != BgpPathAttrType::largeCommunity)
    return fault("belongs to no attribute of communities");
  if (kind.type.has_value() != kind.isExtended() || kind.subtype.has_value() != kind.isExtended())
    return fault("has type and subtype exactly if it is extended");
  if (kind.value && !standard) return fault("has a value, but is not a standard community");
  if (kind.name.empty()) return fault("has no name");
  for (const std::string_view text : {kind.name, kind.reference, kind.note})
    if (!isPrintable(text)) return fault("has a text with characters that are not printable ASCII");
  if (kind.identifier.empty() != (!kind.isExtended() && !kind.value))
    return fault("has an identifier exactly if it is extended or well-known");
  const auto isReadable = [](std::string_view word) {
    return isWord(word) && !isReservedWord(word);
  };
  if (!kind.identifier.empty() && !isReadable(kind.identifier))
    return fault("has an identifier that cannot be read");
  for (const std::string_view alias : kind.aliases)
    if (kind.isExtended() && !isReadable(alias)) return fault("has an alias that cannot be read");

  U32 end = 0;
  U32 variable = 0;
  bool administrator = true;
  for (const KindField& field : kind.fields) {
    if (const auto reason = faultOf(field); !reason.empty()) return fault(reason, &field);
    if (field.bit != end) return fault("begins at another bit than the one before ends", &field);
    end = field.end();
    if (end > kind.valueBits()) return fault("ends behind the value", &field);
    variable += isOfVariableParts(field);
    if (variable > 1) return fault("is the second of a variable number of parts", &field);
    if (field.globalAdministrator && (!administrator || end % 8 || !isAdministrator(field)))
      return fault("cannot be a global administrator: whole octets at the beginning, of one form",
                   &field);
    administrator = field.globalAdministrator;
  }
  if (end != kind.valueBits()) return fault("has fields that leave out bits of the value");
  if (hasRepeat(kind.fields.size(), [&](std::size_t i) {
        return kind.fields[i].form == KindForm::reserved ? std::string_view{} : kind.fields[i].name;
      }))
    return fault("has two fields of one name");
  return {};
}

namespace kindCheck {

/// A row, by its number, under something that it is found by.
template <class Key>
struct Entry {
  Key key;
  std::size_t row;
};
/// The order of words, in which those that are the same stand together.
constexpr bool isWordBefore(std::string_view a, std::string_view b) {
  std::size_t i = 0;  // a loop of its own: compilers count steps
  while (i < a.size() && i < b.size() && comparedLetter(a[i]) == comparedLetter(b[i])) ++i;
  return i < b.size() && (i == a.size() || comparedLetter(a[i]) < comparedLetter(b[i]));
}
/// Two rows under one key, the earlier first; nothing when there are none.
template <class Key>
constexpr std::optional<std::pair<std::size_t, std::size_t>> clashOf(
    std::vector<Entry<Key>>& entries, auto less) {
  const auto before = [less](const auto& a, const auto& b) { return less(a.key, b.key); };
  std::sort(entries.begin(), entries.end(), before);
  for (std::size_t i = 1; i < entries.size(); ++i) {
    const auto& a = entries[i - 1];
    const auto& b = entries[i];
    if (a.row != b.row && !before(a, b)) return std::minmax(a.row, b.row);
  }
  return {};
}

}  // namespace kindCheck

/// A fault of the rows, each alone, with each other, and with the `others`; nothing when they are
/// good. O(n log n). REQUIRES: the others have been checked.
constexpr std::optional<KindFault> checkKinds(std::span<const Kind> rows,
                                              std::span<const Kind* const> others = {}) {
  for (const Kind& kind : rows)
    if (const auto fault = checkKind(kind)) return fault;
  std::vector<const Kind*> all(others.begin(), others.end());
  for (const Kind& kind : rows) all.push_back(&kind);

  const auto keyOf = [](const Kind& kind) {
    return std::tuple(kind.attribute, kind.type, kind.subtype, kind.value);
  };
  std::vector<kindCheck::Entry<decltype(keyOf(*all[0]))>> keys;
  std::vector<kindCheck::Entry<std::string_view>> words;
  for (std::size_t row = 0; row < all.size(); ++row) {
    keys.push_back({keyOf(*all[row]), row});
    if (!all[row]->identifier.empty()) words.push_back({all[row]->identifier, row});
    for (const std::string_view alias : all[row]->aliases) words.push_back({alias, row});
  }
  if (const auto both = kindCheck::clashOf(keys, std::less()))
    return KindFault{all[both->second], nullptr, "is of the same type and subtype as",
                     all[both->first]};
  if (const auto both = kindCheck::clashOf(words, kindCheck::isWordBefore))
    return KindFault{all[both->second], nullptr, "has an identifier of", all[both->first]};
  return {};
}

}  // namespace Routing::Bgp

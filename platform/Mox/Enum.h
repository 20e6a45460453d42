// Enumerations with names. An enumerator is written once, as a row: name, value, and what else its
// row in the table has. The type and its table are both made from the rows.
//
//   #define MOX_ROWS(X) X(invalidTlv, 0) X(labelIndexTlv, 1)
//   enum class PrefixSidTlvType : U32 { MOX_ROWS(MOX_ENUMERATOR) };
//   consteval auto enumTable(PrefixSidTlvType) {
//     using enum PrefixSidTlvType;
//     return Mox::enumRows<PrefixSidTlvType>("Routing::Bgp::PrefixSidTlvType",
//                                            {MOX_ROWS(MOX_ENUM_ROW)});
//   }
//   #undef MOX_ROWS
//   inline constexpr Mox::EnumInstance<PrefixSidTlvType> PrefixSidTlvTypeInstance{};
//
//   stringValue(PrefixSidTlvType::labelIndexTlv)   // "labelIndexTlv"
//   stringValue(PrefixSidTlvType{7})               // "7"
//   PrefixSidTlvTypeInstance("labelIndexTlv")      // PrefixSidTlvType::labelIndexTlv
//   PrefixSidTlvTypeInstance(7)                    // RangeException
//
// and, in one source file, `const Mox::Type type = Mox::enumType<PrefixSidTlvType>();` for
// reflection. A table with a repeated value or a repeated or empty name does not compile.
//
// `enumTable` is found in the enumeration's own namespace. REQUIRES: the namespace has a
// using-declaration for each of the operations (`using Mox::stringValue;` and so on).
#pragma once

#include <concepts>
#include <type_traits>

#include "Mox/Text.h"
#include "Mox/Type.h"

/// A row as an enumerator, and as a row of the table. Further columns follow the name in the table.
#define MOX_ENUMERATOR(name, value, ...) name = value,
/// A row as a row of the table.
#define MOX_ENUM_ROW(name, value, ...) {name, #name __VA_OPT__(, ) __VA_ARGS__},

namespace Mox {

/// A row of a table. One that is no member has a name and is yet no valid value. A table that
/// says more about each enumerator brings a row type of its own with these three fields.
template <class E>
struct EnumRow {
  E value;
  std::string_view name;
  bool member = true;
};

/// The rows of an enumeration with an index by value and one by name. A search is binary: of 24
/// rows at most five are looked at.
template <class Row, std::size_t N>
class EnumTable {
 public:
  /// Does not compile unless values and names are each there once.
  consteval EnumTable(std::string_view qualifiedName, const Row (&rows)[N]);

  /// With its namespaces, as reflection knows it.
  constexpr std::string_view qualifiedName() const { return qualifiedName_; }
  /// The row of a value or of a name (exact, case-sensitive); null when there is none.
  constexpr const Row* find(U32 value) const { return search<valueOf>(byValue_, value); }
  /// The row of a name.
  constexpr const Row* find(std::string_view name) const { return search<nameOf>(byName_, name); }
  /// In the order in which they are written.
  constexpr const Row* begin() const { return rows_; }
  constexpr const Row* end() const { return rows_ + N; }

 private:
  static_assert(N < 256, "the indices are octets");

  static constexpr U32 valueOf(const Row& row) { return U32(row.value); }
  static constexpr std::string_view nameOf(const Row& row) { return row.name; }

  template <auto keyOf>
  constexpr const Row* search(const U8 (&index)[N], auto key) const;
  template <auto keyOf>
  consteval void sort(U8 (&index)[N]) const;

  std::string_view qualifiedName_;
  Row rows_[N] = {};
  U8 byValue_[N] = {};  // indices of rows_, keys strictly ascending
  U8 byName_[N] = {};
};

/// The result of `enumTable(E)`. Nothing is done at run time: the rows are checked and sorted when
/// the table is compiled.
template <class E, class Row = EnumRow<E>, std::size_t N>
consteval EnumTable<Row, N> enumRows(std::string_view qualifiedName, const Row (&rows)[N]) {
  static_assert(std::same_as<std::underlying_type_t<E>, U32>);
  return {qualifiedName, rows};
}

/// An enumeration that has a table.
template <class E>
concept Enumeration = std::is_enum_v<E> && requires {
  enumTable(E{});
};

/// The table of an enumeration.
template <Enumeration E>
inline constexpr auto enumTableOf = enumTable(E{});

/// Whether the value has a row that is a member.
template <Enumeration E>
constexpr bool isEnumMember(E value) {
  // GCC 12 under UndefinedBehaviorSanitizer takes no comparison of a row's address for a constant.
  if (std::is_constant_evaluated()) {
    for (const auto& row : enumTableOf<E>)
      if (row.value == value) return row.member;
    return false;
  }
  const auto* row = enumTableOf<E>.find(U32(value));
  return row && row->member;
}

/// The name, or the number in decimal when it has none.
template <Enumeration E>
String stringValue(E value) {
  const auto* row = enumTableOf<E>.find(U32(value));
  return row ? String(row->name) : std::to_string(U32(value));
}

/// As `stringValue`.
template <Enumeration E>
String valueToStrep(E value) {
  return stringValue(value);
}

/// Writes `stringValue`.
template <Enumeration E>
std::ostream& operator<<(std::ostream& stream, E value) {
  return writeText(stream, stringValue(value));
}

namespace detail {
U32 readEnumNumber(std::string_view enumeration, std::string_view text);
[[noreturn]] void raiseNoEnumerator(std::string_view enumeration, U32 value);
[[noreturn]] void raiseNoEnumerator(std::string_view enumeration, std::string_view name);
}  // namespace detail

/// Reads what `valueToStrep` writes: a name, or any 32-bit number in decimal. ParseException for
/// other text, RangeException for a larger number; `value` is then unchanged.
template <Enumeration E>
void sequenceToValue(std::string_view text, E& value) {
  const auto* row = enumTableOf<E>.find(text);
  value = row ? row->value : E(detail::readEnumNumber(enumTableOf<E>.qualifiedName(), text));
}

/// The enumerator of a number or of a name. RangeException for a number that is no member or a
/// name that is in no row.
template <class E>
struct EnumInstance {
  /// The member of this number.
  E operator()(U32 value) const {
    if (!isEnumMember(E(value))) detail::raiseNoEnumerator(enumTableOf<E>.qualifiedName(), value);
    return E(value);
  }
  /// The enumerator of this name, member or not.
  E operator()(const String& name) const {
    const auto* row = enumTableOf<E>.find(name);
    if (!row) detail::raiseNoEnumerator(enumTableOf<E>.qualifiedName(), name);
    return row->value;
  }
};

/// The description for the registry.
template <Enumeration E>
Type enumType() {
  std::vector<Enumerator> enumerators;
  for (const auto& row : enumTableOf<E>)
    enumerators.push_back({String(row.name), U32(row.value), row.member});
  return Type(enumTableOf<E>.qualifiedName(), std::move(enumerators));
}

template <class Row, std::size_t N>
consteval EnumTable<Row, N>::EnumTable(std::string_view qualifiedName, const Row (&rows)[N])
    : qualifiedName_(qualifiedName) {
  for (std::size_t i = 0; i < N; ++i) {
    if (rows[i].name.empty()) throw "an enumerator without a name";
    rows_[i] = rows[i];
  }
  sort<valueOf>(byValue_);
  sort<nameOf>(byName_);
}

template <class Row, std::size_t N>
template <auto keyOf>
consteval void EnumTable<Row, N>::sort(U8 (&index)[N]) const {
  for (std::size_t i = 0; i < N; ++i) {
    std::size_t at = i;
    for (; at > 0 && keyOf(rows_[i]) < keyOf(rows_[index[at - 1]]); --at) index[at] = index[at - 1];
    if (at > 0 && keyOf(rows_[i]) == keyOf(rows_[index[at - 1]]))
      throw "two enumerators with one value or one name";
    index[at] = U8(i);
  }
}

template <class Row, std::size_t N>
template <auto keyOf>
constexpr const Row* EnumTable<Row, N>::search(const U8 (&index)[N], auto key) const {
  std::size_t low = 0;
  for (std::size_t high = N; low < high;) {
    const std::size_t middle = (low + high) / 2;
    if (keyOf(rows_[index[middle]]) < key)
      low = middle + 1;
    else
      high = middle;
  }
  return low < N && keyOf(rows_[index[low]]) == key ? &rows_[index[low]] : nullptr;
}

}  // namespace Mox

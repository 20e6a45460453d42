#include "Kinds.h"

#include "ExtendedKind.h"
#include "LargeKind.h"
#include "ListTable.h"
#include "StandardKind.h"

namespace bgpcomm {
namespace {

template <class Kind>
std::unique_ptr<KindTable> makeKindTable() {
  return std::make_unique<ListTable<Kind>>();
}

template <class Kind>
constexpr KindRow row(std::string_view key, std::string_view title) {
  return {key, title, U8(Kind::attributeType), Kind::valueSize, &makeKindTable<Kind>};
}

constexpr std::array<KindRow, kindCount> rows = {
    row<StandardKind>("standard", "standard"),
    row<ExtendedKind<EightOctets>>("extended", "extended"),
    row<ExtendedKind<TwentyOctets>>("ipv6Extended", "IPv6 extended"),
    row<LargeKind>("large", "large"),
};

constexpr std::array<U8, 256> kindByAttribute = [] {
  std::array<U8, 256> kinds{};
  for (U8& kind : kinds) kind = U8(kindCount);
  for (std::size_t kind = 0; kind < kindCount; ++kind) kinds[rows[kind].attribute] = U8(kind);
  return kinds;
}();

}  // namespace

const std::array<KindRow, kindCount> kindRows = rows;

KindTables makeKindTables() {
  KindTables tables;
  for (std::size_t kind = 0; kind < kindCount; ++kind) tables[kind] = kindRows[kind].makeTable();
  return tables;
}

std::size_t kindOfAttribute(U8 attribute) { return kindByAttribute[attribute]; }

}  // namespace bgpcomm

#include "Kinds.h"

#include "ListTable.h"
#include "StandardKind.h"

namespace bgpcomm {
namespace {

template <class Kind>
std::unique_ptr<KindTable> makeKindTable() {
  return std::make_unique<ListTable<Kind>>();
}

template <class Kind>
constexpr KindRow row(std::string_view key, std::string_view title, U8 attribute) {
  return {key, title, attribute, Kind::valueSize, &makeKindTable<Kind>, &Kind::readValue};
}

/// A kind whose lists do not exist yet.
constexpr KindRow row(std::string_view key, std::string_view title, U8 attribute,
                      std::size_t valueSize) {
  return {key, title, attribute, valueSize, nullptr, nullptr};
}

constexpr std::array<KindRow, kindCount> rows = {
    row<StandardKind>("standard", "standard", 8),
    row("extended", "extended", 16, 8),
    row("ipv6Extended", "IPv6 extended", 25, 20),
    row("large", "large", 32, 12),
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
  for (std::size_t kind = 0; kind < kindCount; ++kind)
    if (kindRows[kind].makeTable) tables[kind] = kindRows[kind].makeTable();
  return tables;
}

std::size_t kindOfAttribute(U8 attribute) { return kindByAttribute[attribute]; }

}  // namespace bgpcomm

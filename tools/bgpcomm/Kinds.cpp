#include "Kinds.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <unordered_map>

#include "Mox/Allocation.h"
#include "community-list/ZoBgpCommunityList.h"

namespace bgpcomm {
namespace {

/// What differs between the kinds.
struct Standard {
  using List = Routing::Bgp::CommList;
  using Table = Routing::Bgp::CommListDedupTable;
  static constexpr std::size_t valueSize = 4;
  /// Under which names the library counts the memory of such lists.
  static constexpr std::string_view memory[] = {"Routing::Bgp::CommList", "U32 (vector storage)"};

  static Mox::Ptr<Table> makeTable() { return Routing::Bgp::commListDedupTableFactory(); }
  static std::string text(const List& list, bool names) {
    return names ? list.commsWellKnownStringForm() : list.commsStringForm();
  }
  static std::string valueText(Octets value, bool names) {
    const U32 community = Cursor(value).u32();
    std::string name = names ? std::string(List::wellKnownName(community)) : "";
    return name.empty() ? std::string(List::getStringValue(community)) : name;
  }
  static U64 ownOctets(const List& list) { return sizeof(List) + list.values().size_bytes(); }
  static std::optional<std::vector<U8>> readValue(std::string_view text);
};

template <std::size_t count>
std::vector<U8> octetsOf(const std::array<U32, count>& words) {
  std::vector<U8> octets;
  for (const U32 word : words)
    for (int shift = 24; shift >= 0; shift -= 8) octets.push_back(U8(word >> shift));
  return octets;
}

/// `65000:100`, or one of the well-known names, all of which lie in the two ends of the numbers.
std::optional<std::vector<U8>> Standard::readValue(std::string_view text) {
  U16 high = 0, low = 0;
  const char* const end = text.data() + text.size();
  const auto colon = std::from_chars(text.data(), end, high);
  if (colon.ec == std::errc() && colon.ptr != end && *colon.ptr == ':') {
    const auto last = std::from_chars(colon.ptr + 1, end, low);
    if (last.ec == std::errc() && last.ptr == end)
      return octetsOf(std::array{U32(high) << 16 | low});
  }
  if (text.empty()) return std::nullopt;
  for (U32 wellKnown = 0xffff0000; wellKnown != 0; ++wellKnown)
    if (List::wellKnownName(wellKnown) == text) return octetsOf(std::array{wellKnown});
  if (List::wellKnownName(0) == text) return octetsOf(std::array{U32{0}});
  return std::nullopt;
}

/// The value part of an attribute, which has the long or the short header.
Octets valueOf(const std::string& attribute) {
  const Octets all(reinterpret_cast<const U8*>(attribute.data()), attribute.size());
  constexpr U8 extendedLength = 0x10;
  return all.subspan(all[0] & extendedLength ? 4 : 3);
}

template <class Kind>
class Interned final : public KindTable {
 public:
  std::optional<std::string> hold(Octets value) override {
    auto interned = Kind::List::dedupWire(table_, value);
    if (!interned) return interned.fault->toStrep();
    held_.push_back(std::move(interned.list));
    communities_ += value.size() / Kind::valueSize;
    return std::nullopt;
  }

  void add(const KindTable& table) override {
    const auto& other = static_cast<const Interned&>(table);
    for (const auto& [list, paths] : other.pathsByList()) {
      auto interned = Kind::List::dedupWire(table_, valueOf(list->serialize()));
      added_.emplace_back(std::move(interned.list), paths);
    }
    communities_ += other.communities_;
  }

  KindFigures figures() const override {
    KindFigures figures;
    figures.communities = communities_;
    figures.internedOctets = memory() - memoryBefore_ + table_->dedupHashTable()->octets();
    figures.distinctLists = table_->dedupHashTable()->members();
    std::vector<ValuePaths> values;
    for (const auto& [list, paths] : pathsByList()) {
      figures.attributes += paths;
      figures.unsharedOctets += paths * Kind::ownOctets(*list);
      appendValues(values, list->serialize(), paths);
    }
    addUp(values);
    figures.distinctValues = values.size();
    figures.mostUsed = mostUsed(values);
    return figures;
  }

  Text text(Octets value, bool names) const override {
    const auto interned = Kind::List::dedupWire(table_, value);
    if (!interned) return {false, interned.fault->toStrep()};
    return {true, Kind::text(*interned.list, names)};
  }

  std::vector<std::string> texts(Octets value, bool names) const override {
    std::vector<std::string> texts;
    const auto interned = Kind::List::dedupWire(table_, value);
    if (!interned) return texts;
    const std::string attribute = interned.list->serialize();
    for (Octets left = valueOf(attribute); !left.empty(); left = left.subspan(Kind::valueSize))
      texts.push_back(Kind::valueText(left.first(Kind::valueSize), names));
    return texts;
  }

  Text serialized(Octets value) const override {
    const auto interned = Kind::List::dedupWire(table_, value);
    if (!interned) return {false, interned.fault->toStrep()};
    return {true, interned.list->serialize()};
  }

 private:
  using List = typename Kind::List;
  /// In network order, so that values sort as their octets do.
  using Value = std::array<U32, Kind::valueSize / sizeof(U32)>;
  using ValuePaths = std::pair<Value, U64>;

  static U64 memory() {
    U64 octets = 0;
    for (const std::string_view type : Kind::memory) octets += Mox::allocationCount(type).octets;
    return octets;
  }

  std::unordered_map<const List*, U64> pathsByList() const {
    std::unordered_map<const List*, U64> paths(table_->dedupHashTable()->members());
    for (const auto& list : held_) ++paths[list.get()];
    for (const auto& [list, count] : added_) paths[list.get()] += count;
    return paths;
  }

  static void appendValues(std::vector<ValuePaths>& values, const std::string& attribute,
                           U64 paths) {
    Cursor in(valueOf(attribute));
    while (!in.atEnd()) {
      Value value;
      for (U32& word : value) word = in.u32();
      values.emplace_back(value, paths);
    }
  }

  /// One entry per value, in order.
  static void addUp(std::vector<ValuePaths>& values) {
    std::sort(values.begin(), values.end());
    std::size_t last = 0;
    for (std::size_t i = 1; i < values.size(); ++i) {
      if (values[i].first == values[last].first)
        values[last].second += values[i].second;
      else
        values[++last] = values[i];
    }
    if (!values.empty()) values.resize(last + 1);
  }

  static std::vector<ValueUse> mostUsed(std::vector<ValuePaths>& values) {
    const std::size_t count = std::min<std::size_t>(10, values.size());
    const auto moreUsed = [](const ValuePaths& a, const ValuePaths& b) {
      return a.second != b.second ? a.second > b.second : a.first < b.first;
    };
    std::partial_sort(values.begin(), values.begin() + std::ptrdiff_t(count), values.end(),
                      moreUsed);
    std::vector<ValueUse> uses;
    for (std::size_t i = 0; i < count; ++i)
      uses.push_back({Kind::valueText(octetsOf(values[i].first), true), values[i].second});
    return uses;
  }

  U64 memoryBefore_ = memory();
  Mox::Ptr<typename Kind::Table> table_ = Kind::makeTable();
  std::vector<typename List::PtrConst> held_;  ///< one per path of this file
  /// From other tables: a list and how many paths hold it.
  std::vector<std::pair<typename List::PtrConst, U64>> added_;
  U64 communities_ = 0;
};

template <class Kind>
std::unique_ptr<KindTable> makeKindTable() {
  return std::make_unique<Interned<Kind>>();
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
    row<Standard>("standard", "standard", 8),
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

// The table of kinds: every assigned kind of the four attributes of communities, and the rows that
// an agent adds.
//
//   const KindTable& table = KindTable::builtIn();
//   table.find(ExtCommContent(0x0600010000000005))->identifier    // "mac-mobility"
//   table.find("L2VPN-ID-AS2")->name                              // "L2VPN Identifier"
//   const KindTable more = table.with(rows, owner);               // and these
//
// A row is found by content (attribute, type, subtype; of standard communities the value), never by
// the class of an object. Facts are from the IANA registries "BGP Extended Communities" and "BGP
// Well-known Communities" and the standards that the rows name.
//
// Threads: a table does not change once it is made; copies share what it holds. Use it from any.
#pragma once

#include <memory>
#include <variant>
#include <vector>

#include "agent/CommunityValue.h"
#include "community/ZoBgpCommunityContent.h"
#include "community/ZoBgpCommunityWellKnown.h"
#include "ip6/ExtCommIp6Content.h"
#include "kinds/ZoBgpKind.h"

namespace Routing::Bgp {

/// A community of any of the four attributes, in the order of their numbers.
using AnyCommunity =
    std::variant<BgpCommunityValue, ExtCommContent, ExtCommIp6Content, Acl::CommunityValue>;

/// The attribute that it belongs to.
BgpPathAttrType attributeOf(const AnyCommunity& community);

/// The octets of a community on the wire, at most 20.
class CommunityOctets {
 public:
  /// In network order.
  explicit CommunityOctets(const AnyCommunity& community);

  /// All of them.
  std::span<const U8> all() const { return {octets_.data(), size_}; }
  /// The octets that the fields of a row divide: without type and subtype.
  std::span<const U8> value() const { return all().subspan(prefix_); }

 private:
  std::array<U8, 20> octets_;
  U32 size_ = 0;
  U32 prefix_ = 0;
};

/// The community of these octets. REQUIRES: octets.size() is 4, 8, 12 or 20, as the attribute has
/// it.
AnyCommunity communityOf(BgpPathAttrType attribute, std::span<const U8> octets);

class KindTable {
 public:
  /// The kinds that are assigned.
  static const KindTable& builtIn();

  /// This table and more rows, of extended communities, which `owner` keeps alive. RangeException
  /// with the text of a fault when a row is no good or clashes with another, see ZoBgpKindCheck.h;
  /// this table stays as it is. Sorts all rows.
  KindTable with(std::span<const Kind> rows, std::shared_ptr<const void> owner) const;

  /// All rows, in the order in which they were added; in the built-in table by attribute, type and
  /// subtype, unnamed ones last.
  std::span<const Kind* const> rows() const { return state_->rows; }

  // Rows live as long as a copy of the table does. By content a binary search; by word also an
  // allocation.

  /// The row of a community, or null. A standard or large one always has a row.
  const Kind* find(const AnyCommunity& community) const;
  /// The same; null for a type and subtype that nobody assigned.
  const Kind* find(const ExtCommContent& content) const;
  /// The same; null for a type and subtype that nobody assigned.
  const Kind* find(const ExtCommIp6Content& content) const;
  /// The row of an identifier or of an alias, in any letter case, or null.
  const Kind* find(std::string_view identifier) const;

 private:
  struct Word {
    Mox::String text;  // in lower case
    const Kind* kind;
  };
  struct State {
    std::vector<const Kind*> rows;
    std::vector<std::pair<U64, const Kind*>> byKey;  // ascending
    std::vector<Word> words;                         // ascending
    std::vector<std::shared_ptr<const void>> owners;
  };

  KindTable added(std::span<const Kind> rows, std::shared_ptr<const void> owner) const;
  explicit KindTable(std::shared_ptr<const State> state) : state_(std::move(state)) {}
  const Kind* findKey(U64 key) const;

  std::shared_ptr<const State> state_;
};

}  // namespace Routing::Bgp

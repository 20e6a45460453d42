// What the intern tables of both families of extended communities have in common: every content is
// one object, made by the parser when it is first seen.
//
// The kind and the classification of an object are decided once, by the rules that are installed
// when its content is interned; the content alone is its identity. A content whose object has gone
// is parsed afresh.
//
// Threads: thread-safe exactly when `ZoBgpGlobals::multiThreaded()` says so while the table is
// made. The parser's rules are read without a lock, so nobody may change them meanwhile.
#pragma once

#include "Mox/ValueText.h"
#include "Orv/DedupHashTableUnorderedSet.h"
#include "attr/ZoBgpGlobals.h"

namespace Routing::Bgp {

class BgpParseExtendedCommunityRule;

/// `Value` is the base class of the family. `Table` names its own description and what only it
/// knows: `place(content, seed)` and `parse(rule, content)`, which never returns null.
template <class Table, class Value>
class ExtCommValueDedupTable : public Mox::Entity<Table, Mox::PtrInterface> {
 public:
  using Rule = BgpParseExtendedCommunityRule;

  /// RangeException for null.
  explicit ExtCommValueDedupTable(const Mox::Ptr<const Rule>& rule) : parseExtCommRule_(rule) {
    Mox::refuseNull(rule, Table::type.name(), "parseExtCommRule");
    handleInitialized();
  }

  /// Makes the intern set; a table that has one gets a new one.
  void handleInitialized() {
    dedupHashTable_ = Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(
        ZoBgpGlobals::multiThreaded(), {placeOfMember, placeOfContent});
  }
  const Mox::Ptr<Orv::DedupHashTableUnorderedSet>& dedupHashTable() const {
    return dedupHashTable_;
  }
  const Mox::Ptr<const Rule>& parseExtCommRule() const { return parseExtCommRule_; }

  /// The one object of this content. A hit allocates nothing and does not ask the parser.
  Mox::Ptr<const Value> dedupContent(const typename Value::Content& content) const {
    const U64 place = Table::place(content, dedupHashTable_->seed());
    auto object = dedupHashTable_->lookup(place, [&](const Orv::DedupHandle& member) {
      return static_cast<const Value&>(member).getContent() == content;
    });
    if (!object) {
      auto parsed = Table::parse(*parseExtCommRule_, content);
      // A rule that makes an object of another content would lose it in the table.
      MOX_ASSERT(!parsed || parsed->getContent() == content, "getContent() == content");
      object = dedupHashTable_->dedup(std::move(parsed), place);
    }
    MOX_ASSERT(object, "dedupHandle");
    return Mox::staticCast<const Value>(std::move(object));
  }

  /// The intern set's own dump.
  void dumpState(const Mox::Ptr<const Orv::DumpContext>& context, U32 indent) const {
    dedupHashTable_->dumpState(context, indent);
  }

 private:
  static U64 placeOfMember(const Orv::DedupHandle& member, U64 seed) {
    return Table::place(static_cast<const Value&>(member).getContent(), seed);
  }
  static U64 placeOfContent(const Orv::DedupContentHandle& content, U64 seed) {
    typename Value::Content copy;
    std::memcpy(&copy, content.octets, sizeof copy);
    return Table::place(copy, seed);
  }

  Mox::Ptr<Orv::DedupHashTableUnorderedSet> dedupHashTable_;
  const Mox::Ptr<const Rule> parseExtCommRule_;
};

/// What both tables have by name, for reflection.
template <class Table>
std::vector<Mox::Attribute> extCommDedupTableAttributes() {
  return {Mox::attribute<&Table::dedupHashTable>("dedupHashTable"),
          Mox::attribute<&Table::parseExtCommRule>("parseExtCommRule"),
          Mox::operation("handleInitialized"), Mox::operation("dumpState")};
}

}  // namespace Routing::Bgp

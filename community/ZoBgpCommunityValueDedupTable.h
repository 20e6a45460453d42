// The intern table of extended communities, for both families: every content is one object, which
// the parser makes when the content is first seen.
//
// 1. The content alone is the identity of an object.
// 2. Class and classification of an object are decided once, by the rules that are installed when
//    its content is interned. A content whose object has gone is parsed afresh.
//
// Threads: thread-safe exactly when `ZoBgpGlobals::multiThreaded()` says so while the table is
// made. REQUIRES: nobody changes the parser's rules meanwhile; they are read without a lock.
#pragma once

#include "Orv/DedupHashTableUnorderedSet.h"

namespace Routing::Bgp {

class BgpParseExtendedCommunityRule;

/// `Value` is the base class of the family. `Table` derives from this and has what only it knows:
/// its description, `place(content, seed)`, and `parse(rule, content)`.
template <class Table, class Value>
class ExtCommValueDedupTable : public Mox::Entity<Table, Mox::PtrInterface> {
 public:
  using Rule = BgpParseExtendedCommunityRule;

  /// RangeException for null.
  explicit ExtCommValueDedupTable(const Mox::Ptr<const Rule>& rule);

  /// Makes the intern set; a table that has one gets a new one.
  void handleInitialized();

  /// The intern set; null before `handleInitialized`.
  const Mox::Ptr<Orv::DedupHashTableUnorderedSet>& dedupHashTable() const {
    return dedupHashTable_;
  }
  /// The parser of new contents; never null.
  const Mox::Ptr<const Rule>& parseExtCommRule() const { return parseExtCommRule_; }

  /// The one object of this content. A hit allocates nothing and does not ask the parser. Asserts
  /// "dedupHandle" when the parser gives null, "getContent() == content" when it gives an object
  /// of another content.
  Mox::Ptr<const Value> dedupContent(const typename Value::Content& content) const;

  /// The intern set's own dump.
  void dumpState(const Mox::Ptr<const Orv::DumpContext>& context, U32 indent) const;

 private:
  static U64 placeOfMember(const Orv::DedupHandle& member, U64 seed);
  static U64 placeOfContent(const Orv::DedupContentHandle& content, U64 seed);

  Mox::Ptr<Orv::DedupHashTableUnorderedSet> dedupHashTable_;
  const Mox::Ptr<const Rule> parseExtCommRule_;
};

}  // namespace Routing::Bgp

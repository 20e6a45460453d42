// The texts that show commands have printed of extended communities, by content: looking one up is
// much cheaper than making it.
//
//   BgpShowCli::ExtCommCache::Ptr cache = container->extCommCache();
//   Mox::String text = cache->lookup(content.value(), asdot);
//   if (text.empty()) {
//     text = ...;
//     cache->insert(content.value(), text, asdot);
//   }
//
// 1. The two notations of AS numbers, plain and asdot, have a text each. REQUIRES: all users of a
//    cache choose alike in everything else that shapes a text.
// 2. Texts stay until they are deleted. The size has no limit.
// 3. An empty text that was inserted is found like none.
//
// Threads: one.
#pragma once

#include <unordered_map>

#include "Mox/Entity.h"

namespace BgpShowCli {

/// Texts by content, in any order.
class ExtCommTexts {
 public:
  using U64 = Mox::U64;

  /// The text of this content; empty when there is none.
  Mox::String find(U64 content) const;
  /// Stores the text, in place of an earlier one.
  void insert(U64 content, Mox::String text) { texts_.insert_or_assign(content, std::move(text)); }
  /// Returns what it removed; empty when there was none.
  Mox::String erase(U64 content);
  /// Forgets all texts.
  void clear() { texts_.clear(); }

  /// `842122827661412: <RouteTarget2ByteASN ...>, ...`
  friend Mox::String valueToStrep(const ExtCommTexts& texts);

 private:
  /// Low half exclusive-or high half. A peer can send communities that collide; only show commands
  /// would wait for that.
  struct Hash {
    std::size_t operator()(U64 content) const { return Mox::U32(content ^ content >> 32); }
  };
  std::unordered_map<U64, Mox::String, Hash> texts_;
};

/// The texts in both notations.
class ExtCommCache final : public Mox::Entity<ExtCommCache, Mox::PtrInterface> {
 public:
  static const Mox::Type type;
  using Content = unsigned long long;

  /// The text in the notation asked for; empty when there is none.
  Mox::String lookup(const Content& extCommVal, bool asdot) const {
    return asdot ? extCommToAsdotString(extCommVal) : extCommToString(extCommVal);
  }
  /// Stores the text of a notation, in place of an earlier one.
  void insert(const Content& extCommVal, Mox::String extCommStr, bool asdot) {
    (asdot ? asdot_ : plain_).insert(extCommVal, std::move(extCommStr));
  }

  // The texts in plain and in asdot notation. Reading and deleting return the empty text when there
  // is none.
  const ExtCommTexts& extCommToStrings() const { return plain_; }
  Mox::String extCommToString(const Content& content) const { return plain_.find(content); }
  void extCommToStringIs(const Content& content, Mox::String text) {
    plain_.insert(content, std::move(text));
  }
  Mox::String extCommToStringDel(const Content& content) { return plain_.erase(content); }
  void extCommToStringDelAll() { plain_.clear(); }

  // The same in asdot notation.
  const ExtCommTexts& extCommToAsdotStrings() const { return asdot_; }
  Mox::String extCommToAsdotString(const Content& content) const { return asdot_.find(content); }
  void extCommToAsdotStringIs(const Content& content, Mox::String text) {
    asdot_.insert(content, std::move(text));
  }
  Mox::String extCommToAsdotStringDel(const Content& content) { return asdot_.erase(content); }
  void extCommToAsdotStringDelAll() { asdot_.clear(); }

 private:
  ExtCommTexts plain_, asdot_;
};

/// A new, empty cache.
ExtCommCache::Ptr extCommCacheFactory();

}  // namespace BgpShowCli

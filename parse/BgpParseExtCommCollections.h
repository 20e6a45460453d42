// The registry of rules: every rule that plug-ins may fill, in one collection per kind.
//
//   struct Watcher : BgpParseExtCommRuleCollections::NotifieeConst {
//     using Key = BgpParseExtCommSubTypeTransOpaqueRuleKey;
//     void onExtendedCommSubTypeTransOpaqueRuleInstance(const Key& key) override { ... }
//   };
//   watcher.notifierIs(registry);
//   registry->extendedCommSubTypeTransOpaqueRuleInstanceIs(key);   // the watcher hears of it
//   registry->extendedCommSubTypeTransOpaqueRuleInstanceHas(key);  // true
//
// 1. Adding a key that is there, or removing one that is not, changes nothing and is not heard.
// 2. A change is made first and then heard, by all observers in the order of their registration,
//    before the call returns. See Mox/NotifieeList.h for what observers may do meanwhile.
// 3. An exception of an observer reaches the caller. The change stands, and the observers after it
//    hear nothing.
// 4. A collection is visited in any order. A visitor that lets others change it visits a copy.
//
// Threads: the registry, its observers and rules that are being changed belong to one thread.
#pragma once

#include <unordered_set>

#include "Mox/Entity.h"
#include "Mox/NotifieeList.h"
#include "parse/BgpParseExtCommKeys.h"

namespace Routing::Bgp {

class BgpParseExtCommRuleCollections final
    : public Mox::Entity<BgpParseExtCommRuleCollections, Mox::PtrInterface> {
  struct KeyHash {
    std::size_t operator()(const auto& key) const { return key.hash(); }
  };

 public:
  static const Mox::Type type;
  class NotifieeConst;

  template <class Kind>
  using Keys = std::unordered_set<BgpParseExtCommRuleKey<Kind>, KeyHash>;

  // For each kind: `extendedCommSubTypeTransOpaqueRuleInstance()` to visit, and with `Has`, `Is`,
  // `Del` and `DelAll` to test, add, remove and empty. `Del` says whether the key was there.
#define ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, ...)              \
  const Keys<kind::Kind>& extended##Collection##RuleInstance() const {                          \
    return instances<kind::Kind>();                                                             \
  }                                                                                             \
  bool extended##Collection##RuleInstanceHas(const Key& key) const { return instanceHas(key); } \
  void extended##Collection##RuleInstanceIs(const Key& key) { instanceIs(key); }                \
  bool extended##Collection##RuleInstanceDel(const Key& key) { return instanceDel(key); }       \
  void extended##Collection##RuleInstanceDelAll() { instanceDelAll<kind::Kind>(); }
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"

  // The same for code that is written for all kinds at once.
  template <class Kind>
  const Keys<Kind>& instances() const {
    return std::get<Keys<Kind>>(collections_);
  }
  template <class Kind>
  bool instanceHas(const BgpParseExtCommRuleKey<Kind>& key) const {
    return instances<Kind>().contains(key);
  }
  /// REQUIRES: the key names a live rule, or none. A rule of another registry does not take its key
  /// out of this one.
  template <class Kind>
  void instanceIs(const BgpParseExtCommRuleKey<Kind>& key);
  template <class Kind>
  bool instanceDel(const BgpParseExtCommRuleKey<Kind>& key);
  /// Heard once, as a change of the whole collection.
  template <class Kind>
  void instanceDelAll();
  /// Removes a key unheard, that of a rule inside its destructor: nobody may use such a rule.
  template <class Kind>
  void instanceForget(const BgpParseExtCommRuleKey<Kind>& key) {
    std::get<Keys<Kind>>(collections_).erase(key);
  }

  Mox::NotifieeList* notifieeList() const override { return &notifiees_; }

 private:
  kind::All::Tuple<Keys> collections_;
  mutable Mox::NotifieeList notifiees_;
};

/// An observer of the registry. An event does nothing unless its operation is overridden.
class BgpParseExtCommRuleCollections::NotifieeConst : public Mox::Notifiee {
 public:
  /// Observes this registry, or none when null.
  void notifierIs(const BgpParseExtCommRuleCollections::PtrConst& registry) {
    Notifiee::notifierIs(registry);
  }

  // For each kind: `onExtendedCommSubTypeTransOpaqueRuleInstance`, with the key that was added or
  // removed, or without one when the collection as a whole has changed. Override both: overriding
  // one hides the other, and some compilers warn of it.
#define ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, ...) \
  virtual void onExtended##Collection##RuleInstance(const Key&) {}                 \
  virtual void onExtended##Collection##RuleInstance() {}                           \
  void hear(const Key& key) { onExtended##Collection##RuleInstance(key); }         \
  void hear(kind::Kind) { onExtended##Collection##RuleInstance(); }
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"
};

/// A new, empty registry.
BgpParseExtCommRuleCollections::Ptr bgpParseExtCommRuleCollectionsFactory();

}  // namespace Routing::Bgp

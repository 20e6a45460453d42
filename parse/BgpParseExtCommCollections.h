// The registry of rules: every rule instance that plug-ins may fill, in one collection per kind.
//
//   struct Watcher : BgpParseExtCommRuleCollections::NotifieeConst {
//     using Key = BgpParseExtCommSubTypeTransOpaqueRuleKey;
//     void onExtendedCommSubTypeTransOpaqueRuleInstance(const Key& key) override { ... }
//   };
//   watcher.notifierIs(registry);
//   registry->extendedCommSubTypeTransOpaqueRuleInstanceIs(key);   // the watcher hears of it
//   registry->extendedCommSubTypeTransOpaqueRuleInstanceHas(key);  // true
//
// 1. Adding what is there, or removing what is not, does nothing and is not heard.
// 2. Every change is heard by all observers, in the order of their registration, before the call
//    returns; see Mox/NotifieeList.h for what they may do meanwhile.
// 3. Whoever visits a collection and lets others change it meanwhile visits a copy. The order is
//    any.
//
// Threads: registry, observers and rules that are being changed belong to one thread.
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
  template <class Kind>
  void instanceIs(const BgpParseExtCommRuleKey<Kind>& key);
  template <class Kind>
  bool instanceDel(const BgpParseExtCommRuleKey<Kind>& key);
  /// Heard once, as a change of the whole collection.
  template <class Kind>
  void instanceDelAll();
  /// Removes a key that nobody is to hear of any more: that of a rule inside its destructor.
  template <class Kind>
  void instanceForget(const BgpParseExtCommRuleKey<Kind>& key) {
    std::get<Keys<Kind>>(collections_).erase(key);
  }

  Mox::NotifieeList* notifieeList() const override { return &notifiees_; }

 private:
  kind::All::Tuple<Keys> collections_;
  mutable Mox::NotifieeList notifiees_;
};

/// An observer of the registry. All that it hears does nothing unless it is overridden.
class BgpParseExtCommRuleCollections::NotifieeConst : public Mox::Notifiee {
 public:
  /// The registry that is observed, or null for none.
  void notifierIs(const BgpParseExtCommRuleCollections::PtrConst& registry) {
    Notifiee::notifierIs(registry);
  }

  // For each kind: `onExtendedCommSubTypeTransOpaqueRuleInstance`, with the key that was added or
  // removed, or without one when the collection as a whole has changed. Overriding one of the two
  // hides the other, of which some compilers warn: override both.
#define ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, ...) \
  virtual void onExtended##Collection##RuleInstance(const Key&) {}                 \
  virtual void onExtended##Collection##RuleInstance() {}                           \
  void hear(const Key& key) { onExtended##Collection##RuleInstance(key); }         \
  void hear(kind::Kind) { onExtended##Collection##RuleInstance(); }
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"
};

template <class Kind>
void BgpParseExtCommRuleCollections::instanceIs(const BgpParseExtCommRuleKey<Kind>& key) {
  if (!std::get<Keys<Kind>>(collections_).insert(key).second) return;
  notifiees_.deliver<NotifieeConst>([&key](NotifieeConst& notifiee) { notifiee.hear(key); });
}

template <class Kind>
bool BgpParseExtCommRuleCollections::instanceDel(const BgpParseExtCommRuleKey<Kind>& key) {
  // A copy: the key may be given as it stands in the collection.
  const BgpParseExtCommRuleKey<Kind> removed = key;
  if (std::get<Keys<Kind>>(collections_).erase(removed) == 0) return false;
  notifiees_.deliver<NotifieeConst>([&](NotifieeConst& notifiee) { notifiee.hear(removed); });
  return true;
}

template <class Kind>
void BgpParseExtCommRuleCollections::instanceDelAll() {
  Keys<Kind>& keys = std::get<Keys<Kind>>(collections_);
  if (keys.empty()) return;
  keys.clear();
  notifiees_.deliver<NotifieeConst>([](NotifieeConst& notifiee) { notifiee.hear(Kind()); });
}

BgpParseExtCommRuleCollections::Ptr bgpParseExtCommRuleCollectionsFactory();

}  // namespace Routing::Bgp

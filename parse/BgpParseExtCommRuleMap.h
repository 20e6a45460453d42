// The rules of one level, each under the octet that it serves.
//
// Rules are few and looked up for every content that is parsed: a look-up reads their place from an
// array, by the octet, and takes no reference.
//
// Threads: read from any; nobody else may use the map while it changes.
#pragma once

#include <algorithm>
#include <array>
#include <vector>

#include "Mox/ValueText.h"

namespace Routing::Bgp {

/// `Rule` says its key, a `Rule::MapKey`, in `mapKey()`. Rules are visited by ascending key.
template <class Rule>
class BgpParseExtCommRuleMap {
 public:
  using Key = typename Rule::MapKey;
  using Pointer = Mox::PtrConst<Rule>;

  /// Null when there is none. The map keeps the rule alive only while it has it.
  const Rule* find(Key key) const {
    if (const auto octet = U32(key); octet < places_.size())
      return places_[octet] ? rules_[places_[octet] - 1].get() : nullptr;
    const auto at = notBelow(rules_, key);
    return at != rules_.end() && (*at)->mapKey() == key ? at->get() : nullptr;
  }
  /// The object that the rule of this octet builds of the content; null when there is no rule. The
  /// rule is held: it may be removed while it is asked.
  auto inhale(Key key, const auto& content) const -> Mox::Ptr<typename Rule::Object> {
    const Pointer rule(find(key));
    return rule ? rule->inhale(content) : nullptr;
  }
  /// Returns the rule that was replaced: null when there was none, or when it is this one.
  /// REQUIRES: rule.
  Pointer insert(Pointer rule) {
    const auto at = notBelow(rules_, rule->mapKey());
    if (at == rules_.end() || (*at)->mapKey() != rule->mapKey()) {
      rules_.insert(at, std::move(rule));
      findPlaces();
      return nullptr;
    }
    if (*at == rule) return nullptr;
    std::swap(*at, rule);
    return rule;
  }
  /// Returns what was removed; null when there was none.
  Pointer erase(Key key) {
    if (!find(key)) return nullptr;
    const auto at = notBelow(rules_, key);
    Pointer removed = std::move(*at);
    rules_.erase(at);
    findPlaces();
    return removed;
  }
  /// Empties the map and returns its rules: they may look at the map, empty by then, as they go.
  std::vector<Pointer> clear() {
    places_ = {};
    return std::exchange(rules_, {});
  }

  std::size_t size() const { return rules_.size(); }
  auto begin() const { return rules_.begin(); }
  auto end() const { return rules_.end(); }

  /// Keys and classes: `2: Routing::Bgp::..., 3: Routing::Bgp::...`
  friend Mox::String valueToStrep(const BgpParseExtCommRuleMap& map) {
    Mox::String text;
    for (const Pointer& rule : map)
      text += (text.empty() ? "" : ", ") + std::to_string(U32(rule->mapKey())) + ": " +
              rule->fwkType().name();
    return text;
  }

 private:
  /// The first rule whose key is not below this one.
  static auto notBelow(auto& rules, Key key) {
    return std::lower_bound(rules.begin(), rules.end(), key,
                            [](const Pointer& rule, Key other) { return rule->mapKey() < other; });
  }

  void findPlaces() {
    places_ = {};
    for (std::size_t i = 0; i < rules_.size(); ++i)
      if (const auto octet = U32(rules_[i]->mapKey()); octet < places_.size())
        places_[octet] = U16(i + 1);
  }

  std::vector<Pointer> rules_;        // ascending, one for a key
  std::array<U16, 256> places_ = {};  // of octets: 1 + the index in rules_; 0 when there is no rule
};

}  // namespace Routing::Bgp

// The rules of one level, each under the octet that it serves. They are few and looked up for every
// content that is parsed, so they lie side by side in the order of their keys.
#pragma once

#include <algorithm>
#include <vector>

#include "Mox/ValueText.h"

namespace Routing::Bgp {

/// `Rule` says its key, a `Rule::MapKey`, in `mapKey()`. Rules are visited by ascending key.
template <class Rule>
class BgpParseExtCommRuleMap {
 public:
  using Key = typename Rule::MapKey;
  using Pointer = Mox::PtrConst<Rule>;

  /// Null when there is none.
  const Rule* find(Key key) const {
    const auto place = placeOf(rules_, key);
    return place != rules_.end() && (*place)->mapKey() == key ? place->get() : nullptr;
  }
  /// Returns the rule that was replaced: null when there was none, or when it is this one.
  Pointer insert(Pointer rule) {
    const auto place = placeOf(rules_, rule->mapKey());
    if (place == rules_.end() || (*place)->mapKey() != rule->mapKey()) {
      rules_.insert(place, std::move(rule));
      return nullptr;
    }
    if (*place == rule) return nullptr;
    std::swap(*place, rule);
    return rule;
  }
  /// Returns what was removed; null when there was none.
  Pointer erase(Key key) {
    if (!find(key)) return nullptr;
    const auto place = placeOf(rules_, key);
    Pointer removed = std::move(*place);
    rules_.erase(place);
    return removed;
  }
  /// Empties the map, whose rules may look at it while they go, and returns them.
  std::vector<Pointer> clear() { return std::exchange(rules_, {}); }

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
  static auto placeOf(auto& rules, Key key) {
    return std::lower_bound(rules.begin(), rules.end(), key,
                            [](const Pointer& rule, Key key) { return rule->mapKey() < key; });
  }

  std::vector<Pointer> rules_;
};

}  // namespace Routing::Bgp

// The rules of one level, each under the octet that it serves.
//
// Rules are few and looked up for every content that is parsed, so they lie side by side in the
// order of their keys: a look-up is a binary search and takes no reference.
//
// Threads: read from any; nobody else may use the map while it changes.
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

  /// Null when there is none. The map keeps the rule alive only while it has it.
  const Rule* find(Key key) const {
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
    return removed;
  }
  /// Empties the map and returns its rules: they may look at the map, empty by then, as they go.
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
  /// The first rule whose key is not below this one.
  static auto notBelow(auto& rules, Key key) {
    return std::lower_bound(rules.begin(), rules.end(), key,
                            [](const Pointer& rule, Key other) { return rule->mapKey() < other; });
  }

  std::vector<Pointer> rules_;  // ascending, one for a key
};

}  // namespace Routing::Bgp

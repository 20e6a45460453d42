// The kinds of rule, one per type octet, and the names of the classes of each.
//
// The top rule chooses a type rule by the type octet, the type rule a sub-rule by the subtype
// octet. For each of the thirteen types that have a rule there are
//
//   kind::TransOpaque                          the differences between this kind and the others
//   BgpParseExtCommTransOpaqueRule             its type rule
//   BgpParseExtComSubTypeTransOpaqueRuleBase   the base of its sub-rules, with one `m`
//   BgpParseExtCommSubTypeTransOpaqueRuleKey   names one of its type rules in the registry
//
// Each of these classes is an instance of one template. The rows are in BgpParseExtCommKindList.h.
// `kind::Top` is the kind of the top rule: its sub-rules are the type rules.
#pragma once

#include <tuple>

#include "community/ZoBgpCommunity.h"
#include "ip6/ExtCommIp6.h"

namespace Routing::Bgp {

class BgpParseExtendedCommunityRule;
template <class Family>
class BgpParseExtCommTypeRuleBase;
template <class Kind>
class BgpParseExtCommTypeRule;
template <class Kind>
class BgpParseExtCommSubTypeRuleBase;
template <class Kind>
class BgpParseExtCommRuleKey;

using BgpParseExtendedCommunityTypeRuleBase = BgpParseExtCommTypeRuleBase<ExtCommFamily>;
using BgpParseExtendedCommunityIp6TypeRuleBase = BgpParseExtCommTypeRuleBase<ExtCommIp6Family>;

namespace kind {

inline constexpr bool offered = true, withheld = false;

/// A type that has a rule: its octet, the enumeration of its subtypes, and whether plug-ins are
/// offered the rule. A content that no sub-rule serves becomes a `Fallback` of no classification;
/// `arguments` go to its constructor.
template <class F, typename F::PktType type, class S, bool toPlugins, class General,
          auto... arguments>
struct TypeTraits {
  using Family = F;
  using Subtype = S;
  using Fallback = General;
  static constexpr typename F::PktType pktType = type;
  /// Whether the type rule enters the registry, so that plug-ins fill it.
  static constexpr bool offered = toPlugins;
  /// The assertion on a null sub-rule.
  static constexpr const char* nullRuleText = "rule != __null";

  /// A new object of a class that derives from the fallback and is constructed like it.
  template <std::derived_from<Fallback> Object>
  static Mox::Ptr<typename F::Object> make(ExtCommClassification classification,
                                           const typename F::Content& content) {
    return Mox::makeNew<Object>(classification, content, arguments...);
  }
  /// A new general object of the type.
  static Mox::Ptr<typename F::Object> fallback(const typename F::Content& content) {
    return make<Fallback>(extCommClassificationUnSpecified, content);
  }
};

/// The kind above all: its rules are parsers, its sub-rules are type rules.
struct Top {
  using Rule = BgpParseExtendedCommunityRule;
  using SubRule = BgpParseExtendedCommunityTypeRuleBase;
  static constexpr std::string_view keyName = "Routing::Bgp::BgpParseExtendedCommunityRuleKey";
  static constexpr const char* nullRuleText = "__null != rule";
};

#define ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, ...)  \
  struct Kind : __VA_ARGS__ {                                                       \
    using Rule = BgpParseExtCommTypeRule<Kind>;                                     \
    using SubRule = BgpParseExtCommSubTypeRuleBase<Kind>;                           \
    static constexpr std::string_view ruleName = "Routing::Bgp::" #RuleClass;       \
    static constexpr std::string_view subRuleName = "Routing::Bgp::" #SubRuleClass; \
    static constexpr std::string_view keyName = "Routing::Bgp::" #Key;              \
  };
#include "parse/BgpParseExtCommKindList.h"

/// Kinds in a row.
template <class... Kinds>
struct List {
  /// One `Of<Kind>` for each kind.
  template <template <class> class Of>
  using Tuple = std::tuple<Of<Kinds>...>;
};

using All = List<Top
#define ZOBGP_KIND(Kind, ...) , Kind
#include "parse/BgpParseExtCommKindList.h"
                 >;

}  // namespace kind

using BgpParseExtendedCommunityRuleKey = BgpParseExtCommRuleKey<kind::Top>;
#define ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, ...) \
  using RuleClass = kind::Kind::Rule;                                              \
  using SubRuleClass = kind::Kind::SubRule;                                        \
  using Key = BgpParseExtCommRuleKey<kind::Kind>;
#include "parse/BgpParseExtCommKindList.h"

}  // namespace Routing::Bgp

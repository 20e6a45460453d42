// Rules for tables, each with a name, its reason and the RFC behind it.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "ReaderNames.h"
#include "kinds/ZoBgpKindTable.h"
#include "path/ZoBgpPathFault.h"

namespace bgpcomm {

/// The paths that a rule is for.
enum class LintWhere : U8 {
  anywhere,
  external,         ///< from a peer in another AS than the collector's
  unicast,          ///< that announce a unicast prefix
  shorterThanHost,  ///< that announce a prefix of more than one address
};

/// A value, and what rules ask of it.
struct LintedValue {
  LintedValue(const Routing::Bgp::AnyCommunity& itsCommunity, const Routing::Bgp::KindTable& kinds);

  const Routing::Bgp::AnyCommunity& community;
  /// An extended community of a kind that has no row.
  bool isUnknown = false;
  /// The AS that says what the value means. Nothing when there is none: in well-known values
  /// (65535:*), beside a rate (where AS numbers only inform, RFC 8955, section 7.1), in kinds of
  /// other layouts.
  std::optional<U32> administrator;
};

struct LintRule {
  std::string_view name;
  std::string_view reference;
  std::string_view reason;  ///< a sentence without its full stop
  LintWhere where = LintWhere::anywhere;

  // One of these finds the breaches.

  bool (*ofValue)(const LintedValue& value) = nullptr;
  bool (*ofFault)(const Routing::Bgp::PathFault& fault) = nullptr;
  bool ofLength = false;  ///< of a list that is too long
};

/// All rules. At most 32.
std::span<const LintRule> lintRules();

}  // namespace bgpcomm

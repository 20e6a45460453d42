#include "Meanings.h"

#include <algorithm>

#include "TextStyle.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

struct Meaning {
  std::string_view identifier, text;
};
/// Well-known communities, in the order of their values.
constexpr Meaning wellKnown[] = {
    {"GRACEFUL_SHUTDOWN", "The session is about to go down: prefer any other path (RFC 8326)"},
    {"ACCEPT_OWN", "Accept the route though it is one's own (RFC 7611)"},
    {"LLGR_STALE", "Kept for long after its session went down: prefer others (RFC 9494)"},
    {"NO_LLGR", "Not to be kept for long when the session goes down (RFC 9494)"},
    {"STANDBY_PE", "Join of a multicast source at the router that stands by (RFC 9026)"},
    {"BLACKHOLE", "Discard the traffic to the prefix (RFC 7999)"},
    {"NO_EXPORT", "Not beyond the autonomous system or confederation (RFC 1997)"},
    {"NO_ADVERTISE", "Not to any other peer (RFC 1997)"},
    {"NO_EXPORT_SUBCONFED",
     "Not to external peers, members of the confederation included (RFC 1997)"},
    {"NOPEER", "Need not be sent to peers of a bilateral agreement (RFC 3765)"},
};

/// Plain standard and large communities are defined by the AS that their first number names.
std::string definedBy(const ValueUse& value) {
  const U64 as = std::stoull(value.octets.substr(0, value.octets.size() == 8 ? 4 : 8), nullptr, 16);
  if (value.octets.size() == 8 && (as == 0 || as == 0xffff)) return "Reserved (RFC 1997)";
  return "Defined by AS" + std::to_string(as);
}

}  // namespace

std::string meaningOf(const ValueUse& value) {
  if (!value.description.empty()) return value.description;
  const auto known = std::ranges::find(wellKnown, value.kind, &Meaning::identifier);
  if (known != std::end(wellKnown)) return std::string(known->text);
  if (value.kind == "unknown") return "Not in the table of kinds";
  const auto& kinds = textStyle().kinds;
  const Kind* const kind = (kinds ? *kinds : KindTable::builtIn()).find(value.kind);
  if (!kind) return definedBy(value);
  const std::string reference(kind->reference);
  if (reference.empty()) return std::string(kind->name);
  return std::string(kind->name) +
         (reference.starts_with('(') ? ' ' + reference : " (" + reference + ')');
}

}  // namespace bgpcomm

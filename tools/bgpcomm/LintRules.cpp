#include "LintRules.h"

#include <algorithm>

#include "Wanted.h"
#include "community/ZoBgpCommunityCanonicalText.h"
#include "kinds/ZoBgpKindFields.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

constexpr U32 wellKnownAs = 0xFFFF;

struct AsRange {
  U32 first, last;
};
constexpr AsRange privateUse[] = {{64512, 65534}, {4200000000, 4294967294}};
constexpr AsRange documentation[] = {{64496, 64511}, {65536, 65551}};
constexpr AsRange none[] = {{0, 0}};
constexpr AsRange translated[] = {{23456, 23456}};
constexpr AsRange reserved[] = {{65535, 65535}, {65552, 131071}, {4294967295, 4294967295}};

template <const auto& ranges>
bool isBy(const LintedValue& value) {
  return value.administrator && std::ranges::any_of(ranges, [&](const AsRange& range) {
           return *value.administrator >= range.first && *value.administrator <= range.last;
         });
}

std::optional<U32> standardOf(const LintedValue& value) {
  const auto* const standard = std::get_if<BgpCommunityValue>(&value.community);
  return standard ? std::optional(U32(*standard)) : std::nullopt;
}

bool isUnknown(const LintedValue& value) { return value.isUnknown; }
bool isUnassigned(const LintedValue& value) {
  const auto standard = standardOf(value);
  return standard && *standard >> 16 == wellKnownAs &&
         !registeredCommunity(BgpCommunityValue(*standard));
}
bool isNoExport(const LintedValue& value) {
  const auto standard = standardOf(value);
  return standard == U32(communityNoExport) || standard == U32(communityNoAdvertise) ||
         standard == U32(communityNoExportSubconfed);
}
bool isBlackhole(const LintedValue& value) { return standardOf(value) == 0xFFFF029A; }

bool isTarget(const LintedValue& value) { return isRouteTarget(value.community); }
bool isNonTransitive(const LintedValue& value) {
  constexpr U8 nonTransitive = 0x40;
  if (const auto* const content = std::get_if<ExtCommContent>(&value.community))
    return content->type() & nonTransitive;
  const auto* const content = std::get_if<ExtCommIp6Content>(&value.community);
  return content && content->type() & nonTransitive;
}

bool hasWrongFlags(const PathFault& fault) { return fault.reason == PathFaultReason::wrongFlags; }
bool isDiscarded(const PathFault& fault) {
  return fault.approach() == PathFaultApproach::attributeDiscard;
}
bool isMalformed(const PathFault& fault) { return !hasWrongFlags(fault) && !isDiscarded(fault); }

using enum LintWhere;

constexpr LintRule rules[] = {
    {.name = "private-as",
     .reference = "RFC 6996",
     .reason = "AS numbers for private use mean something in one network only; values with them "
               "should not leave it",
     .where = external,
     .ofValue = isBy<privateUse>},
    {.name = "documentation-as",
     .reference = "RFC 5398",
     .reason = "AS numbers for documentation belong to no network",
     .where = external,
     .ofValue = isBy<documentation>},
    {.name = "as-zero",
     .reference = "RFC 7607; RFC 1997; RFC 8092, section 5",
     .reason = "AS 0 belongs to no network, and values that begin with it are reserved",
     .where = external,
     .ofValue = isBy<none>},
    {.name = "as-trans",
     .reference = "RFC 6793",
     .reason = "AS 23456 stands for every AS number of four octets, so that nobody can tell whose "
               "value it is",
     .where = external,
     .ofValue = isBy<translated>},
    {.name = "reserved-as",
     .reference = "RFC 7300; RFC 8092, section 5; IANA's registry of AS numbers",
     .reason = "AS numbers 65535, 65552 to 131071 and 4294967295 are reserved and belong to no "
               "network",
     .where = external,
     .ofValue = isBy<reserved>},
    {.name = "non-transitive",
     .reference = "RFC 4360, section 6",
     .reason = "Non-transitive extended communities should be removed before a route goes to "
               "another AS",
     .where = external,
     .ofValue = isNonTransitive},
    {.name = "no-export",
     .reference = "RFC 1997",
     .reason =
         "A speaker that receives a route with NO_EXPORT, NO_ADVERTISE or NO_EXPORT_SUBCONFED must "
         "not pass it to another AS; here a peer has done so, or has set it on its own",
     .where = external,
     .ofValue = isNoExport},
    {.name = "route-target",
     .reference = "RFC 4364, section 4.3.1",
     .reason = "Route targets say into which VPNs a route goes; a unicast route is of none",
     .where = unicast,
     .ofValue = isTarget},
    {.name = "blackhole-prefix",
     .reference = "RFC 7999, section 3.3",
     .reason = "BLACKHOLE discards the traffic of a whole prefix, which should be as long as "
               "possible: /32, or /128 of IPv6",
     .where = shorterThanHost,
     .ofValue = isBlackhole},
    {.name = "unassigned-well-known",
     .reference = "RFC 1997",
     .reason = "Values that begin with 65535 are well-known ones, and these are not assigned",
     .ofValue = isUnassigned},
    {.name = "unknown-kind",
     .reference = "RFC 7153",
     .reason = "Extended communities whose type and subtype are not assigned: nobody but their "
               "senders can tell what they mean",
     .ofValue = isUnknown},
    {.name = "long-list",
     .reference = "RFC 4271, section 4.1",
     .reason = "Lists of more values than --longer-than says take much of a message, which has "
               "4096 octets for all attributes",
     .ofLength = true},
    {.name = "treat-as-withdraw",
     .reference = "RFC 7606, sections 4 and 7; RFC 8092, section 6",
     .reason = "Malformed attributes: speakers treat the route as withdrawn",
     .ofFault = isMalformed},
    {.name = "attribute-discard",
     .reference = "RFC 7606, section 3 g",
     .reason = "Attributes that are given again: speakers go on with the first",
     .ofFault = isDiscarded},
    {.name = "wrong-flags",
     .reference = "RFC 7606, section 3 c",
     .reason = "Attributes of communities that are not optional and transitive: speakers treat the "
               "route as withdrawn",
     .ofFault = hasWrongFlags},
};
static_assert(std::size(rules) <= 32);

/// The AS number in front, unless a rate stands behind it.
std::optional<U32> administratorIn(const AnyCommunity& community, const Kind& kind) {
  std::optional<U32> as;
  const CommunityOctets octets(community);
  for (const KindField& field : kind.fields) {
    if (field.form == KindForm::float32) return {};
    const bool isAs = field.form == KindForm::as2 || field.form == KindForm::as4;
    if (isAs && field.globalAdministrator) as = U32(KindFieldValue(octets, field).number());
  }
  return as;
}

}  // namespace

LintedValue::LintedValue(const AnyCommunity& itsCommunity, const KindTable& kinds)
    : community(itsCommunity) {
  if (const auto* const standard = std::get_if<BgpCommunityValue>(&community)) {
    if (const U32 as = U32(*standard) >> 16; as != wellKnownAs) administrator = as;
  } else if (const auto* const large = std::get_if<Acl::CommunityValue>(&community)) {
    administrator = large->globalAdmin();
  } else if (const Kind* const kind = kinds.find(community)) {
    administrator = administratorIn(community, *kind);
  } else {
    isUnknown = true;
  }
}

std::span<const LintRule> lintRules() { return rules; }

}  // namespace bgpcomm

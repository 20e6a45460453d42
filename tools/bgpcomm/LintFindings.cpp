#include "LintFindings.h"

#include <algorithm>

#include "Descriptions.h"
#include "HeldListsOf.h"
#include "Hex.h"
#include "Terminal.h"
#include "TextStyle.h"
#include "mrt/AsPath.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

bool isShorterThanHost(const Prefix& prefix) {
  const auto ip = ipPrefix(prefix);
  return ip && ip->length < (prefix.addressFamily.afi == afiIpv4 ? 32 : 128);
}

/// Whether the peer is the first AS of the path: it puts itself in front of what goes to another
/// AS, and would refuse its own AS in a path from inside.
bool comesFromOutside(const Path& path) {
  const AsPath asPath(path);
  AsSegmentReader segments = asPath.segments();
  const AsSegment* const first = segments.next();
  return first && first->type == AsSegmentType::sequence && first->numbers[0] == path.peer.asNumber;
}

}  // namespace

/// A path, as rules ask about it; each question is answered once.
class LintFindings::OnPath {
 public:
  OnPath(const Path& path, const PathFilter& filter, bool external) : path_(path), filter_(filter) {
    if (external) holds_[std::size_t(LintWhere::external)] = true;
    holds_[std::size_t(LintWhere::anywhere)] = true;
  }

  bool is(LintWhere where) {
    std::optional<bool>& holds = holds_[std::size_t(where)];
    if (!holds)
      holds = where == LintWhere::external ? comesFromOutside(path_) : prefix(where).has_value();
    return *holds;
  }
  /// The first prefix that is asked for, and that the rule is for.
  std::optional<Prefix> prefix(LintWhere where) const {
    PrefixReader prefixes = PrefixReader::announced(path_);
    while (const Prefix* const prefix = prefixes.next()) {
      if (!filter_.wants(*prefix)) continue;
      if (where == LintWhere::unicast && prefix->addressFamily.safi != safiUnicast) continue;
      if (where == LintWhere::shorterThanHost && !isShorterThanHost(*prefix)) continue;
      return *prefix;
    }
    return {};
  }
  const Path& path() const { return path_; }

 private:
  const Path& path_;
  const PathFilter& filter_;
  std::array<std::optional<bool>, 4> holds_;
};

void LintFindings::add(const Path& path, CommunityValues& values, const PathFilter& filter) {
  PathCommunities lists;
  const PathFaults faults = tables_.readAll(path.attributes, lists);
  OnPath onPath(path, filter, settings_.allExternal);
  U32 broken = 0;
  const auto count = [&](std::size_t rule, U64 found) {
    byRule_[rule].found += found;
    broken |= U32{1} << rule;
  };
  lists.forEachList([&](const auto& list) {
    for (InList& found : inList(list)) {
      if (!onPath.is(lintRules()[found.rule].where)) continue;
      count(found.rule, found.found);
      if (!found.shown) show(found, onPath);
    }
  });
  for (const PathFault& fault : faults) {
    if (countedAs(fault) == Fault::linkBandwidth) values.faults.add(Fault::linkBandwidth);
    for (std::size_t rule = 0; rule < lintRules().size(); ++rule)
      if (isOn(rule) && lintRules()[rule].ofFault && lintRules()[rule].ofFault(fault)) {
        count(rule, 1);
        if (needsExamples(rule))
          addExample(rule, {.what = faultText(fault, path.attributes)}, onPath);
      }
  }
  ++paths_;
  if (!broken) return;
  ++brokenPaths_;
  const U32 peer = peers_.numberOf(peerKey(path.peer));
  for (std::size_t rule = 0; rule < byRule_.size(); ++rule) {
    if (!(broken >> rule & 1)) continue;
    Count& its = byRule_[rule];
    ++its.paths;
    if (its.byPeer.size() <= peer) its.byPeer.resize(peer + 1);
    ++its.byPeer[peer];
  }
}

template <class List>
std::vector<LintFindings::InList>& LintFindings::inList(const Mox::Ptr<const List>& list) {
  PathCommunities held;
  held.listIs<List>(list);
  const U32 number = lists_.numberOf(held);
  if (inLists_.size() <= number) inLists_.resize(number + 1);
  std::optional<std::vector<InList>>& its = inLists_[number];
  if (!its) its = look(*list);
  return *its;
}

template <class List>
std::vector<LintFindings::InList> LintFindings::look(const List& list) const {
  const auto& own = textStyle().kinds;
  const KindTable& kinds = own ? *own : KindTable::builtIn();
  std::array<InList, 32> found{};
  list.forEachValue([&](const auto& value) {
    const auto octets = octetsOf(value);
    const AnyCommunity community = communityOf(List::pathAttribute, octets);
    const LintedValue linted(community, kinds);
    for (std::size_t rule = 0; rule < lintRules().size(); ++rule) {
      if (!isOn(rule) || !lintRules()[rule].ofValue || !lintRules()[rule].ofValue(linted)) continue;
      ++found[rule].found;
      if (found[rule].keys.size() < settings_.examples && needsExamples(rule))
        found[rule].keys.push_back(ListedValue(listTypeOf(U8(List::pathAttribute)), octets).key());
    }
  });
  std::vector<InList> all;
  for (std::size_t rule = 0; rule < lintRules().size(); ++rule) {
    if (isOn(rule) && lintRules()[rule].ofLength && list.comms() > settings_.longerThan) {
      found[rule].found = 1;
      found[rule].length = grouped(list.comms()) + " values";
    }
    if (found[rule].found == 0) continue;
    found[rule].rule = rule;
    all.push_back(std::move(found[rule]));
  }
  return all;
}

/// Puts values that are new among the examples, as long as there is room.
void LintFindings::show(InList& found, const OnPath& path) {
  found.shown = true;
  if (!found.length.empty()) addExample(found.rule, {.what = found.length}, path);
  for (const std::string& key : found.keys) {
    const ListedValue value(key);
    addExample(found.rule,
               {.what = value.text(tables_),
                .octets = hex(value.octets()),
                .description = descriptionOf(value.community())},
               path);
  }
}

void LintFindings::addExample(std::size_t rule, Example example, const OnPath& path) {
  std::vector<Example>& examples = byRule_[rule].examples;
  const bool isThere = std::ranges::any_of(examples, [&](const Example& one) {
    return one.what == example.what && one.octets == example.octets;
  });
  if (isThere || !needsExamples(rule)) return;
  const auto prefix = path.prefix(lintRules()[rule].where);
  example.time = timeText(path.path());
  example.prefix = prefix ? nlriText(prefix->addressFamily, prefix->nlri) : "-";
  example.peer = peerKey(path.path().peer);
  examples.push_back(std::move(example));
}

std::vector<LintFindings::OfRule> LintFindings::sorted() const {
  std::vector<OfRule> sorted;
  for (std::size_t rule = 0; rule < byRule_.size(); ++rule) {
    const Count& its = byRule_[rule];
    if (its.paths == 0) continue;
    OfRule one{&lintRules()[rule], its.paths, its.found, {}, its.examples};
    for (U32 peer = 0; peer < its.byPeer.size(); ++peer)
      if (its.byPeer[peer] > 0) one.peers.push_back({peers_[peer], its.byPeer[peer]});
    std::ranges::sort(one.peers, [](const PeerPaths& a, const PeerPaths& b) {
      return a.paths != b.paths ? a.paths > b.paths : a.peer < b.peer;
    });
    sorted.push_back(std::move(one));
  }
  std::ranges::stable_sort(sorted, std::ranges::greater(), &OfRule::paths);
  return sorted;
}

}  // namespace bgpcomm

#include "DumpDiff.h"

#include <unordered_map>

#include "HeldListsOf.h"
#include "PathTable.h"
#include "Reading.h"

namespace bgpcomm {
namespace {

using namespace Routing::Bgp;

/// The dumps that something is in: one bit for each.
using Sides = U8;
constexpr Sides bothSides = 0b11;
constexpr Sides only(PathJoin::Side side) { return Sides(1 << side); }

/// The lists of both dumps, each once and held, so that its address is its own.
class Lists {
 public:
  void add(const PathCommunities& communities, Sides sides) {
    communities.forEachList([&](const auto& list) {
      using List = std::remove_cvref_t<decltype(*list)>;
      Entry<List>& entry = std::get<Entries<List>>(entries_)[list.get()];
      if (!entry.list) entry.list = list;
      entry.sides |= sides;
    });
  }

  /// The items of a dump that the other has not. Lists of both dumps, most of all, are looked at
  /// only when some value or set may be among theirs.
  DiffItems itemsOf(PathJoin::Side side) const {
    DiffItems items;
    forEach([&](std::size_t type, const auto& list, Sides sides) {
      if (sides == only(side))
        forEachItem(list, [&](DiffPart part, std::string octets) {
          items.of[std::size_t(part)][type].insert(std::move(octets));
        });
    });
    forEach([&](std::size_t type, const auto& list, Sides sides) {
      const auto mayHave = [&](DiffPart part) {
        return !items.of[std::size_t(part)][type].empty();
      };
      if (sides != only(side) && (mayHave(DiffPart::value) || mayHave(DiffPart::routeTargets)))
        forEachItem(list, [&](DiffPart part, const std::string& octets) {
          items.of[std::size_t(part)][type].erase(octets);
        });
    });
    return items;
  }

 private:
  template <class List>
  struct Entry {
    Mox::Ptr<const List> list;
    Sides sides = 0;
  };
  template <class List>
  using Entries = std::unordered_map<const List*, Entry<List>>;
  template <class... Lists>
  static std::tuple<Entries<Lists>...> entriesOf(const PathCommunitiesOf<Lists...>&);

  /// Calls `use(type, list, sides)`.
  template <class Use>
  void forEach(const Use& use) const {
    const auto ofType = [&]<class List>(const Entries<List>& entries) {
      const std::size_t type = listTypeOf(U8(List::pathAttribute));
      for (const auto& [address, entry] : entries) use(type, *entry.list, entry.sides);
    };
    std::apply([&](const auto&... entries) { (ofType(entries), ...); }, entries_);
  }

  template <class List, class Use>
  static void forEachItem(const List& list, const Use& use) {
    std::string octets;
    list.forEachValue([&](const auto& value) {
      const auto its = octetsOf(value);
      use(DiffPart::value, std::string(asText(its)));
      octets += asText(its);
    });
    use(DiffPart::list, std::move(octets));
    if constexpr (InternsValues<List>)
      if (const auto targets = list.classificationList(extCommClassificationRouteTarget)) {
        std::string set;
        forEachCommunity(*targets, [&](const auto& one) { set += asText(octetsOf(one)); });
        use(DiffPart::routeTargets, std::move(set));
      }
  }

  decltype(entriesOf(PathCommunities())) entries_;
};

/// One file that is read. Both share their tables, so lists are equal when they are the same
/// object.
class Dump {
 public:
  Dump(const std::string& file, const CommunityTables& tables, PathFilter& filter, PathJoin& join,
       PathJoin::Side side)
      : file_(file),
        reading_(file, {.printsLines = true, .updates = PathCutter::Updates::all}),
        tables_(tables),
        filter_(filter),
        join_(join),
        side_(side) {}

  /// Reads on for one path; false at the end of the file. What updates leave comes then.
  bool next() {
    const Path* const path = reading_.next();
    if (!path) {
      updates_.forEach(
          [this](const Path& left, const Prefix& prefix, const PathCommunities& communities) {
            take(left, prefix, communities);
          });
      return false;
    }
    if (!path->fromTable && !filter_.isInTime(*path)) return true;  // changes nothing
    CommunityValues& values = reading_.values();
    PathCommunities communities;
    for (std::size_t type = 0; type < listTypeCount; ++type)
      if (!values[type].empty() &&
          tables_.read(BgpPathAttrType(listTypes[type].attribute), values[type], communities))
        values.faults.add(Fault::linkBandwidth);
    const bool isWanted =
        (path->fromTable || !path->attributes.empty()) && filter_.passes(*path, values);
    const auto entry = [&](const Prefix& prefix) {
      return isWanted && filter_.wants(prefix) ? std::optional(communities) : std::nullopt;
    };
    if (!path->fromTable)
      updates_.take(*path, entry);
    else if (isWanted)
      visitPrefixes(*path, [&](const Prefix& prefix) { take(*path, prefix, communities); });
    return true;
  }
  /// Whether it could not be opened, or not be read to its end and had no path before.
  bool isNothing() const { return reading_.result().failed && reading_.result().paths == 0; }
  void outOfMemory() { reading_.outOfMemory(); }
  /// Says what was passed over; whether the file was read to its end.
  bool report() const {
    reportPassedOver(file_, reading_.result());
    return !reading_.result().failed;
  }

 private:
  void take(const Path& path, const Prefix& prefix, const PathCommunities& communities) {
    join_.add(side_, path, prefix, communities);
  }

  const std::string& file_;
  FileReading reading_;
  const CommunityTables& tables_;
  PathFilter& filter_;
  PathJoin& join_;
  const PathJoin::Side side_;
  PathTable<PathCommunities> updates_;
};

}  // namespace

std::optional<DumpDiff> diffDumps(const std::string& fileBefore, const std::string& fileAfter,
                                  const CommunityTables& tables, PathFilter& filter,
                                  const std::function<void(const PathJoin::Pair&)>& use) {
  Lists lists;
  PathJoin join([&](const PathJoin::Pair& pair) {
    use(pair);
    if (pair.isSame()) return lists.add(*pair.before, bothSides);
    if (pair.before) lists.add(*pair.before, only(PathJoin::before));
    if (pair.after) lists.add(*pair.after, only(PathJoin::after));
  });
  Dump before(fileBefore, tables, filter, join, PathJoin::before);
  Dump after(fileAfter, tables, filter, join, PathJoin::after);
  if (before.isNothing() || after.isNothing()) return std::nullopt;  // the other is not read
  bool more[] = {true, true};
  try {
    while (more[0] || more[1]) {
      if (more[0]) more[0] = before.next();
      if (more[1]) more[1] = after.next();
    }
  } catch (const std::bad_alloc&) {
    // Neither is read on.
    if (more[0]) before.outOfMemory();
    if (more[1]) after.outOfMemory();
  }
  const bool beforeWhole = before.report(), afterWhole = after.report();
  if (before.isNothing() || after.isNothing()) return std::nullopt;
  join.end();
  return DumpDiff{lists.itemsOf(PathJoin::before), lists.itemsOf(PathJoin::after),
                  beforeWhole && afterWhole};
}

}  // namespace bgpcomm

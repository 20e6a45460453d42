// A small agent: keeps the paths of an MRT file in a table that several threads share, announcing
// and withdrawing as the file does, shows what that takes, and withdraws all.
//
//   agent samples/rib.bird.mrt.gz 4
//
// Exit code 1 when the file cannot be read to its end, or when anything is left at the end.
#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <thread>

#include "Mox/Allocation.h"
#include "RouteTargets.h"
#include "Shard.h"
#include "mrt/PathKey.h"

namespace example {

namespace Mrt = Routing::Mrt;

/// 1,234,567
std::string grouped(U64 number) {
  std::string text = std::to_string(number);
  for (std::size_t i = text.size(); i > 3; i -= 3) text.insert(i - 3, 1, ',');
  return text;
}

class Agent {
 public:
  explicit Agent(unsigned threads) {
    for (unsigned i = 0; i < threads; ++i) shards_.emplace_back(tables_);
  }

  bool read(Mrt::Input& input) noexcept;
  void withdrawAll() { onEachShard(&Shard::withdrawAll); }

  // While no thread is at work.
  void printPaths() const;
  void printTables() const;
  void printRouteTargets() const;
  bool empty() const;
  void dumpState() const;

 private:
  /// Joins when it goes.
  using Threads = std::vector<std::jthread>;
  Threads onEachShard(void (Shard::*work)()) {
    Threads threads;
    for (Shard& shard : shards_) threads.emplace_back(work, &shard);
    return threads;
  }
  void take(const Mrt::Path& path);
  void give(const Mrt::Path& path, const Mrt::Prefix& prefix, bool announced);
  Shard::Figures figures() const;

  struct Row {
    const char* name;
    const Orv::DedupHashTableUnorderedSet& table;
    std::optional<U64> paths = {};  // of lists: how many hold one
  };
  template <class List>
  void addRows(const CommunityListTables<List>& tables, std::vector<Row>& rows) const;
  std::vector<Row> rows() const;

  const CommunityTables tables_;
  RouteTargetsInUse routeTargets_{
      tables_.of<ExtCommList>().lists()->notifyingRtExtCommListCollection()};
  std::deque<Shard> shards_;
  U64 cutShort_ = 0;  // records and messages
};

// --- Reading.

/// False when the file is damaged. Ends the process when memory does not suffice: the threads wait
/// for the end of the file.
bool Agent::read(Mrt::Input& input) noexcept {
  const Threads threads = onEachShard(&Shard::run);
  Mrt::PathReader reader(input, Mrt::PathReader::Updates::all);
  while (const Mrt::Path* path = reader.next()) take(*path);
  cutShort_ += reader.badRecords();
  for (Shard& shard : shards_) shard.end();
  return !input.failure() && !reader.truncation();
}

/// All that a peer has announced is void when its state changes. An UPDATE that both withdraws and
/// announces a prefix announces it (RFC 4271, section 4.3).
void Agent::take(const Mrt::Path& path) {
  if (path.stateChange)
    for (Shard& shard : shards_) shard.add({Change::What::allGone, Mrt::peerKey(path.peer)});
  Mrt::PrefixReader withdrawn = Mrt::PrefixReader::withdrawn(path);
  while (const Mrt::Prefix* prefix = withdrawn.next()) give(path, *prefix, false);
  Mrt::PrefixReader announced = Mrt::PrefixReader::announced(path);
  while (const Mrt::Prefix* prefix = announced.next()) give(path, *prefix, true);
  cutShort_ += withdrawn.cutShort() || announced.cutShort();
}

/// To the shard of the path, always the same one.
void Agent::give(const Mrt::Path& path, const Mrt::Prefix& prefix, bool announced) {
  Change change{announced ? Change::What::announced : Change::What::withdrawn,
                Mrt::pathKey(path, prefix)};
  if (announced) change.attributes.assign(path.attributes.begin(), path.attributes.end());
  Shard& shard = shards_[std::hash<std::string>()(change.key) % shards_.size()];
  shard.add(std::move(change));
}

// --- Showing.

Shard::Figures Agent::figures() const {
  Shard::Figures sum;
  for (const Shard& shard : shards_) {
    const Shard::Figures figures = shard.figures();
    sum.paths += figures.paths;
    sum.announced += figures.announced;
    sum.withdrawn += figures.withdrawn;
    sum.malformed += figures.malformed;
    if (sum.firstFault.empty()) sum.firstFault = figures.firstFault;
  }
  return sum;
}

constexpr const char* nameOf(const CommList*) { return "standard lists"; }
constexpr const char* nameOf(const LargeCommList*) { return "large lists"; }
constexpr const char* nameOf(const ExtCommList*) { return "extended lists"; }
constexpr const char* nameOf(const ExtCommIp6List*) { return "IPv6 extended lists"; }

/// The tables of one list type, and how many paths hold a list of it.
template <class List>
void Agent::addRows(const CommunityListTables<List>& tables, std::vector<Row>& rows) const {
  U64 held = 0;
  for (const Shard& shard : shards_)
    for (const Shard::Paths::value_type& entry : shard.paths())
      held += bool(entry.second.list<List>());
  const auto& lists = *tables.lists();
  rows.push_back({nameOf((const List*)nullptr), *lists.dedupHashTable(), held});
  if constexpr (requires { lists.extCommClassificationListDedupTable(); })
    rows.push_back({"  groups", *lists.extCommClassificationListDedupTable()});
  if constexpr (requires { lists.rtExtCommClassificationListDedupTable(); })
    rows.push_back({"  sets of route targets", *lists.rtExtCommClassificationListDedupTable()});
  if constexpr (InternsValues<List>)
    rows.push_back({"  values", *tables.values()->dedupHashTable()});
}

std::vector<Agent::Row> Agent::rows() const {
  std::vector<Row> rows;
  tables_.forEachKind([&](const auto& tables) { addRows(tables, rows); });
  return rows;
}

void printLine(std::string_view name, std::initializer_list<std::string> columns) {
  std::cout << std::left << std::setw(40) << name << std::right;
  for (const std::string& column : columns) std::cout << std::setw(13) << column;
  std::cout << '\n';
}

void Agent::printPaths() const {
  const Shard::Figures figures = this->figures();
  printLine("paths", {grouped(figures.paths)});
  printLine("  announced", {grouped(figures.announced)});
  printLine("  withdrawn", {grouped(figures.withdrawn)});
  printLine("  malformed, so withdrawn", {grouped(figures.malformed)});
  if (figures.malformed) std::cout << "    first: " << figures.firstFault << '\n';
  printLine("  records and messages cut short", {grouped(cutShort_)});
}

void Agent::printTables() const {
  std::cout << '\n';
  printLine("", {"alive", "on paths", "table octets"});
  for (const auto& [name, table, paths] : rows())
    printLine(name,
              {grouped(table.members()), paths ? grouped(*paths) : "", grouped(table.octets())});
}

void Agent::printRouteTargets() const {
  const RouteTargetsInUse::Figures heard = routeTargets_.figures();
  std::cout << '\n';
  printLine("route targets in use", {grouped(heard.routeTargets)});
  printLine("  sets of them that came", {grouped(heard.come)});
  printLine("  sets of them that went", {grouped(heard.gone)});
}

bool Agent::empty() const {
  const RouteTargetsInUse::Figures heard = routeTargets_.figures();
  U64 left = heard.come - heard.gone + heard.routeTargets;
  for (const Row& row : rows()) left += row.table.members();
  return left == 0;
}

/// As a show command would ask for it.
void Agent::dumpState() const {
  const auto context = Mox::makeNew<Orv::DumpContext>();
  tables_.forEachKind([&](const auto& tables) { tables.lists()->dumpState(context, 2); });
  tables_.of<ExtCommList>().lists()->notifyingRtExtCommListCollection()->dumpState(context, 2);
  std::cout << context->text();
}

/// The objects that are alive besides those of `before`, by type.
std::map<std::string, Mox::AllocationCount> grown(const std::vector<Mox::AllocationCount>& before) {
  std::map<std::string, Mox::AllocationCount> counts;
  for (const Mox::AllocationCount& now : Mox::allocationCounts()) counts[now.type] = now;
  for (const Mox::AllocationCount& then : before) {
    counts[then.type].objects -= then.objects;
    counts[then.type].octets -= then.octets;
  }
  std::erase_if(counts, [](const auto& count) { return count.second.objects == 0; });
  return counts;
}

void printGrown(const std::vector<Mox::AllocationCount>& before) {
  std::cout << '\n';
  printLine("", {"objects", "octets"});
  U64 octets = 0;
  for (const auto& [type, count] : grown(before)) {
    const std::string name = type.substr(type.rfind(':') + 1);
    printLine(name, {grouped(count.objects), grouped(count.octets)});
    octets += count.octets;
  }
  printLine("together", {"", grouped(octets)});
}

int run(const std::string& file, unsigned threads) {
  Mrt::Input input(file);
  Agent agent(threads);
  const auto before = Mox::allocationCounts();

  const auto start = std::chrono::steady_clock::now();
  const bool whole = agent.read(input);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::cout << file << ", " << threads << (threads == 1 ? " thread, " : " threads, ") << std::fixed
            << std::setprecision(3) << seconds.count() << " s\n\n";
  agent.printPaths();
  agent.printTables();
  agent.printRouteTargets();
  printGrown(before);

  agent.withdrawAll();
  const bool clean = agent.empty() && grown(before).empty();
  std::cout << "\nall withdrawn: " << (clean ? "nothing is left\n" : "SOMETHING IS LEFT\n");
  agent.dumpState();
  if (!clean) printGrown(before);
  if (!whole) std::cerr << "agent: " << file << ": damaged, or ends too soon\n";
  return whole && clean ? 0 : 1;
}

}  // namespace example

int main(int count, char** arguments) {
  const int threads = count == 3 ? std::atoi(arguments[2]) : 2;
  if (count < 2 || count > 3 || threads < 1 || threads > 64) {
    std::cerr << "usage: agent FILE [THREADS]\n"
                 "Keeps the paths of an MRT file as a routing agent would, in 1 to 64 threads.\n";
    return 2;
  }
  try {
    return example::run(arguments[1], unsigned(threads));
  } catch (const std::exception& error) {
    std::cerr << "agent: " << arguments[1] << ": " << error.what() << '\n';
    return 1;
  }
}

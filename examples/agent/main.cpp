// A small agent: keeps the paths of an MRT file in a table that several threads share, announcing
// and withdrawing as the file does, shows what that takes, and withdraws all.
//
//   agent samples/rib.bird.mrt.gz 4
//
// Exit code 1 when the file cannot be read to its end, or when anything is left at the end.
#include <CLI/CLI.hpp>
#include <chrono>
#include <iomanip>
#include <iostream>
#include <thread>

#include "Mox/Allocation.h"
#include "RouteTargets.h"
#include "Shard.h"
#include "mrt/Nlri.h"
#include "tools/bgpcomm/Terminal.h"

namespace example {

using bgpcomm::grouped;

class Agent {
 public:
  explicit Agent(unsigned threads) {
    for (unsigned i = 0; i < threads; ++i) shards_.emplace_back(tables_);
  }

  bool read(bgpcomm::Input& input) noexcept;
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
  void take(const bgpcomm::Path& path);
  void give(const bgpcomm::Path& path, const bgpcomm::Prefix& prefix, bool announced);
  Shard::Figures figures() const;
  template <class List>
  U64 pathsWith(Mox::Ptr<const List> Communities::*list) const;

  struct Row {
    const char* name;
    const Orv::DedupHashTableUnorderedSet& table;
    std::optional<U64> paths;  // of lists: how many hold one
  };
  std::vector<Row> rows() const;

  Tables tables_;
  RouteTargetsInUse routeTargets_{tables_.extCommLists->notifyingRtExtCommListCollection()};
  std::deque<Shard> shards_;
  U64 cutShort_ = 0;  // records and messages
};

// --- Reading.

/// False when the file is damaged. Whoever runs out of memory here ends the process: the threads
/// wait for the end of the file.
bool Agent::read(bgpcomm::Input& input) noexcept {
  const Threads threads = onEachShard(&Shard::run);
  bgpcomm::RecordReader reader(input);
  bgpcomm::PathCutter cutter(bgpcomm::PathCutter::Updates::all);
  while (const std::optional<bgpcomm::Record> record = reader.next())
    cutShort_ += !cutter.cut(*record, [this](const bgpcomm::Path& path) { take(path); });
  for (Shard& shard : shards_) shard.end();
  return !input.failure() && !reader.truncation();
}

/// An UPDATE that both withdraws and announces a prefix announces it (RFC 4271, section 4.3).
void Agent::take(const bgpcomm::Path& path) {
  bool whole = visitWithdrawn(path, [&](const auto& prefix) { give(path, prefix, false); });
  whole &= visitPrefixes(path, [&](const auto& prefix) { give(path, prefix, true); });
  cutShort_ += !whole;
}

void append(std::string& octets, bgpcomm::Octets more) { octets.append(more.begin(), more.end()); }

/// Octets of one prefix of one peer. Those of the prefix are as they were sent: an agent for VPNs
/// would leave out labels, which are others in a withdrawal.
std::string pathName(const bgpcomm::Peer& peer, const bgpcomm::Prefix& prefix) {
  std::string name;
  for (const U32 number : {peer.asNumber, prefix.pathId.value_or(0),
                           U32(prefix.family.afi) << 16 | prefix.family.safi})
    append(name, std::bit_cast<std::array<U8, 4>>(number));
  name += char(peer.address.size());
  append(name, peer.address);
  append(name, prefix.nlri);
  return name;
}

/// To the shard of the path, always the same one.
void Agent::give(const bgpcomm::Path& path, const bgpcomm::Prefix& prefix, bool announced) {
  Change change{pathName(path.peer, prefix), {}};
  if (announced) change.attributes.emplace(path.attributes.begin(), path.attributes.end());
  Shard& shard = shards_[std::hash<std::string>()(change.path) % shards_.size()];
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

template <class List>
U64 Agent::pathsWith(Mox::Ptr<const List> Communities::*list) const {
  U64 paths = 0;
  for (const Shard& shard : shards_)
    for (const auto& [name, communities] : shard.paths()) paths += bool(communities.*list);
  return paths;
}

std::vector<Agent::Row> Agent::rows() const {
  const auto& extended = *tables_.extCommLists;
  const auto& extendedIp6 = *tables_.extCommIp6Lists;
  return {
      {"standard lists", *tables_.commLists->dedupHashTable(), pathsWith(&Communities::standard)},
      {"large lists", *tables_.largeCommLists->dedupHashTable(), pathsWith(&Communities::large)},
      {"extended lists", *extended.dedupHashTable(), pathsWith(&Communities::extended)},
      {"  groups", *extended.extCommClassificationListDedupTable(), {}},
      {"  sets of route targets", *extended.rtExtCommClassificationListDedupTable(), {}},
      {"  values", *tables_.extComms->dedupHashTable(), {}},
      {"IPv6 extended lists", *extendedIp6.dedupHashTable(), pathsWith(&Communities::extendedIp6)},
      {"  groups", *extendedIp6.extCommClassificationListDedupTable(), {}},
      {"  values", *tables_.extCommsIp6->dedupHashTable(), {}},
  };
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
  tables_.commLists->dumpState(context, 2);
  tables_.largeCommLists->dumpState(context, 2);
  tables_.extCommLists->dumpState(context, 2);
  tables_.extCommIp6Lists->dumpState(context, 2);
  tables_.extCommLists->notifyingRtExtCommListCollection()->dumpState(context, 2);
  std::cout << context->text();
}

/// What is alive besides `before`, by type.
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
  bgpcomm::Input input(file);
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
  std::string file;
  try {
    CLI::App app("Keeps the paths of an MRT file as a routing agent would.", "agent");
    app.footer("Example: agent samples/rib.bird.mrt.gz 4");
    unsigned threads = 2;
    app.add_option("FILE", file, "MRT file, plain or compressed")->required();
    app.add_option("THREADS", threads, "that keep the table")
        ->check(CLI::Range(1, 64))
        ->capture_default_str();
    CLI11_PARSE(app, count, arguments);
    return example::run(file, threads);
  } catch (const std::exception& error) {
    std::cerr << "agent: " << file << ": " << error.what() << '\n';
    return 1;
  }
}

#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Hex.h"
#include "ListTypes.h"
#include "ListValues.h"
#include "PathTable.h"
#include "Reading.h"
#include "Terminal.h"
#include "Wrapped.h"

namespace bgpcomm {
namespace {

using namespace Routing::Bgp;
using Collection = NotifyingRtExtCommListCollection;

struct Options {
  std::string file;
  bool json = false;
};

/// Prints a line for each set that comes or goes, with the time of the message being replayed.
class Watcher final : public Collection::NotifieeConst {
 public:
  Watcher(Collection::Ptr collection, bool json) : collection_(std::move(collection)), json_(json) {
    notifierIs(collection_);
  }
  ~Watcher() override { notifierIs(nullptr); }

  void timeIs(const Path& path) { time_ = timeText(path); }

  void onRtExtCommList(const Collection::Notifier& set) override {
    const bool come = collection_->rtExtCommListHas(set);
    std::vector<std::string> targets, octets;
    for (const auto& target : set->rtExtCommListRawPtr()->commVector()) {
      targets.push_back(textOf(*target));
      octets.push_back(hex(octetsOf(*target)));
    }
    json_ ? print(jsonLine(come, targets, octets)) : printFields(textLine(come, targets));
  }

 private:
  std::string textLine(bool come, const std::vector<std::string>& targets) const {
    std::string line = time_ + (come ? "\t+\t" : "\t-\t");
    for (std::size_t i = 0; i < targets.size(); ++i) line += (i ? " " : "") + targets[i];
    return line;
  }
  /// Octets tell apart targets that have the same text.
  std::string jsonLine(bool come, const std::vector<std::string>& targets,
                       const std::vector<std::string>& octets) const {
    const nlohmann::ordered_json object = {{"time", time_},
                                           {"event", come ? "come" : "gone"},
                                           {"routeTargets", targets},
                                           {"routeTargetsOctets", octets}};
    return object.dump() + '\n';
  }

  const Collection::Ptr collection_;
  const bool json_;
  std::string time_;
};

/// The paths as their peers have last announced them, each with its extended communities.
class Replay {
 public:
  explicit Replay(const ExtCommListDedupTable::Ptr& lists) : lists_(lists) {}

  /// Returns whether the list was refused.
  bool take(const Path& path, Octets extended) {
    FromWire<const ExtCommList> read;
    if (!extended.empty()) read = ExtCommList::dedupWire(lists_, values_, extended);
    paths_.take(path,
                [&](const Prefix&) { return read ? std::optional(read.list) : std::nullopt; });
    return bool(read.fault);
  }

 private:
  ExtCommDedupTable::Ptr values_ = extCommDedupTableFactory(sharedParser()->extCommParser());
  ExtCommListDedupTable::Ptr lists_;
  PathTable<ExtCommList::PtrConst> paths_;
};

int runWatchRt(const Options& options) {
  const auto lists = extCommListDedupTableFactory();
  Replay replay(lists);
  Watcher watcher(lists->notifyingRtExtCommListCollection(), options.json);
  const std::size_t extended = listTypeOf(U8(BgpPathAttrType::extCommunity));
  const ReadResult result = readFile(options.file,
                                     [&](const Path& path, CommunityValues& values, Position) {
                                       watcher.timeIs(path);
                                       if (replay.take(path, values[extended]))
                                         values.faults.add(Fault::linkBandwidth);
                                     },
                                     {.printsLines = true, .updates = PathCutter::Updates::all});
  watcher.notifierIs(nullptr);  // sets that are left do not go; nobody watches them any more
  reportPassedOver(options.file, result);
  return result.failed ? exitBadData : 0;
}

}  // namespace

void addWatchRt(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"watch-rt", "Print route-target sets as updates are replayed",
                  "Keeps the paths of every peer as the file announces, replaces and withdraws\n"
                  "them, and until the peer's session ends. A line says time, + or -, and the\n"
                  "route targets: a set comes with its first path and goes with its last. Fields\n"
                  "are separated by tabs, on a terminal by blanks.\n\n"
                  "Example: bgpcomm watch-rt updates.20241001.0055.gz"},
                 exitCode, runWatchRt);
  command.add_option("FILE", options.file, "MRT dump: plain, gz, bz2, xz or zst; - is stdin")
      ->required()
      ->type_name("");
  addTextOptions(command);
  addJsonLines(command, options.json);
}

}  // namespace bgpcomm

#include "Summary.h"

#include <chrono>
#include <functional>

#include "Commands.h"
#include "Reading.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

/// Calls `use` for each list type. Memory that does not suffice for one is an error line, and the
/// result false.
bool forEachType(const std::string& file, const std::function<void(std::size_t type)>& use) {
  bool good = true;
  for (std::size_t type = 0; type < listTypeCount; ++type) try {
      use(type);
    } catch (const std::bad_alloc&) {
      printError(file, ": out of memory for the figures of ", listTypes[type].title,
                 " communities");
      good = false;
    }
  return good;
}

}  // namespace

void FileFigures::add(const FileFigures& other) {
  records += other.records;
  paths += other.paths;
  seconds += other.seconds;
  for (std::size_t i = 0; i < skippedSorts; ++i) skipped[i] += other.skipped[i];
  faults.add(other.faults);
  wrongFlags += other.wrongFlags;
}

std::string FileFigures::firstMalformed() const {
  // Lines of text have the place behind a blank and within parentheses.
  std::string first = firstFault;
  if (first.size() <= 3) return {};
  if (const auto end = first.find(')'); end != first.npos) first.erase(end, 1);
  return first.substr(2);
}

double timesSaved(U64 unsharedOctets, U64 internedOctets) {
  return internedOctets == 0 ? 0 : double(unsharedOctets) / double(internedOctets);
}

double pathsPerList(const ListFigures& figures) {
  return figures.distinctLists == 0 ? 0
                                    : double(figures.attributes) / double(figures.distinctLists);
}

bool takeFigures(const FileLists& lists, U64 top, FileFigures& figures) {
  const std::size_t most = top && top < SIZE_MAX ? top : SIZE_MAX;
  return forEachType(figures.file, [&](std::size_t type) {
    figures.types.push_back({&listTypes[type], {}});
    lists[type].figures(figures.types.back().figures, most);
  });
}

ReadResult readInto(const std::string& file, const FileLists& lists, FileFigures& figures,
                    PeerUses* peers) {
  const auto start = std::chrono::steady_clock::now();
  const ReadResult result =
      readFile(file, [&](const Path& path, CommunityValues& values, Position) {
        if (peers) peers->startPath(path.peer);
        for (std::size_t type = 0; type < listTypeCount; ++type) {
          if (values[type].empty()) continue;
          const HeldLists::Holding held = lists[type].hold(values[type]);
          if (held.fault)
            values.faults.add(*held.fault);
          else if (peers)
            peers->addList(type, held.list);
        }
        if (peers) peers->addFaults(values.faults);
      });
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  figures.file = file;
  figures.records = result.records;
  figures.paths = result.paths;
  figures.skipped = result.skipped;
  figures.faults = result.faults;
  if (result.firstFault) figures.firstFault = textOf(*result.firstFault);
  figures.failure = result.failure;
  figures.wrongFlags = result.wrongFlags;
  figures.seconds = elapsed.count();
  return result;
}

Summary::Summary(const SummaryOptions& options, bool together)
    : options_(options),
      together_(together || options.total ? std::make_unique<FileLists>() : nullptr) {
  total_.file = totalName;
}

FileLists Summary::makeLists() const {
  return options_.total ? FileLists(together_->tables()) : FileLists();
}

bool Summary::add(FileFigures figures, const FileLists& lists) {
  bool good = options_.total || takeFigures(lists, options_.top, figures);
  any_ = true;
  total_.add(figures);
  if (together_)
    good &=
        forEachType(total_.file, [&](std::size_t type) { (*together_)[type].add(lists[type]); });
  if (options_.total) return good;
  if (!options_.json) {
    print((files_.empty() ? "" : "\n") + summaryTable(figures));
    flushOutput();
  }
  files_.push_back(std::move(figures));
  return good;
}

bool Summary::finish() {
  bool good = true;
  const bool shown = options_.total ? any_ : files_.size() > 1;
  if (together_ && (options_.json || shown))
    good = takeFigures(*together_, options_.top, total_);
  else if (files_.empty())
    good = takeFigures(FileLists(), options_.top, total_);
  else
    total_.types = files_.front().types;
  if (options_.json)
    print(summaryJson(files_, total_));
  else if (shown)
    print((files_.empty() ? "" : "\n") + summaryTable(total_));
  return good;
}

void addSummaryOptions(CLI::App& command, SummaryOptions& options) {
  addTextOptions(command);
  command.add_flag("--json", options.json, "One JSON object for programs");
  command.add_flag("--total", options.total, "Only the figures of all files together");
  addMostUsedOption(command, options.top);
}

void addMostUsedOption(CLI::App& command, U64& top) {
  command
      .add_option("--top", top,
                  "At most so many of the most used values of each\ntype (default 10; 0: all)")
      ->option_text("N");
}

namespace {

struct Options {
  std::vector<std::string> files;
  SummaryOptions summary;
};

int runSummary(const Options& options) {
  Summary summary(options.summary, options.files.size() > 1);
  bool good = true;
  for (const std::string& file : options.files) {
    FileFigures figures;
    const FileLists lists = summary.makeLists();
    const ReadResult result = readInto(file, lists, figures);
    if (!result.unopened) good = summary.add(std::move(figures), lists) && good;
    good = good && !result.failed;
  }
  return summary.finish() && good ? 0 : exitBadData;
}

}  // namespace

void addSummary(CLI::App& app, int& exitCode) {
  const auto [command, options] = addCommand(
      app,
      {"summary", "Count paths and communities, and what they share",
       "Exit code 1 when a file cannot be read to its end. Counted, and passed over, is\n"
       "what is malformed, and what is skipped: other types of records, changes of\n"
       "state, messages that are no UPDATEs. Attributes with wrong flags are counted,\n"
       "and read.\n\n"
       "Example: bgpcomm summary rib.bz2\n"
       "         curl -s URL | bgpcomm summary --json -"},
      exitCode, runSummary);
  addFiles(command, options.files);
  addSummaryOptions(command, options.summary);
}

}  // namespace bgpcomm

#include "Summary.h"

#include <chrono>
#include <functional>

#include "Commands.h"
#include "Reading.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

/// Does something for each kind. Where memory does not suffice for a kind, that is
/// an error line, and the result false.
bool forEachKind(const std::string& file, const std::function<void(std::size_t kind)>& use) {
  bool good = true;
  for (std::size_t kind = 0; kind < kindCount; ++kind) try {
      use(kind);
    } catch (const std::bad_alloc&) {
      printError(file, ": out of memory for the figures of ", kindRows[kind].title, " communities");
      good = false;
    }
  return good;
}

bool takeFigures(const KindTables& tables, FileFigures& figures) {
  return forEachKind(figures.file, [&](std::size_t kind) {
    figures.kinds.push_back({&kindRows[kind], {}});
    tables[kind]->figures(figures.kinds.back().figures);
  });
}

}  // namespace

ReadResult readInto(const std::string& file, const KindTables& tables, FileFigures& figures) {
  const auto start = std::chrono::steady_clock::now();
  const ReadResult result = readFile(file, [&](const Path&, CommunityValues& values, Place) {
    for (std::size_t kind = 0; kind < kindCount; ++kind) {
      if (values[kind].empty()) continue;
      if (const auto fault = tables[kind]->hold(values[kind])) values.faults.add(*fault);
    }
  });
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  figures.file = file;
  figures.records = result.records;
  figures.paths = result.paths;
  figures.faults = result.faults;
  if (result.firstFault) figures.firstFault = placeText(result.firstFault->place);
  figures.seconds = elapsed.count();
  return result;
}

Summary::Summary(bool together, bool json) : together_(together), json_(json) {
  if (together_) tables_ = makeKindTables();
  total_.file = "total";
}

bool Summary::add(FileFigures figures, const KindTables& tables) {
  bool good = takeFigures(tables, figures);
  total_.records += figures.records;
  total_.paths += figures.paths;
  total_.seconds += figures.seconds;
  total_.faults.add(figures.faults);
  if (together_)
    good &= forEachKind(total_.file, [&](std::size_t kind) { tables_[kind]->add(*tables[kind]); });
  if (!json_) {
    print((files_.empty() ? "" : "\n") + summaryTable(figures));
    flushOutput();
  }
  files_.push_back(std::move(figures));
  return good;
}

bool Summary::finish() {
  bool good = true;
  if (together_ && (json_ || files_.size() > 1))
    good = takeFigures(tables_, total_);
  else if (files_.empty())
    good = takeFigures(makeKindTables(), total_);
  else
    total_.kinds = files_.front().kinds;
  if (json_)
    print(summaryJson(files_, total_));
  else if (files_.size() > 1)
    print('\n' + summaryTable(total_));
  return good;
}

namespace {

struct Options {
  std::vector<std::string> files;
  bool json = false;
};

int runSummary(const Options& options) {
  Summary summary(options.files.size() > 1, options.json);
  bool good = true;
  for (const std::string& file : options.files) {
    FileFigures figures;
    const KindTables tables = makeKindTables();
    const ReadResult result = readInto(file, tables, figures);
    if (!result.unopened) good = summary.add(std::move(figures), tables) && good;
    good = good && !result.failed;
  }
  return summary.finish() && good ? 0 : exitBadData;
}

}  // namespace

void addSummary(CLI::App& app, int& exitCode) {
  const auto [command, options] = addCommand(
      app,
      {"summary", "Count paths and communities, and what they share",
       "Exit code 1 when a file cannot be read to its end; what is malformed is counted\n"
       "and passed over.\n\n"
       "Example: bgpcomm summary rib.bz2\n"
       "         curl -s URL | bgpcomm summary --json -"},
      exitCode, runSummary);
  addFiles(command, options.files);
  command.add_flag("--json", options.json, "One JSON object for programs");
}

}  // namespace bgpcomm

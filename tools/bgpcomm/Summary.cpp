#include "Summary.h"

#include <chrono>
#include <functional>

#include "Commands.h"
#include "Reading.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

/// Does something with the table of each kind. Where memory does not suffice for a kind, that is
/// an error line, and the result false.
bool forEachTable(const KindTables& tables, const std::string& file,
                  const std::function<void(std::size_t kind)>& use) {
  bool good = true;
  for (std::size_t kind = 0; kind < kindCount; ++kind) try {
      if (tables[kind]) use(kind);
    } catch (const std::bad_alloc&) {
      printError(file + ": out of memory for the figures of " + std::string(kindRows[kind].title) +
                 " communities");
      good = false;
    }
  return good;
}

bool takeFigures(const KindTables& tables, FileFigures& figures) {
  return forEachTable(tables, figures.file, [&](std::size_t kind) {
    figures.kinds.push_back({&kindRows[kind], {}});
    tables[kind]->figures(figures.kinds.back().figures);
  });
}

ReadResult readInto(const std::string& file, const KindTables& tables, FileFigures& figures) {
  const auto start = std::chrono::steady_clock::now();
  FaultCounts refused;
  const ReadResult result = readFile(file, [&](const Path&, const CommunityValues& values, Place) {
    for (std::size_t kind = 0; kind < kindCount; ++kind)
      if (tables[kind] && !values[kind].empty() && tables[kind]->hold(values[kind]))
        refused.add(Fault::attrLength);
  });
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  figures.file = file;
  figures.records = result.records;
  figures.paths = result.paths;
  figures.faults = result.faults;
  figures.faults.add(refused);
  if (result.firstFault) figures.firstFault = placeText(result.firstFault->place);
  figures.seconds = elapsed.count();
  return result;
}

class Summary {
 public:
  /// With `together`, the files' lists are also counted as one.
  explicit Summary(bool together) : together_(together) {
    if (together_) tables_ = makeKindTables();
    total_.file = "total";
  }

  /// False when the file could not be read to its end, or memory did not suffice.
  bool add(const std::string& file) {
    FileFigures figures;
    const KindTables tables = makeKindTables();
    const ReadResult result = readInto(file, tables, figures);
    if (result.unopened) return false;
    bool good = takeFigures(tables, figures) && !result.failed;
    total_.records += figures.records;
    total_.paths += figures.paths;
    total_.seconds += figures.seconds;
    total_.faults.add(figures.faults);
    if (together_)
      good &= forEachTable(tables, total_.file,
                           [&](std::size_t kind) { tables_[kind]->add(*tables[kind]); });
    files_.push_back(std::move(figures));
    return good;
  }

  const std::vector<FileFigures>& files() const { return files_; }
  /// Takes the figures of all files together; false when memory did not suffice.
  bool finish() {
    if (together_) return takeFigures(tables_, total_);
    if (files_.empty()) return takeFigures(makeKindTables(), total_);
    total_.kinds = files_.front().kinds;
    return true;
  }
  const FileFigures& total() const { return total_; }

 private:
  bool together_;
  KindTables tables_;
  FileFigures total_;
  std::vector<FileFigures> files_;
};

struct Options {
  std::vector<std::string> files;
  bool json = false;
};

int runSummary(const Options& options) {
  Summary summary(options.files.size() > 1);
  bool good = true;
  for (const std::string& file : options.files) {
    const std::size_t before = summary.files().size();
    good = summary.add(file) && good;
    if (options.json || summary.files().size() == before) continue;
    print((before > 0 ? "\n" : "") + summaryTable(summary.files().back()));
    flushOutput();
  }
  if (options.json || summary.files().size() > 1) good = summary.finish() && good;
  if (options.json)
    print(summaryJson(summary.files(), summary.total()));
  else if (summary.files().size() > 1)
    print('\n' + summaryTable(summary.total()));
  return good ? 0 : exitBadData;
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

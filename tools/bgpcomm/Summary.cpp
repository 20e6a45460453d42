#include "Summary.h"

#include <chrono>

#include "Commands.h"
#include "Reading.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

void takeFigures(const KindTables& tables, FileFigures& figures) {
  for (std::size_t kind = 0; kind < kindCount; ++kind)
    if (tables[kind]) figures.kinds.push_back({&kindRows[kind], tables[kind]->figures()});
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

  /// False when the file could not be read to its end.
  bool add(const std::string& file) {
    FileFigures figures;
    const KindTables tables = makeKindTables();
    const ReadResult result = readInto(file, tables, figures);
    if (result.unopened) return false;
    takeFigures(tables, figures);
    total_.records += figures.records;
    total_.paths += figures.paths;
    total_.seconds += figures.seconds;
    total_.faults.add(figures.faults);
    if (together_)
      for (std::size_t kind = 0; kind < kindCount; ++kind)
        if (tables[kind]) tables_[kind]->add(*tables[kind]);
    files_.push_back(std::move(figures));
    return !result.failed;
  }

  const std::vector<FileFigures>& files() const { return files_; }
  FileFigures total() const {
    FileFigures total = total_;
    if (together_)
      takeFigures(tables_, total);
    else if (files_.empty())
      takeFigures(makeKindTables(), total);
    else
      total.kinds = files_.front().kinds;
    return total;
  }

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

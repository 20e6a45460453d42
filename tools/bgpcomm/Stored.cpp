// The commands that keep the lists of files in a store, and take them out again.
//
// The lists are the store's roots. What is to be known of the files they came from is a note, in
// JSON, whose reader does not recurse: of each file its counts, and of each kind of community which
// lists its paths hold.
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "Commands.h"
#include "MoxStash/FileStore.h"
#include "Summary.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

using Json = nlohmann::json;
using MoxStash::FileStore;

constexpr std::string_view noteName = "bgpcomm";

Json toJson(const FileFigures& figures, const KindTables& tables, MoxStash::StoreWriter& writer) {
  Json file = {{"file", std::vector<U8>(figures.file.begin(), figures.file.end())},
               {"records", figures.records},
               {"paths", figures.paths},
               {"firstFault", figures.firstFault},
               {"seconds", figures.seconds}};
  for (std::size_t i = 0; i < faultNames.size(); ++i)
    file["faults"][std::string(faultNames[i])] = figures.faults[Fault(i)];
  for (std::size_t kind = 0; kind < kindCount; ++kind) {
    Json& entry = file["kinds"][std::string(kindRows[kind].key)];
    entry = {{"communities", tables[kind]->communities()}, {"lists", Json::array()}};
    for (const KindTable::StoredUse& use : tables[kind]->save(writer))
      entry["lists"].push_back({use.list, use.paths});
  }
  return file;
}

/// Roots of the kind, which share nothing, and each of them at most once for a file: so a damaged
/// note makes nobody restore more than the store holds.
void restoreLists(const Json& lists, const FileStore& store, KindTable& table) {
  std::set<MoxStash::StoreReference> left;
  for (const MoxStash::StoredRoot& root : store.roots())
    if (root.kind == table.storedKind()) left.insert(root.reference);
  for (const Json& entry : lists) {
    const KindTable::StoredUse use{entry.at(0).get<U64>(), entry.at(1).get<U64>()};
    if (!left.erase(use.list)) store.fail("a file has a list twice, or one that is no list");
    table.restore(store, use);
  }
}

FileFigures fromJson(const Json& file, const FileStore& store, const KindTables& tables) {
  FileFigures figures;
  const auto name = file.at("file").get<std::vector<U8>>();  // no text: it may be of any octets
  figures.file.assign(name.begin(), name.end());
  figures.records = file.at("records").get<U64>();
  figures.paths = file.at("paths").get<U64>();
  figures.firstFault = file.at("firstFault").get<std::string>();
  figures.seconds = file.at("seconds").get<double>();
  for (std::size_t i = 0; i < faultNames.size(); ++i)
    figures.faults.add(Fault(i), file.at("faults").at(std::string(faultNames[i])).get<U64>());
  for (std::size_t kind = 0; kind < kindCount; ++kind) {
    const Json& entry = file.at("kinds").at(std::string(kindRows[kind].key));
    tables[kind]->communitiesIs(entry.at("communities").get<U64>());
    restoreLists(entry.at("lists"), store, *tables[kind]);
  }
  return figures;
}

struct SaveOptions {
  std::vector<std::string> files;
  std::string store;
};

int runSave(const SaveOptions& options) {
  for (const std::string& file : options.files) {
    std::error_code none;
    if (std::filesystem::equivalent(file, options.store, none))
      throw UsageError("--to " + options.store + ": is one of the files to be read");
  }
  MoxStash::StoreWriter writer;
  Json files = Json::array();
  bool good = true;
  for (const std::string& file : options.files) {
    FileFigures figures;
    const KindTables tables = makeKindTables();
    const ReadResult result = readInto(file, tables, figures);
    good = good && !result.failed;
    if (!result.unopened) files.push_back(toJson(figures, tables, writer));
  }
  if (files.empty()) return exitBadData;  // nothing that would be worth a store
  writer.noteIs(noteName, files.dump(-1, ' ', false, Json::error_handler_t::replace));
  writer.write(options.store);
  return good ? 0 : exitBadData;
}

struct RestoreOptions {
  std::string store;
  bool json = false;
};

int runRestore(const RestoreOptions& options) {
  const FileStore store(options.store);
  const auto note = store.note(noteName);
  if (!note) store.fail("no files are noted in it: it was not saved by bgpcomm");
  try {
    const Json files = Json::parse(note->begin(), note->end());
    Summary summary(files.size() > 1, options.json);
    bool good = true;
    for (const Json& file : files) {
      const KindTables tables = makeKindTables();
      FileFigures figures = fromJson(file, store, tables);
      good = summary.add(std::move(figures), tables) && good;
    }
    return summary.finish() && good ? 0 : exitBadData;
  } catch (const Json::exception& error) {
    store.fail(std::string("its note of files is damaged: ") + error.what());
  }
}

}  // namespace

void addSave(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"save", "Keep the lists of files in a store",
                  "The store takes the place of a file of its name, once it is complete. Exit\n"
                  "code 1 when a file cannot be read to its end; what was read is saved.\n\n"
                  "Example: bgpcomm save rib.bz2 --to rib.store"},
                 exitCode, runSave);
  addFiles(command, options.files);
  command.add_option("--to", options.store, "The store to write")->required()->option_text("STORE");
}

void addRestore(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"restore", "Print the summary of the files in a store",
                  "Lists are restored and interned as those of a file; seconds are those that\n"
                  "reading the file took.\n\n"
                  "Example: bgpcomm restore rib.store"},
                 exitCode, runRestore);
  command.add_option("STORE", options.store, "What save wrote")->required()->type_name("");
  command.add_flag("--json", options.json, "One JSON object for programs");
}

}  // namespace bgpcomm

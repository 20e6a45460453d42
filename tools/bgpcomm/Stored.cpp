// The commands that keep the lists of files in stores, take them out again, and join stores. The
// lists are a store's roots; StoredFigures.h has the note that tells of the files.
#include <sys/stat.h>

#include <map>
#include <optional>

#include "Commands.h"
#include "FileSaving.h"
#include "StoredFigures.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

/// The options of commands that write a store.
struct WriteOptions {
  std::vector<std::string> sources;
  std::string store;
  bool total = false;
};

void checkStore(const WriteOptions& options, std::string_view what) {
  checkTarget({options.store, "--to", &MoxStash::StoreWriter::checkReplaceable}, options.sources,
              what);
}

int runSave(const WriteOptions& options) {
  checkStore(options, "files");
  SavedFiles saved(options.total);
  bool good = true;
  for (const std::string& file : options.sources) {
    FileFigures figures;
    const FileLists lists = saved.makeLists();
    const ReadResult result = readInto(file, lists, figures);
    reportPassedOver(file, result);
    good = good && !result.failed;
    if (!result.unopened) saved.add(figures, lists);
  }
  if (saved.empty()) return exitBadData;  // nothing that would be worth a store
  return saved.write(options.store) && good ? 0 : exitBadData;
}

/// UsageError when two names are of one store: its figures would count twice.
void checkDifferent(const std::vector<std::string>& stores) {
  std::map<std::pair<dev_t, ino_t>, std::string> known;
  for (const std::string& store : stores) {
    struct stat status {};
    if (::stat(store.c_str(), &status) != 0) continue;  // reading it will say why
    const auto [at, isNew] = known.try_emplace({status.st_dev, status.st_ino}, store);
    if (!isNew) throw UsageError(store + ": is named twice, the first time as " + at->second);
  }
}

/// Calls `use(reader, entry, several)` for each file in the stores, `several` if there may be more
/// than one. Ends with an exception at the first store that cannot be read, or is damaged.
template <class Use>
void visitFiles(const std::vector<std::string>& stores, const Use& use) {
  U64 left = mostCounts;
  for (const std::string& name : stores) {
    workingOn(name);
    const MoxStash::FileStore store(name);
    const auto note = store.note(noteName);
    if (!note) store.fail("no files are noted in it: it was not saved by bgpcomm");
    try {
      const Json files = Json::parse(note->begin(), note->end());
      if (!files.is_array()) store.fail("its note of files is damaged: it is no list of files");
      NoteReader reader(store, left);
      for (const Json& file : files) use(reader, file, stores.size() + files.size() > 2);
    } catch (const Json::exception& error) {
      store.fail(std::string("its note of files is damaged: ") + error.what());
    }
  }
}

struct RestoreOptions {
  std::vector<std::string> stores;
  SummaryOptions summary;
};

int runRestore(const RestoreOptions& options) {
  checkDifferent(options.stores);
  std::optional<Summary> summary;
  bool good = true;
  visitFiles(options.stores, [&](NoteReader& reader, const Json& file, bool several) {
    if (!summary) summary.emplace(options.summary, several);
    const FileLists lists = summary->makeLists();
    FileFigures figures = reader.read(file, lists);
    good = summary->add(std::move(figures), lists) && good;
  });
  if (!summary) summary.emplace(options.summary, false);
  return summary->finish() && good ? 0 : exitBadData;
}

int runMerge(const WriteOptions& options) {
  checkStore(options, "stores");
  checkDifferent(options.sources);
  SavedFiles saved(options.total);
  visitFiles(options.sources, [&](NoteReader& reader, const Json& file, bool) {
    const FileLists lists = saved.makeLists();
    saved.add(reader.read(file, lists), lists);
  });
  return saved.write(options.store) ? 0 : exitBadData;
}

void addStores(CLI::App& command, std::vector<std::string>& stores) {
  command.add_option("STORE", stores, "What save or merge wrote")->required()->type_name("");
}

void addTarget(CLI::App& command, WriteOptions& options) {
  command.add_option("--to", options.store, "The store to write; a symbolic link is replaced")
      ->required()
      ->option_text("STORE");
  command.add_flag("--total", options.total, "Keep only the figures of all files together");
}

}  // namespace

void addSave(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"save", "Keep the lists of files in a store",
                  "The store takes the place of a store or an empty file of its name, once it is\n"
                  "complete; no other file is replaced. Exit code 1 when a file cannot be read to\n"
                  "its end; what was read is saved.\n\n"
                  "Example: bgpcomm save rib.bz2 --to rib.store"},
                 exitCode, runSave);
  addFiles(command, options.sources);
  addTarget(command, options);
}

void addRestore(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"restore", "Print the summary of the files in stores",
                  "Lists are restored and interned as those of a file; seconds are those that\n"
                  "reading the file took. The first store that cannot be restored ends it with\n"
                  "exit code 1, and no total is printed.\n\n"
                  "Example: bgpcomm restore rib.store\n"
                  "         bgpcomm restore --total --json monday.store tuesday.store"},
                 exitCode, runRestore);
  addStores(command, options.stores);
  addSummaryOptions(command, options.summary);
}

void addMerge(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"merge", "Join stores, which may be of many machines",
                  "The new store has the files of all stores, in this order, and their lists,\n"
                  "equal ones once. Its summary is the one of a run over all files; with --total\n"
                  "the sums alone are kept, in whatever order or steps stores are merged. A store\n"
                  "that is named twice is refused; a file that two stores have counts twice.\n"
                  "Nothing is written unless all stores are good.\n\n"
                  "Example: bgpcomm merge monday.store tuesday.store --to week.store"},
                 exitCode, runMerge);
  addStores(command, options.sources);
  addTarget(command, options);
}

}  // namespace bgpcomm

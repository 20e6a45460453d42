// The commands that keep the lists of files in a store, and take them out again. The lists are the
// store's roots; StoredFigures.h has the note that tells of the files.
#include <filesystem>

#include "Commands.h"
#include "StoreSaving.h"
#include "StoredFigures.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

constexpr std::string_view noteName = "bgpcomm";

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
  MoxStash::StoreWriter::checkReplaceable(options.store);  // before hours of reading
  MoxStash::StoreWriter writer;
  Json files = Json::array();
  bool good = true;
  for (const std::string& file : options.files) {
    FileFigures figures;
    const FileLists lists;
    const ReadResult result = readInto(file, lists, figures);
    good = good && !result.failed;
    if (!result.unopened) files.push_back(noteOf(figures, lists, writer));
  }
  if (files.empty()) return exitBadData;  // nothing that would be worth a store
  workingOn(options.store);
  writer.noteIs(noteName, files.dump(-1, ' ', false, Json::error_handler_t::replace));
  return writeStore(writer, options.store) && good ? 0 : exitBadData;
}

struct RestoreOptions {
  std::string store;
  bool json = false;
};

int runRestore(const RestoreOptions& options) {
  workingOn(options.store);
  const MoxStash::FileStore store(options.store);
  const auto note = store.note(noteName);
  if (!note) store.fail("no files are noted in it: it was not saved by bgpcomm");
  try {
    const Json files = Json::parse(note->begin(), note->end());
    if (!files.is_array()) store.fail("its note of files is damaged: it is no list of files");
    Summary summary(files.size() > 1, options.json);
    NoteReader reader(store);
    bool good = true;
    for (const Json& file : files) {
      const FileLists lists;
      FileFigures figures = reader.read(file, lists);
      good = summary.add(std::move(figures), lists) && good;
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
                  "The store takes the place of a store or an empty file of its name, once it is\n"
                  "complete; no other file is replaced. Exit code 1 when a file cannot be read to\n"
                  "its end; what was read is saved.\n\n"
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
  addTextOptions(command);
  command.add_flag("--json", options.json, "One JSON object for programs");
}

}  // namespace bgpcomm

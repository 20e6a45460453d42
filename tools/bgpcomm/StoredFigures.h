// The note in a store that tells of the files whose lists it holds, in JSON: of each file its
// counts, and of each type of lists which ones its paths hold. Files that hold the same list refer
// to the same root. An entry may also stand for many files: it has the sums of their figures.
//
//   [{"file": [114, 105, 98], "records": 3, "paths": 2, "firstFault": "", "seconds": 0.1,
//     "faults": {"attrLength": 0, ...}, "wrongFlags": 0, "skipped": {"ospf": 0, ...},
//     "kinds": {"standard": {"communities": 4, "lists": [[REFERENCE, PATHS], ...]}, ...}}, ...]
//
// A file's name is an array of its octets, which need not be UTF-8. Notes once had neither
// "wrongFlags" nor "skipped": none are restored of these.
#pragma once

#include <nlohmann/json.hpp>

#include "MoxStash/FileStore.h"
#include "Summary.h"

namespace bgpcomm {

using Json = nlohmann::json;

/// The name of the note.
inline constexpr std::string_view noteName = "bgpcomm";

/// Gathers files, then writes them into a store.
class SavedFiles {
 public:
  /// If `total`, one entry of the store stands for all files.
  explicit SavedFiles(bool total) : total_(total) { sum_.file = totalName; }

  /// For the lists of a file: equal ones of all files are one in the store.
  FileLists makeLists() const { return FileLists(lists_.tables()); }
  /// Adds a file.
  /// REQUIRES: the lists are of `makeLists`.
  void add(const FileFigures& figures, const FileLists& lists);
  bool empty() const { return empty_; }
  /// False, with an error line, when the store cannot be written.
  bool write(const std::string& store);

 private:
  void append(const FileFigures& figures, const FileLists& lists);

  const bool total_;
  bool empty_ = true;
  const FileLists lists_;  // of all files, if `total_`
  FileFigures sum_;
  MoxStash::StoreWriter writer_;
  std::string note_ = "[";  // as text: a fraction of what Json takes
};

/// All counts of the files that one process restores are less together, and a list takes less than
/// 2^20 octets.
inline constexpr U64 mostCounts = U64{1} << 43;

/// Reads the entries of a note back. Nothing in it is trusted: counts are whole numbers whose sums,
/// and products with what a list takes, do not wrap.
class NoteReader {
 public:
  /// Takes counts from `left`, which other stores may share.
  NoteReader(const MoxStash::FileStore& store, U64& left) : store_(store), left_(left) {}

  /// Holds the lists of a file. StoreException, which names the store, or
  /// Json::exception when the entry is damaged.
  FileFigures read(const Json& file, const FileLists& lists);

 private:
  [[noreturn]] void fail(const std::string& reason) const;
  U64 count(const Json& number, std::string_view name);
  const Json& array(const Json& object, const std::string& name) const;
  std::string fileName(const Json& octets) const;
  double seconds(const Json& number) const;
  U64 restoreLists(const Json& lists, HeldLists& held);

  const MoxStash::FileStore& store_;
  U64& left_;
};

}  // namespace bgpcomm

// The note in a store that tells of the files whose lists it holds, in JSON: of each file its
// counts, and of each type of lists which ones its paths hold.
//
//   [{"file": [114, 105, 98], "records": 3, "paths": 2, "firstFault": "", "seconds": 0.1,
//     "faults": {"attrLength": 0, ...},
//     "kinds": {"standard": {"communities": 4, "lists": [[REFERENCE, PATHS], ...]}, ...}}, ...]
//
// A file's name is an array of its octets, which need not be UTF-8.
#pragma once

#include <nlohmann/json.hpp>

#include "MoxStash/FileStore.h"
#include "Summary.h"

namespace bgpcomm {

using Json = nlohmann::json;

/// The entry of a file, whose lists are added to the store.
Json noteOf(const FileFigures& figures, const FileLists& lists, MoxStash::StoreWriter& writer);

/// Reads the entries of a note back. Nothing in it is trusted: counts are whole numbers whose sums,
/// and products with what a list takes, do not wrap.
class NoteReader {
 public:
  explicit NoteReader(const MoxStash::FileStore& store) : store_(store) {}

  /// Holds the lists of a file. StoreException, which names the store, or
  /// Json::exception when the entry is damaged.
  FileFigures read(const Json& file, const FileLists& lists);

 private:
  [[noreturn]] void fail(const std::string& reason) const;
  U64 count(const Json& number, std::string_view name);
  std::string fileName(const Json& octets) const;
  double seconds(const Json& number) const;
  U64 restoreLists(const Json& lists, HeldLists& held);

  const MoxStash::FileStore& store_;
  /// All counts of a note together are less than 2^43, and a list takes less than 2^20 octets.
  U64 left_ = U64{1} << 43;
};

}  // namespace bgpcomm

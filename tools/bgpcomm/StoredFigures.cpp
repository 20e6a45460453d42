#include "StoredFigures.h"

#include <cmath>
#include <set>

#include "FileSaving.h"
#include "Terminal.h"

namespace bgpcomm {

void SavedFiles::add(const FileFigures& figures, const FileLists& lists) {
  empty_ = false;
  if (!total_) return append(figures, lists);
  sum_.add(figures);
  for (std::size_t type = 0; type < listTypeCount; ++type) lists_[type].add(lists[type]);
}

bool SavedFiles::write(const std::string& store) {
  workingOn(store);
  if (total_) append(sum_, lists_);
  writer_.noteIs(noteName, note_ + ']');
  return writeStore(writer_, store);
}

/// Adds an entry to the note, and the lists to the store.
void SavedFiles::append(const FileFigures& figures, const FileLists& lists) {
  Json file = {{"file", std::vector<U8>(figures.file.begin(), figures.file.end())},
               {"records", figures.records},
               {"paths", figures.paths},
               {"firstFault", figures.firstFault},
               {"seconds", figures.seconds},
               {"faults", Json::object()},
               {"wrongFlags", figures.wrongFlags},
               {"skipped", Json::object()},
               {"kinds", Json::object()}};
  for (std::size_t i = 0; i < faultNames.size(); ++i)
    file["faults"][std::string(faultNames[i])] = figures.faults[Fault(i)];
  for (std::size_t i = 0; i < skippedSorts; ++i)
    file["skipped"][std::string(skippedNames[i].key)] = figures.skipped[i];
  for (std::size_t type = 0; type < listTypeCount; ++type) {
    Json& entry = file["kinds"][std::string(listTypes[type].key)];
    entry = {{"communities", lists[type].communities()}, {"lists", Json::array()}};
    for (const HeldLists::StoredUse& use : lists[type].save(writer_))
      entry["lists"].push_back({use.list, use.paths});
  }
  if (note_.size() > 1) note_ += ',';
  note_ += file.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void NoteReader::fail(const std::string& reason) const {
  store_.fail("its note of files is damaged: " + reason);
}

U64 NoteReader::count(const Json& number, std::string_view name) {
  const U64 value = number.is_number_unsigned() ? number.get<U64>() : mostCounts;
  if (value >= mostCounts) fail('"' + std::string(name) + "\" is no count, or too large");
  if (value >= left_) store_.fail("counts of all files together reach 2^43");
  left_ -= value;
  return value;
}

const Json& NoteReader::array(const Json& object, const std::string& name) const {
  const Json& its = object.at(name);
  if (!its.is_array()) fail('"' + name + "\" is no array");
  return its;
}

std::string NoteReader::fileName(const Json& octets) const {
  std::string name;
  for (const Json& octet : octets) {
    if (!octet.is_number_unsigned() || octet.get<U64>() > 0xff) fail("\"file\" holds no octets");
    name += char(octet.get<U8>());
  }
  return name;
}

/// In steps that nobody sees, whose sums are exact: they are the same in every order.
double NoteReader::seconds(const Json& number) const {
  constexpr double most = 1e10;  // centuries
  const double value = number.get<double>();
  if (!(value >= 0 && value <= most)) fail("\"seconds\" is out of range");
  return std::round(value * 0x1p20) / 0x1p20;
}

/// Each list is a root of the type, and there at most once for a file: so a damaged note
/// restores no more than the store holds. Returns how many paths hold a list.
U64 NoteReader::restoreLists(const Json& lists, HeldLists& held) {
  std::set<MoxStash::StoreReference> left;
  for (const MoxStash::StoredRoot& root : store_.roots())
    if (root.type == held.recordType()) left.insert(root.reference);
  U64 paths = 0;
  for (const Json& entry : lists) {
    const Json& list = entry.at(0);
    if (!list.is_number_unsigned() || !left.erase(list.get<U64>()))
      fail("a file has a list twice, or one that is no list");
    const HeldLists::StoredUse use{list.get<U64>(), count(entry.at(1), "lists")};
    held.restore(store_, use);
    paths += use.paths;
  }
  return paths;
}

FileFigures NoteReader::read(const Json& file, const FileLists& lists) {
  FileFigures figures;
  const auto countOf = [&](const Json& object, std::string_view name) {
    return count(object.at(std::string(name)), name);
  };
  figures.file = fileName(array(file, "file"));
  figures.records = countOf(file, "records");
  figures.paths = countOf(file, "paths");
  figures.firstFault = file.at("firstFault").get<std::string>();
  figures.seconds = seconds(file.at("seconds"));
  for (std::size_t i = 0; i < faultNames.size(); ++i)
    figures.faults.add(Fault(i), countOf(file.at("faults"), faultNames[i]));
  if (file.contains("wrongFlags")) figures.wrongFlags = countOf(file, "wrongFlags");
  if (const auto skipped = file.find("skipped"); skipped != file.end()) {
    if (!skipped->is_object()) fail("\"skipped\" is no object");
    for (std::size_t i = 0; i < skippedSorts; ++i)
      if (skipped->contains(skippedNames[i].key))
        figures.skipped[i] = countOf(*skipped, skippedNames[i].key);
  }
  for (std::size_t type = 0; type < listTypeCount; ++type) {
    const Json& entry = file.at("kinds").at(std::string(listTypes[type].key));
    lists[type].communitiesIs(countOf(entry, "communities"));
    if (restoreLists(array(entry, "lists"), lists[type]) > figures.paths)
      fail("more paths hold a list than there are");
  }
  return figures;
}

}  // namespace bgpcomm

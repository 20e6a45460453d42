#include "MoxStash/StoreWriter.h"

#include <algorithm>

#include "MoxStash/StoreFile.h"

namespace MoxStash {

namespace {

/// Appends to octets that stand at `start` in the file, and fills up for what comes next.
StoredArray appendAt(U64 start, Mox::String& to, std::string_view octets) {
  const StoredArray array{start + to.size(), octets.size()};
  const std::size_t end =
      (to.size() + octets.size() + storeAlignment - 1) / storeAlignment * storeAlignment;
  if (end > to.capacity()) to.reserve(std::max(end, 2 * to.capacity()));
  to += octets;  // from here on nothing throws
  to.resize(end);
  return array;
}

template <class Record>
std::string_view octetsOf(const std::vector<Record>& records) {
  return {reinterpret_cast<const char*>(records.data()), records.size() * sizeof(Record)};
}

}  // namespace

StoreReference StoreWriter::appendOctets(std::string_view octets) {
  return appendAt(sizeof(StoreHeader), records_, octets).begin;
}

StoreReference StoreWriter::rootIs(StoreReference reference, RecordType type, U64 figure) {
  if (figure > ~U64{0} - figures_) throw StoreException("figures exceed 64 bits");
  if (roots_.size() == roots_.capacity()) roots_.reserve(2 * roots_.size() + 1);
  const auto [at, isNew] = rootAt_.emplace(reference, roots_.size());
  if (isNew) roots_.push_back({reference, 0, type, 0});
  roots_[at->second].figure += figure;
  figures_ += figure;
  return reference;
}

void StoreWriter::noteIs(std::string_view name, std::string_view octets) {
  const auto isNamed = [&](const auto& note) { return note.first == name; };
  const auto found = std::find_if(notes_.begin(), notes_.end(), isNamed);
  if (found != notes_.end())
    found->second = octets;
  else
    notes_.emplace_back(name, octets);
}

StoreWriter::Ends StoreWriter::ends() const {
  Ends ends;
  const auto append = [&](std::string_view octets) {
    return appendAt(sizeof(StoreHeader) + records_.size(), ends.tail, octets);
  };
  const StoreReference roots = append(octetsOf(roots_)).begin;
  std::vector<StoredNote> notes;
  for (const auto& [name, octets] : notes_) notes.push_back({append(name), append(octets)});
  const StoreReference directory = append(octetsOf(notes)).begin;
  ends.header = {.magic = {},
                 .byteOrder = StoreHeader::byteOrderMark,
                 .version = StoreHeader::versionNumber,
                 .wordSize = sizeof(StoreReference),
                 .length = sizeof(StoreHeader) + records_.size() + ends.tail.size(),
                 .checksum = 0,
                 .roots = {roots, roots_.size()},
                 .notes = {directory, notes.size()}};
  std::copy(std::begin(StoreHeader::magicOctets), std::end(StoreHeader::magicOctets),
            ends.header.magic);
  ends.header.checksum = storeChecksum(ends.header, {records_, ends.tail});
  return ends;
}

void StoreWriter::checkReplaceable(const Mox::String& file) { MoxStash::checkReplaceable(file); }

void StoreWriter::write(const Mox::String& file, bool (*stop)()) const {
  const Ends ends = this->ends();
  const std::string_view pieces[] = {
      {reinterpret_cast<const char*>(&ends.header), sizeof ends.header}, records_, ends.tail};
  replaceFile(file, &MoxStash::checkReplaceable, pieces, stop);
}

Mox::String StoreWriter::octets() const {
  const Ends ends = this->ends();
  return Mox::String(reinterpret_cast<const char*>(&ends.header), sizeof ends.header) + records_ +
         ends.tail;
}

}  // namespace MoxStash

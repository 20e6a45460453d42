#include "MoxStash/FileStore.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

#include "MoxStash/StoreFile.h"

namespace MoxStash {

namespace {

Mox::String hexadecimal(U64 number) {
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", number);
  return text;
}

}  // namespace

FileStore::FileStore(const Mox::String& file) : name_(file) {
  StoreFile input(file);
  load(input.size(), [&](char* to, std::size_t size) { input.read(to, size); });
}

FileStore::FileStore(const Mox::String& name, std::string_view octets) : name_(name) {
  load(octets.size(), [&](char* to, std::size_t size) {
    octets.copy(to, size);
    octets.remove_prefix(size);
  });
}

// Nothing is read, and no memory taken, behind a header that is no store's.
void FileStore::load(U64 size, const Read& read) {
  size_ = size;
  if (size < sizeof header_) fail("is too short for a store");
  read(reinterpret_cast<char*>(&header_), sizeof header_);
  checkHeader();
  try {
    // A 32-bit process may be given a file larger than any memory of its own.
    if (size > std::numeric_limits<std::size_t>::max() - sizeof(U64)) throw std::bad_alloc();
    words_ = std::make_unique_for_overwrite<U64[]>(std::size_t(size / sizeof(U64) + 1));
  } catch (const std::bad_alloc&) {
    fail("does not fit into memory");
  }
  auto* const octets = reinterpret_cast<char*>(words_.get());
  std::memcpy(octets, &header_, sizeof header_);
  read(octets + sizeof header_, std::size_t(size) - sizeof header_);
  checkChecksum();
  roots_ = array<StoredRoot>(header_.roots);
  notes_ = array<StoredNote>(header_.notes);
  for (const StoredNote& note : notes_) text(note.name), text(note.octets);
  checkFigures();
  checkExtents();
}

void FileStore::checkHeader() const {
  if (!std::equal(header_.magic, std::end(header_.magic), StoreHeader::magicOctets))
    fail("is not a store");
  if (header_.byteOrder != StoreHeader::byteOrderMark)
    fail(header_.byteOrder == __builtin_bswap32(StoreHeader::byteOrderMark)
             ? "is of the other byte order"
             : "has no byte order that is known");
  if (header_.version != StoreHeader::versionNumber)
    fail("is of version " + std::to_string(header_.version) + ", not " +
         std::to_string(StoreHeader::versionNumber));
  if (header_.wordSize != sizeof(StoreReference))
    fail("has references of " + std::to_string(header_.wordSize) + " octets, not " +
         std::to_string(sizeof(StoreReference)));
  if (header_.length != size_)
    fail("has " + std::to_string(size_) + " octets, not the " + std::to_string(header_.length) +
         " that were written");
}

void FileStore::checkChecksum() const {
  const auto* const octets = reinterpret_cast<const char*>(words_.get());
  const U64 sum =
      storeChecksum(header_, {{octets + sizeof header_, std::size_t(size_) - sizeof header_}});
  if (sum != header_.checksum)
    fail("the checksum is wrong: " + hexadecimal(sum) + ", not " + hexadecimal(header_.checksum));
}

void FileStore::checkFigures() const {
  U64 sum = 0;
  for (const StoredRoot& root : roots_)
    if (__builtin_add_overflow(sum, root.figure, &sum)) fail("the figures exceed 64 bits");
}

// Roots do not have elements in common.
void FileStore::checkExtents() const {
  std::vector<StoredExtent> extents;
  for (const StoredRoot& root : roots_)
    if (root.type & recordTypeHasExtent) extents.push_back(record<StoredExtent>(root.reference));
  std::sort(extents.begin(), extents.end(), [](const StoredExtent& a, const StoredExtent& b) {
    return a.begin != b.begin ? a.begin < b.begin : a.end < b.end;
  });
  StoreReference end = 0;
  for (const StoredExtent& extent : extents) {
    if (extent.begin == extent.end) continue;
    if (extent.begin < end) fail("two roots share their elements");
    end = std::max(end, extent.end);
  }
}

const void* FileStore::translate(StoreReference reference, U64 size, U32 alignment) const {
  // One rule for all word sizes, some of which would do with less.
  if (reference % storeAlignment || alignment > storeAlignment) return nullptr;
  if (reference > size_ || size > size_ - reference) return nullptr;
  return reinterpret_cast<const char*>(words_.get()) + reference;
}

template <class Record>
std::span<const Record> FileStore::array(const StoredArray& where) const {
  return {records<Record>(where.begin, where.count), std::size_t(where.count)};
}

std::string_view FileStore::text(const StoredArray& octets) const {
  const auto characters = array<char>(octets);
  return {characters.data(), characters.size()};
}

std::optional<std::string_view> FileStore::note(std::string_view name) const {
  for (const StoredNote& note : notes_)
    if (text(note.name) == name) return text(note.octets);
  return std::nullopt;
}

}  // namespace MoxStash

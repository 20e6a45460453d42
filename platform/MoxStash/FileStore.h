// A store in a file that StoreWriter wrote, now or in another process.
//
//   const MoxStash::FileStore store("lists.store");   // StoreException unless it is whole
//   for (const MoxStash::StoredRoot& root : store.roots())
//     if (root.type == CommList::recordType) {
//       CommList::PtrConst list = CommList::dedupStored(table, root.reference, store);
//       paths += root.figure;
//     }
//
// 1. A store that is not exactly what a writer made of this format is refused, by name and reason:
//    "lists.store: the checksum is wrong: ...".
// 2. No file crashes its reader, whether its checksum is right or not: every reference is held
//    against the file's bounds when it is followed.
// 3. All lists among the roots together take memory in proportion to the file.
// 4. The figures of all roots can be added up in 64 bits.
//
// The file is read into memory as a whole, not mapped: the octets that were checked stay when the
// file changes, and a file that is cut later does not end the process with a signal.
//
// Threads: read from any.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "MoxStash/StoreFormat.h"

namespace MoxStash {

class FileStore final : public StoreManager {
 public:
  /// Reads a file. StoreException when it cannot be read, is refused, or does not fit into memory.
  explicit FileStore(const Mox::String& file);
  /// The same from the octets of such a file, which are copied; `name` is for errors.
  FileStore(const Mox::String& name, std::string_view octets);

  const void* translate(StoreReference reference, U64 size, U32 alignment) const override;
  Mox::String name() const override { return name_; }

  /// The objects that were added to the store, in that order. Valid as long as the store.
  std::span<const StoredRoot> roots() const { return roots_; }
  /// The octets under a name, or nothing when there is no such note; they start at a multiple of 8.
  /// Linear in the number of notes. Valid as long as the store.
  std::optional<std::string_view> note(std::string_view name) const;

 private:
  using Read = std::function<void(char* to, std::size_t size)>;

  void load(U64 size, const Read& read);
  void checkHeader() const;
  void checkChecksum() const;
  void checkFigures() const;
  void checkExtents() const;
  std::string_view text(const StoredArray& octets) const;
  template <class Record>
  std::span<const Record> array(const StoredArray& where) const;

  const Mox::String name_;
  U64 size_ = 0;
  StoreHeader header_{};
  std::unique_ptr<U64[]> words_;  // for their alignment
  std::span<const StoredRoot> roots_;
  std::span<const StoredNote> notes_;
};

}  // namespace MoxStash

// Writes values and lists into a file, from which FileStore gives them to `destash`, also in
// another process.
//
//   MoxStash::StoreWriter writer;
//   writer.add(list, 3);                 // three paths hold it
//   writer.add(extendedList);            // with its values, once each for all lists of the writer
//   writer.noteIs("paths", "12");
//   writer.write("lists.store");         // StoreException: "lists.store: cannot be written: ..."
//
// The writer knows records, not kinds. A kind that can be stored has
//   storedKind                   what its records are of, in the directory
//   store(StoreWriter&) const    appends its record, and first what the record refers to
//
// 1. An interned object is written once, however often it is met; the writer holds it until then.
//    A private one, which may change meanwhile, is written whenever it is met.
// 2. The file is complete or not there: it is written beside the target and takes its place.
//
// Everything is kept in memory until it is written. Threads: one at a time.
#pragma once

#include <span>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include "MoxStash/DedupHandle.h"
#include "MoxStash/StoreFormat.h"

namespace MoxStash {

class StoreWriter {
 public:
  /// Adds a value or a list to the roots. If it is one already, the figures are summed.
  /// StoreException for null.
  template <class Object>
  StoreReference add(const Mox::Ptr<Object>& object, U64 figure = 0) {
    if (!object) throw StoreException("null cannot be stored");
    return rootIs(object->store(*this), Object::storedKind, figure);
  }
  /// Octets under a name, in place of others under that name.
  void noteIs(std::string_view name, std::string_view octets);

  /// Replaces the file by one of all that was added. StoreException when that fails, and when
  /// there is a file that is neither a store nor empty; there is then no trace of it. `stop` is
  /// asked from time to time; true gives the writing up, with a StoreException too.
  void write(const Mox::String& file, bool (*stop)() = nullptr) const;
  /// Asks beforehand whether `write` would refuse the file of this name: StoreException if so.
  static void checkReplaceable(const Mox::String& file);
  /// The octets of that file.
  Mox::String octets() const;

  // --- For kinds.

  /// Plain records in a row, without padding.
  template <class Record>
  StoreReference append(std::span<const Record> records) {
    static_assert(std::is_trivially_copyable_v<Record> && alignof(Record) <= storeAlignment &&
                  std::has_unique_object_representations_v<Record>);
    return appendOctets({reinterpret_cast<const char*>(records.data()), records.size_bytes()});
  }
  template <class Record>
  StoreReference append(const Record& record) {
    return append(std::span(&record, 1));
  }
  /// The reference of an object that `make()` appends, unless it was met before.
  template <class Make>
  StoreReference once(const DedupHandle& object, Make make) {
    if (object.dedupState() == Orv::dedupHandleStateNeverDeduped()) return make();
    const DedupHandle::PtrConst held(&object);
    const auto known = written_.find(held);
    return known != written_.end() ? known->second : written_.emplace(held, make()).first->second;
  }

 private:
  struct Hash {
    std::size_t operator()(const DedupHandle::PtrConst& object) const {
      return std::hash<const DedupHandle*>()(object.get());
    }
  };
  struct Ends {
    StoreHeader header;
    Mox::String tail;
  };

  StoreReference appendOctets(std::string_view octets);
  StoreReference rootIs(StoreReference reference, StoredKind kind, U64 figure);
  Ends ends() const;

  Mox::String records_;  // what stands behind the header
  std::unordered_map<DedupHandle::PtrConst, StoreReference, Hash> written_;
  std::vector<StoredRoot> roots_;
  std::unordered_map<StoreReference, std::size_t> rootAt_;
  std::vector<std::pair<Mox::String, Mox::String>> notes_;
};

}  // namespace MoxStash

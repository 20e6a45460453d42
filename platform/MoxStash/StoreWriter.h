// Writes values and lists into a file, from which FileStore gives them to `destash`, also in
// another process.
//
//   MoxStash::StoreWriter writer;
//   writer.add(list, 3);                 // three paths hold it
//   writer.add(extendedList);            // with its values, once each for all lists of the writer
//   writer.noteIs("paths", "12");
//   writer.write("lists.store");         // StoreException: "lists.store: cannot be written: ..."
//
// The writer knows records, not classes. A class that can be stored has
//   recordType                   the type of its records, as the directory names it
//   store(StoreWriter&) const    appends its record, and first the records that it refers to
//
// 1. An interned object is written once, however often it is met; the writer holds it until then.
//    A private one, which may change meanwhile, is written whenever it is met.
// 2. The file is complete or not there: it is written beside the target and then renamed.
// 3. An operation that throws, also for want of memory, leaves roots and notes as they were.
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
  /// Adds a value or a list to the roots, or adds to the figure of the root that it is already.
  /// StoreException for null, and when the figures of all roots together exceed 64 bits.
  template <class Object>
  StoreReference add(const Mox::Ptr<Object>& object, U64 figure = 0) {
    if (!object) throw StoreException("null cannot be stored");
    return rootIs(object->store(*this), Object::recordType, figure);
  }
  /// Octets under a name, instead of others under that name.
  void noteIs(std::string_view name, std::string_view octets);

  /// Replaces the file by one of all that was added. StoreException when that fails, and when
  /// there is a file that is neither a store nor empty; there is then no trace of it. `stop` is
  /// asked from time to time; true gives the writing up, with a StoreException too.
  void write(const Mox::String& file, bool (*stop)() = nullptr) const;
  /// Asks beforehand whether `write` would refuse the file of this name: StoreException if so.
  static void checkReplaceable(const Mox::String& file);
  /// The octets of that file.
  Mox::String octets() const;

  // --- For the classes that can be stored.

  /// Appends plain records in a row, without padding, and returns the reference of the first.
  template <class Record>
  StoreReference append(std::span<const Record> records) {
    static_assert(std::is_trivially_copyable_v<Record> && alignof(Record) <= storeAlignment &&
                  std::has_unique_object_representations_v<Record>);
    return appendOctets({reinterpret_cast<const char*>(records.data()), records.size_bytes()});
  }
  /// One record.
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
  StoreReference rootIs(StoreReference reference, RecordType type, U64 figure);
  Ends ends() const;

  Mox::String records_;  // the file's octets from behind the header on
  U64 figures_ = 0;      // of all roots together
  std::unordered_map<DedupHandle::PtrConst, StoreReference, Hash> written_;
  std::vector<StoredRoot> roots_;
  std::unordered_map<StoreReference, std::size_t> rootAt_;
  std::vector<std::pair<Mox::String, Mox::String>> notes_;
};

}  // namespace MoxStash

// The way from a reference in the agent's store to the record behind it.
//
// Records are plain structs of fixed-width fields, the same on every word size; where an object
// would hold an address, a record holds an offset.
#pragma once

#include "Mox/Exception.h"
#include "Mox/Types.h"

namespace MoxStash {

/// A position in the store: an offset, counted as the manager says.
using StoreReference = U64;

/// The store cannot be read or written: `what()` says which and why.
class StoreException : public Mox::Exception {
 public:
  using Exception::Exception;
};

/// The means to restore objects from a store: `destash` follows references by it.
class StoreManager {
 public:
  virtual ~StoreManager() = default;
  /// A local view of `size` octets at `reference`, aligned to `alignment`; null when any of them
  /// lies outside the store or the reference is not aligned. Valid as long as the manager.
  virtual const void* translate(StoreReference reference, U64 size, U32 alignment) const = 0;
  /// Called once for each extended community that was rebuilt, before it is handed out, and for
  /// each list of IPv6-address-specific ones before its communities are rebuilt.
  virtual void restored() const {}
  /// The store's name in errors; may be empty.
  virtual Mox::String name() const { return {}; }

  /// Throws the StoreException of this store.
  [[noreturn]] void fail(const Mox::String& reason) const {
    const Mox::String store = name();
    throw StoreException(store.empty() ? reason : store + ": " + reason);
  }

  /// The record at `reference`; StoreException when there is none.
  template <class Record>
  const Record& record(StoreReference reference) const {
    return *records<Record>(reference, 1);
  }
  /// `count` records in a row.
  template <class Record>
  const Record* records(StoreReference reference, U64 count) const {
    const void* local = count <= ~U64{0} / sizeof(Record)
                            ? translate(reference, count * sizeof(Record), alignof(Record))
                            : nullptr;
    if (!local) fail("stored reference is out of bounds");
    return static_cast<const Record*>(local);
  }
};

}  // namespace MoxStash

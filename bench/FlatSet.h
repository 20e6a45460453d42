// The floor: the cost of finding an attribute when nothing else is done.
//
// A flat open-addressing hash set over octets, each record with a count beside it. It has no lock,
// no type, no text; a handle is a pointer, taking one is one atomic increment. Places come from
// the same mix as those of the library, so that the difference is what the library adds.
#pragma once

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Orv/Placement.h"
#include "Workload.h"

namespace bench {

class FlatSet {
 public:
  struct Record {
    std::atomic<U32> count;
    U32 size;
    U64 place;
    void* octets() { return this + 1; }  // `size` of them
  };

  FlatSet() = default;
  FlatSet(const FlatSet&) = delete;
  FlatSet& operator=(const FlatSet&) = delete;

  /// The record of these octets, counted once more.
  Record* intern(const void* octets, std::size_t size) {
    const U64 place = Orv::placeOf(octets, size, Orv::placementSeed());
    for (U32 i = U32(place) & mask_;; i = (i + 1) & mask_) {
      Record* const record = records_[i];
      if (!record) break;
      if (places_[i] == place && record->size == size &&
          std::memcmp(record->octets(), octets, size) == 0) {
        record->count.fetch_add(1);
        return record;
      }
    }
    return insert(octets, size, place);
  }
  void release(Record* record) {
    if (record->count.fetch_sub(1) == 1) erase(record);
  }

 private:
  Record* insert(const void* octets, std::size_t size, U64 place) {
    if ((used_ + 1) * 4 > (mask_ + 1) * 3) grow();
    auto* record = new (std::malloc(sizeof(Record) + size)) Record{1, U32(size), place};
    std::memcpy(record->octets(), octets, size);
    put(place, record);
    ++used_;
    return record;
  }
  void put(U64 place, Record* record) {
    U32 i = U32(place) & mask_;
    while (records_[i]) i = (i + 1) & mask_;
    places_[i] = place;
    records_[i] = record;
  }
  void grow() {
    const U32 oldSize = mask_ + 1;
    const auto places = std::move(places_);
    const auto records = std::move(records_);
    mask_ = 2 * oldSize - 1;
    places_ = std::make_unique<U64[]>(2 * oldSize);
    records_ = std::make_unique<Record*[]>(2 * oldSize);
    for (U32 i = 0; i < oldSize; ++i)
      if (records[i]) put(places[i], records[i]);
  }
  void erase(Record* record) {
    U32 hole = U32(record->place) & mask_;
    while (records_[hole] != record) hole = (hole + 1) & mask_;
    for (U32 i = (hole + 1) & mask_; records_[i]; i = (i + 1) & mask_) {
      if (((i - U32(places_[i])) & mask_) < ((i - hole) & mask_)) continue;
      places_[hole] = places_[i];
      records_[hole] = records_[i];
      hole = i;
    }
    records_[hole] = nullptr;
    --used_;
    std::free(record);
  }

  U32 mask_ = 7;
  U32 used_ = 0;
  std::unique_ptr<U64[]> places_ = std::make_unique<U64[]>(8);
  std::unique_ptr<Record*[]> records_ = std::make_unique<Record*[]>(8);
};

}  // namespace bench

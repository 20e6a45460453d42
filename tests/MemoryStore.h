#pragma once

#include <cstring>
#include <vector>

#include "MoxStash/StoreManager.h"

/// A store in memory, whose offsets count from its start: a record at 0, and values from 64 on.
template <class Record>
class MemoryStore final : public MoxStash::StoreManager {
 public:
  template <class Value = char>
  explicit MemoryStore(const Record& stored, const std::vector<Value>& values = {}) {
    record() = stored;
    std::copy(values.begin(), values.end(), reinterpret_cast<Value*>(octets_ + 64));
  }
  const void* translate(MoxStash::StoreReference at, Mox::U64 size,
                        Mox::U32 alignment) const override {
    const Mox::U64 end = sizeof octets_;
    return at % alignment == 0 && at <= end && size <= end - at ? octets_ + at : nullptr;
  }
  void restored() const override { ++restoredObjects; }
  Record& record() { return *reinterpret_cast<Record*>(octets_); }

  mutable int restoredObjects = 0;

 private:
  alignas(8) char octets_[256] = {};
};

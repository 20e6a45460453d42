// An interned value that the agent's store can hold too: the base of communities and lists.
//
// Threads: as Orv::DedupHandle; the storage word belongs to the store manager's thread.
#pragma once

#include "Orv/DedupHandle.h"

namespace MoxStash {

class DedupHandle : public Orv::DedupHandle {
 public:
  using Ptr = Mox::Ptr<DedupHandle>;
  using PtrConst = Mox::PtrConst<DedupHandle>;
  static const Mox::Type type;

  const Mox::Type& fwkType() const override { return type; }

  /// Free for the store manager; this library leaves it 0.
  U32 storageWord() const { return storageWord_; }
  /// As it is; no bit has a meaning here.
  void storageWordIs(U32 word) { storageWord_ = word; }

 private:
  U32 storageWord_ = 0;
};

}  // namespace MoxStash

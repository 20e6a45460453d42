#include "Orv/DedupHandle.h"

#include "Orv/DedupHashTable.h"

namespace Orv {

bool dedupHandleDisableSmartPointerOperations = false;
bool dedupHandleDisableIsDedupedAssert = false;

using Mox::attribute;
using Mox::operation;

const Mox::Type DedupHandle::type{
    "Orv::DedupHandle",
    &Mox::PtrInterface::type,
    {operation("isBitSet"),
     operation("bitSet"),
     operation("bitReset"),
     operation("setBitsAtomic"),
     attribute<&DedupHandle::dedupState>("dedupState"),
     operation("dedupStateIs"),
     attribute<&DedupHandle::haveLifeTimeNotifier>("haveLifeTimeNotifier"),
     operation("haveLifeTimeNotifierIs"),
     attribute<&DedupHandle::beingDetached>("beingDetached"),
     operation("beingDetachedIs"),
     attribute<&DedupHandle::userData>("userData"),
     operation("userDataIs"),
     operation("userDataBitsIs"),
     attribute<&DedupHandle::dedupTable>("dedupTable"),
     attribute<&DedupHandle::isDeduped>("isDeduped"),
     operation("assertIsDeduped"),
     operation("doRemoveFromDedupTable"),
     operation("moxMemAlloc"),
     operation("moxMemDealloc"),
     operation("prepareToDestruct"),
     attribute<&DedupHandle::hash>("hash"),
     operation("compare"),
     operation("compareByContent"),
     operation("getContent")}};

void DedupHandle::zeroReferencesIs(bool zero) {
  if (zero) prepareToDestruct();
  Mox::PtrInterface::zeroReferencesIs(zero);
}

void DedupHandle::assertIsDeduped() const {
  MOX_ASSERT(dedupHandleDisableIsDedupedAssert || isDeduped(), "isDeduped()");
}

bool DedupHandle::compareByContent(const DedupContentHandle&) const { return false; }

void DedupHandle::setBitsAtomic(U32 set, U32 clear) {
  U32 state = state_.load();
  while (!state_.compare_exchange_weak(state, (state & ~clear) | set)) {
  }
}

void DedupHandle::dedupStateIs(U32 state) {
  setBitsAtomic(state << dedupHandleStateBitPos, 3u << dedupHandleStateBitPos);
}

void DedupHandle::userDataBitsIs(U32 mask, U32 data) {
  mask &= userDataMask;
  setBitsAtomic(data & mask, mask);
}

void DedupHandle::doRemoveFromDedupTable() {
  MOX_ASSERT(dedupTable(), "dedupTable()");
  dedupTable()->remove(this);
}

void DedupHandle::prepareToDestruct() const {
  MOX_ASSERT(dedupState() != dedupHandleStateDeduped() || beingDetached(),
             "!isDeduped() || beingDetached()");
}

}  // namespace Orv

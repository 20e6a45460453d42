#include "Orv/DedupHashTable.h"

namespace Orv {

const Mox::Type DedupHashTable::type{
    "Orv::DedupHashTable",
    &Mox::PtrInterface::type,
    {Mox::operation("lookupByContent"), Mox::operation("dedup"),
     Mox::operation("lifeTimeNotifieeIs"), Mox::operation("visitMembers"),
     Mox::attribute<&DedupHashTable::members>("members"),
     Mox::attribute<&DedupHashTable::octets>("octets"), Mox::operation("dumpState")}};
const Mox::Type DedupHashTableLifeTimeNotifiee::type{
    "Orv::DedupHashTableLifeTimeNotifiee",
    &Mox::PtrInterface::type,
    {Mox::operation("handleInsert"), Mox::operation("handleRemove"),
     Mox::operation("handleNotificationStop")}};
const Mox::Type DedupHandleLifeTimeNotifier::type{"Orv::DedupHandleLifeTimeNotifier",
                                                  &Mox::PtrInterface::type,
                                                  {Mox::operation("getDedupedObjectRawPtr")}};

std::unique_ptr<DedupHashTableLifeTimeNotifiee::PreparedInsert>
DedupHashTableLifeTimeNotifiee::prepareInsert() const {
  return nullptr;
}

void DedupHashTableLifeTimeNotifiee::handlePreparedInsert(const Mox::Ptr<DedupHandle>& member,
                                                          std::unique_ptr<PreparedInsert>) const {
  handleInsert(member);
}

void DedupHashTable::dumpState(const Mox::Ptr<const DumpContext>& context, U32 indent) const {
  context->line(indent, "members: %u\n", U32(members()));
}

void DedupHashTable::enter(DedupHandle& object, bool withNotifier) {
  object.dedupTable_.store(this, std::memory_order_relaxed);
  object.setBitsAlone(dedupHandleStateDeduped() << DedupHandle::dedupHandleStateBitPos |
                      U32(withNotifier) << DedupHandle::haveLifeTimeNotifierBitPos);
  if (!dedupHandleDisableSmartPointerOperations) object.incrementUnseen(1 + U32(withNotifier));
}

void DedupHashTable::leave(DedupHandle& member) {
  // A notifier, or a holder when the removal was asked for by hand, may change user data meanwhile.
  if (isLast(member))
    member.setBitsAlone(1u << DedupHandle::beingDetachedBitPos);
  else
    member.beingDetachedIs(true);
  member.dedupTable_.store(nullptr, std::memory_order_relaxed);
}

// The last reference need not be counted down: nobody can take another.
void DedupHashTable::end(DedupHandle& member) {
  if (!isLast(member))
    member.referencesDec();
  else if (!dedupHandleDisableSmartPointerOperations)
    member.zeroReached();
}

void DedupHashTable::detach(DedupHandle& member) {
  member.dedupTable_.store(nullptr, std::memory_order_relaxed);
  member.dedupStateIs(dedupHandleStateDetached());
}

DedupHandleLifeTimeNotifier::DedupHandleLifeTimeNotifier(const Mox::Ptr<const DedupHandle>& member)
    : member_(const_cast<DedupHandle*>(member.get())) {
  MOX_ASSERT(member_->haveLifeTimeNotifier(), "haveLifeTimeNotifier()");
}

DedupHandleLifeTimeNotifier::~DedupHandleLifeTimeNotifier() {
  MOX_ASSERT(!member_->dedupTable(), "__null == dedupTable()");
  member_->referencesDec();
}

}  // namespace Orv

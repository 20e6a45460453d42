#include "MoxStash/DedupHandle.h"

namespace MoxStash {

const Mox::Type DedupHandle::type{"MoxStash::DedupHandle",
                                  &Orv::DedupHandle::type,
                                  {Mox::attribute<&DedupHandle::storageWord>("storageWord")}};

void DedupHandle::zeroReferencesIs(bool zero) {
  if (zero) prepareToDestruct();
  Orv::DedupHandle::zeroReferencesIs(zero);
}

}  // namespace MoxStash

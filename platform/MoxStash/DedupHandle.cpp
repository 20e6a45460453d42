#include "MoxStash/DedupHandle.h"

namespace MoxStash {

const Mox::Type DedupHandle::type{"MoxStash::DedupHandle",
                                  &Orv::DedupHandle::type,
                                  {Mox::attribute<&DedupHandle::storageWord>("storageWord")}};

}  // namespace MoxStash

#include "attr/BgpPathAttributeEnums.h"

#include "Mox/Assert.h"

namespace Routing::Bgp {
namespace {
const Mox::Type types[] = {Mox::enumType<BgpPathAttrType>(), Mox::enumType<BgpPathAttrFlag>(),
                           Mox::enumType<PrefixSidTlvType>()};
}  // namespace

const char* bgpPathAttrTypeShowString(BgpPathAttrType type) {
  const BgpPathAttrTypeRow* row = Mox::enumTableOf<BgpPathAttrType>.find(U32(type));
  MOX_ASSERT(row, "Unknown BgpPathAttrType");
  return row->showString;
}

}  // namespace Routing::Bgp

#include "KindUses.h"

#include <algorithm>
#include <utility>

#include "Hex.h"
#include "ListValues.h"

namespace bgpcomm {

using namespace Routing::Bgp;

std::string typeText(Octets value) { return hex(value.first(1)) + '/' + hex(value.subspan(1, 1)); }

void KindUses::add(Octets value) {
  const U32 number = values_.numberOf(asText(value));
  if (number == kindOfValue_.size()) {
    const bool extended = attribute_ == BgpPathAttrType::extCommunity ||
                          attribute_ == BgpPathAttrType::extCommunityIp6;
    const KindUse use{extended ? typeText(value) : "", kindOf(communityOf(attribute_, value))};
    const U32 kind =
        numbers_.numberOf(use.type + std::string(use.kind ? use.kind->identifier : "unknown"));
    kindOfValue_.push_back(kind);
    if (kind == kinds_.size()) {
      kinds_.push_back(use);
      lastList_.push_back(0);
    }
    ++kinds_[kindOfValue_.back()].values;
  }
  const U32 kind = kindOfValue_[number];
  if (std::exchange(lastList_[kind], list_) == list_) return;
  ++kinds_[kind].lists;
  kinds_[kind].paths += paths_;
}

std::vector<KindUse> KindUses::all() const {
  std::vector<KindUse> sorted = kinds_;
  std::ranges::sort(sorted, [](const KindUse& a, const KindUse& b) {
    if (a.paths != b.paths) return a.paths > b.paths;
    return std::pair(a.type, a.kind ? a.kind->identifier : "") <
           std::pair(b.type, b.kind ? b.kind->identifier : "");
  });
  return sorted;
}

}  // namespace bgpcomm

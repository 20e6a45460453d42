// The contenders over lists of the other types: large ones, and extended ones of both families.
#pragma once

#include "ValueContenders.h"
#include "ip6/ExtCommIp6ListDedupTable.h"

namespace bench {

using Large = std::array<U32, 3>;
template <>
struct PayloadOf<Large> {
  static Large make(Octets octets) {
    return {Zonet::loadNetworkOrder<U32>(octets.data()),
            Zonet::loadNetworkOrder<U32>(octets.data() + 4),
            Zonet::loadNetworkOrder<U32>(octets.data() + 8)};
  }
};

template <class List, auto valuesFactory, auto listsFactory>
class OursExtended {
 public:
  static constexpr const char* name = Ours::name;
  using Held = Mox::Ptr<const List>;
  void intern(Octets octets, std::vector<Held>& paths) {
    paths.push_back(List::dedupWire(lists_, values_, octets).list);
  }

 private:
  decltype(valuesFactory(nullptr)) values_ = valuesFactory(parser());
  decltype(listsFactory()) lists_ = listsFactory();
};
using OursLists8 =
    OursExtended<ExtCommList, extCommDedupTableFactory, extCommListDedupTableFactory>;
using OursLists20 =
    OursExtended<ExtCommIp6List, extCommIp6DedupTableFactory, extCommIp6ListDedupTableFactory>;

}  // namespace bench

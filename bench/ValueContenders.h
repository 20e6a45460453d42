// The contenders over single extended communities of 8 and of 20 octets.
#pragma once

#include "Contenders.h"
#include "community/ZoBgpCommunityDedupTable.h"
#include "ip6/ExtCommIp6DedupTable.h"
#include "parse/BgpParseExtComm.h"

namespace bench {

using namespace Routing::Bgp;

template <>
struct PayloadOf<U64> {
  static U64 make(Octets octets) { return Zonet::loadNetworkOrder<U64>(octets.data()); }
};
using Twenty = std::array<U8, 20>;
template <>
struct PayloadOf<Twenty> {
  static Twenty make(Octets octets) {
    Twenty payload;
    std::copy_n(octets.begin(), payload.size(), payload.begin());
    return payload;
  }
};
inline std::size_t hash_value(const Twenty& octets) {
  return boost::hash_range(octets.begin(), octets.end());
}

inline ExtCommContent eightOf(Octets octets) { return ExtCommContent(payloadOf<U64>(octets)); }
inline ExtCommIp6Content twentyOf(Octets octets) {
  Zonet::Ip6Addr::Octets address;
  std::copy_n(octets.begin() + 2, address.size(), address.begin());
  return {octets[0], octets[1], Zonet::Ip6Addr(address),
          Zonet::loadNetworkOrder<U16>(octets.data() + 18)};
}

inline const BgpParseExtendedCommunityRule::Ptr& parser() {
  static const auto container = bgpParseExtCommContainerSmFactory();
  return container->extCommParser();
}

template <auto factory, auto contentOf, class Value>
class OursValues {
 public:
  static constexpr const char* name = Ours::name;
  using Held = Mox::Ptr<const Value>;
  void intern(Octets octets, std::vector<Held>& paths) {
    paths.push_back(table_->dedupContent(contentOf(octets)));
  }

 private:
  decltype(factory(nullptr)) table_ = factory(parser());
};
using OursEight = OursValues<extCommDedupTableFactory, eightOf, ExtComm>;
using OursTwenty = OursValues<extCommIp6DedupTableFactory, twentyOf, ExtCommIp6>;
template <class Payload>
using Unlocked = Flyweight<boost::flyweights::no_locking, Payload>;
template <class Payload>
using Locked = Flyweight<boost::flyweights::simple_locking, Payload>;

}  // namespace bench

#include "attr/BgpPathAttributeEnums.h"

#include <gtest/gtest.h>

#include <sstream>

#include "Mox/Exception.h"

namespace Routing::Bgp {
namespace {

/// The members up to 300 as "number=name ".
template <class E>
std::string members() {
  std::ostringstream all;
  for (U32 value = 0; value <= 300; ++value)
    if (bgpIsValidEnumMember(E(value))) all << value << "=" << E(value) << " ";
  return all.str();
}

TEST(PathAttributeEnums, HaveExactlyTheseMembers) {
  EXPECT_EQ(members<BgpPathAttrType>(),
            "0=invalidPathAttr 1=origin 2=asPath 3=nextHop 4=multiExitDisc 5=localPref "
            "6=atomicAggregate 7=aggregator 8=community 9=originatorId 10=clusterList "
            "12=advertiser 13=rcidPath 14=mpReachNlri 15=mpUnreachNlri 16=extCommunity 17=as4Path "
            "18=as4Aggregator 22=pmsiTunnel 23=tunnelEncapsulation 25=extCommunityIp6 "
            "32=largeCommunity 40=prefixSid 255=reservedForDevelopment ");
  EXPECT_EQ(members<BgpPathAttrFlag>(),
            "16=extLen 32=partial 64=transitive 128=opt 192=optionalTransitive "
            "224=optionalTransitivePartial ");
  EXPECT_EQ(members<PrefixSidTlvType>(),
            "0=invalidTlv 1=labelIndexTlv 2=ipv6SidTlv 3=originatorSrgbTlv ");
}

TEST(PathAttributeEnums, HaveTheirShowStrings) {
  std::string all;
  for (U32 code = 0; code <= 255; ++code)
    if (bgpIsValidEnumMember(BgpPathAttrType(code)))
      all += bgpPathAttrTypeShowString(BgpPathAttrType(code)) + std::string(", ");
  EXPECT_EQ(
      all,
      "Invalid Path Attribute, Origin, AS Path, Nexthop, MED, Local Preference, Atomic "
      "Aggregator, Aggregator, Community, Originator ID, Cluster List, Advertiser, RCID Path, "
      "MP Reach NLRI, MP Unreach NLRI, Extended Community, AS4 Path, AS4 Aggregator, PMSI "
      "Tunnel, Tunnel Encapsulation, IPv6 Address Specific Extended Community, Large "
      "Community, BGP Prefix-SID, Reserved for Development, ");
  for (U32 code : {11u, 256u})
    EXPECT_DEATH(bgpPathAttrTypeShowString(BgpPathAttrType(code)),
                 "BgpPathAttributeEnums.*: Unknown BgpPathAttrType\n");
}

TEST(PathAttributeEnums, AreFoundByNumberByNameAndByReflection) {
  EXPECT_EQ(BgpPathAttrTypeInstance(16), BgpPathAttrTypeInstance("extCommunity"));
  EXPECT_EQ(BgpPathAttrFlagInstance(0xC0), BgpPathAttrFlag::opt | BgpPathAttrFlag::transitive);
  EXPECT_EQ(PrefixSidTlvTypeInstance(3), PrefixSidTlvTypeInstance("originatorSrgbTlv"));
  EXPECT_THROW(BgpPathAttrTypeInstance(11), Mox::RangeException);
  for (const char* name : {"BgpPathAttrType", "BgpPathAttrFlag", "PrefixSidTlvType"})
    EXPECT_TRUE(Mox::Type::find(std::string("Routing::Bgp::") + name)) << name;
}

}  // namespace
}  // namespace Routing::Bgp

#include "community/ZoBgpCommunityEnums.h"

#include "community/ZoBgpCommunitySubtypes.h"

namespace Routing::Bgp {
namespace {

const Mox::Type types[] = {Mox::enumType<BgpExtCommPktType>(),
                           Mox::enumType<BgpExtCommIp6PktType>(),
                           Mox::enumType<ExtCommClassification>(),
                           Mox::enumType<BgpExtCommPktSubtypeTransTwoOctetAs>(),
                           Mox::enumType<BgpExtCommPktSubtypeTransIpv4Address>(),
                           Mox::enumType<BgpExtCommPktSubtypeTransFourOctetAs>(),
                           Mox::enumType<BgpExtCommPktSubtypeTransOpaque>(),
                           Mox::enumType<BgpExtCommPktSubtypeEvpn>(),
                           Mox::enumType<BgpExtCommPktSubtypeTransFlowspecRedirectNexthop>(),
                           Mox::enumType<BgpExtCommPktSubtypeTransGeneric>(),
                           Mox::enumType<BgpExtCommPktSubtypeTransGenericPart2>(),
                           Mox::enumType<BgpExtCommPktSubtypeTransGenericPart3>(),
                           Mox::enumType<BgpExtCommPktSubtypeNonTransTwoOctetAs>(),
                           Mox::enumType<BgpExtCommPktSubtypeNonTransIpv4Address>(),
                           Mox::enumType<BgpExtCommPktSubtypeNonTransFourOctetAs>(),
                           Mox::enumType<BgpExtCommPktSubtypeNonTransOpaque>(),
                           Mox::enumType<BgpExtCommIp6PktSubtypeTransIpv6Address>(),
                           Mox::enumType<BgpExtCommIp6PktSubtypeNonTransIpv6Address>()};

}  // namespace
}  // namespace Routing::Bgp

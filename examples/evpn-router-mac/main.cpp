// Parses extended communities with a plug-in of its own:
//
//   evpn-router-mac 0603005056000001 0002FDE800000064
#include <cstdlib>
#include <iostream>

#include "EvpnRouterMac.h"

using namespace Routing::Bgp;

static void print(const BgpParseExtendedCommunityRule& parser, const ExtCommContent& content) {
  const auto comm = parser.parseExtendedCommunity(content);
  const ExtComm::StrepFormat format(strepFormatClassification | strepFormatUI);
  std::cout << content << ' ' << comm->fwkType().name() << ' '
            << stringValue(comm->classification()) << ' ' << comm->toStrepForPolicy(format) << ' '
            << *comm;
  if (comm->fwkType().isA(example::EvpnRouterMac::type))
    std::cout << " mac=" << Mox::Type::read(*comm, "mac");
  std::cout << '\n';
}

int main(int count, char** arguments) {
  const auto container = bgpParseExtCommContainerSmFactory();
  container->extCommParserSmsEnq(
      Mox::makeNew<example::EvpnRouterMacSm>(container->parseExtCommRuleCollections()));

  for (int i = 1; i < count; ++i)
    print(*container->extCommParser(), ExtCommContent(std::strtoull(arguments[i], nullptr, 16)));
  return 0;
}

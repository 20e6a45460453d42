// The pack of kinds as an agent uses it, on installed headers.
#include "kinds/ZoBgpKindPack.h"

#include "kinds/ZoBgpCommunityReader.h"

using namespace Routing::Bgp;

int main() {
  const auto container = bgpParseExtCommContainerSmFactory();
  installKinds(*container);
  const ExtCommContent content(0x0600010000000005);
  const auto comm = container->extCommParser()->parseExtendedCommunity(content);
  const auto read = readCommunity("mac-mobility:S:5");
  return read && *read == AnyCommunity(content) && canonicalText(content) == "mac-mobility:S:5" &&
                 comm->classification() == extCommClassificationEvpn
             ? 0
             : 1;
}

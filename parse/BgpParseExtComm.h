// The parser of extended communities: from the raw content to an object of the class that knows
// its meaning, with rules that plug-ins extend.
//
//   auto container = bgpParseExtCommContainerSmFactory();
//   auto comm = container->extCommParser()->parseExtendedCommunity(
//       ExtCommContent(0x0002FDE800000064));
//   comm->toStrep()   // "<RouteTarget2ByteASN 65000:100 0x0002fde800000064>"
//
//   BgpParseExtCommKinds.h        the kinds of rule, and the names of what belongs to each
//   BgpParseExtCommKeys.h         the names under which rules are registered
//   BgpParseExtCommCollections.h  the registry, and observers of it
//   BgpParseExtCommRules.h        what rules are, type rules, bases of sub-rules
//   BgpParseExtCommTopRule.h      the parser
//   BgpParseExtCommPlugin.h       what plug-ins are made of
//   BgpParseExtCommContainer.h    everything together
//   BgpParseExtCommCache.h        texts of show commands
//
// Each plug-in of the library has a header of its own, named after what it parses.
#pragma once

#include "parse/BgpParseExtCommContainer.h"

// The parser of extended communities: it makes an object of a raw content, of the class that knows
// the content's meaning. Its rules are extended by plug-ins.
//
//   auto container = bgpParseExtCommContainerSmFactory();
//   auto comm = container->extCommParser()->parseExtendedCommunity(
//       ExtCommContent(0x0002FDE800000064));
//   comm->toStrep()   // "<RouteTarget2ByteASN 65000:100 0x0002fde800000064>"
//
//   BgpParseExtCommContainer.h    everything together: begin here
//   BgpParseExtCommTopRule.h      the parser
//   BgpParseExtCommRules.h        type rules, and bases of rules
//   BgpParseExtCommOpenType.h     rules of types that the library has none for
//   BgpParseExtCommPlugin.h       plug-ins, and how to write one
//   BgpParseExtCommCollections.h  the registry of rules, and observers of it
//   BgpParseExtCommKeys.h         the keys under which rules are registered
//   BgpParseExtCommKinds.h        the kinds of rule, and the names of the classes of each
//   BgpParseExtCommCache.h        texts of show commands
//
// Each plug-in of the library has a header of its own, named after the meaning that it parses.
#pragma once

#include "parse/BgpParseExtCommContainer.h"

// Texts of communities as the lists of a path, interned.
//
//   const auto read = readCommunityLists("RT:1:2, no-export 65000:100", tables);
//   if (!read) return log(read.error.text());
//   read.value->list<CommList>()->toStrep();    // "65000:100 no-export"
//   *read == path                               // whether a path carries exactly these
//
// Threads: those of the tables.
#pragma once

#include "kinds/ZoBgpCommunityReader.h"
#include "path/ZoBgpCommunityTables.h"

namespace Routing::Bgp {

/// Reads as `readCommunities` does, and makes the lists that a path with these communities has; a
/// list type that none belongs to has none. An error of the whole text when an attribute cannot
/// carry them: more than its length can say, two different link bandwidths.
ParsedCommunity<PathCommunities> readCommunityLists(std::string_view text,
                                                    const CommunityTables& tables,
                                                    const KindTable& kinds = KindTable::builtIn());

}  // namespace Routing::Bgp

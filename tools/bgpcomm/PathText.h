// The texts of a path that lines show.
#pragma once

#include <string>

#include "PathFilter.h"

namespace bgpcomm {

/// `192.0.2.1 AS64600`.
std::string peerText(const Peer& peer);
/// `AS64700`; `-` for a path without an origin.
std::string originText(const Path& path);
/// `10.0.0.0/8 10.1.0.0/16#7`, those that are asked for, with their identifiers of ADD-PATH; `?`
/// behind them where one does not fit; `-` when there are none.
std::string prefixesText(PrefixReader prefixes, const PathFilter& filter);

}  // namespace bgpcomm

// How many rules a registry names, of all kinds.
#pragma once

#include "parse/BgpParseExtComm.h"

inline std::size_t registered(const Routing::Bgp::BgpParseExtCommRuleCollections::Ptr& registry) {
  std::size_t rules = 0;
#define ZOBGP_KIND(Kind, ...) rules += registry->instances<Routing::Bgp::kind::Kind>().size();
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"
  return rules;
}

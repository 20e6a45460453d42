// The value of BGP data collection communities (RFC 4384): where a route was learned.
//
//   `AS:NP`         a region and a country
//   `AS:SAT:NP`     over a satellite link
//   `customer`      a category of routes
//   `26471`         none of these
#pragma once

#include "community/ZoBgpCommunityText.h"
#include "community/ZoBgpCommunityTextParts.h"

namespace Routing::Bgp {

void writeDataCollection(CommText& text, U16 collection);
/// Takes `count` parts and gives the value; else nothing, and the parts keep the error.
/// REQUIRES: 1 to 3 parts, not more than are left.
std::optional<U16> readDataCollection(CommunityTextParts& parts, std::size_t count);

}  // namespace Routing::Bgp

// BGP communities of eight octets: their vocabulary, their values and what these mean.
//
//   ZoBgpCommunityEnums.h        types and classifications
//   ZoBgpCommunitySubtypes.h     subtypes, one enumeration per type
//   ZoBgpCommunityContent.h      the raw octets
//   ZoBgpCommunityStrepFormat.h  what policy text shows
//   ZoBgpCommunityFamilyValue.h  what the 8-octet and the 20-octet family share
//   ZoBgpCommunityValue.h        the interned object
//   ZoBgpCommunityAsNumber.h     ... of an AS number
//   ZoBgpCommunityIpv4Address.h  ... of an IPv4 address
//   ZoBgpCommunityTyped.h        ... with a meaning: route target, color and so on
//   ZoBgpCommunityDedupTable.h   the table that keeps one object per content
//   ZoBgpCommunityWellKnown.h    the well-known standard communities
#pragma once

#include "community/ZoBgpCommunityDedupTable.h"
#include "community/ZoBgpCommunityTyped.h"
#include "community/ZoBgpCommunityWellKnown.h"

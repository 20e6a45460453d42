// Lists of communities: what one path carries, shared by all that carry the same.
//
//   ZoBgpCommunityListStandard.h       values of 4 octets (RFC 1997)
//   ZoBgpCommunityListLarge.h          values of 12 octets (RFC 8092)
//   ZoBgpCommunityListTables.h         the intern tables of both
//   ZoBgpCommunityListExtended.h       values of 8 octets (RFC 4360), and their groups
//   ZoBgpCommunityListExtendedTable.h  the intern tables of these
//   ZoBgpCommunityListRouteTargets.h   observers of the sets of route targets in use
//   ZoBgpCommunityListSnapshotTypes.h  mutable copies of lists
//
// Lists of the 20-octet family (RFC 5701) are in ip6/ExtCommIp6List.h. Values of plain numbers lie
// in their list; extended communities are interned objects that lists share.
#pragma once

#include "community-list/ZoBgpCommunityListExtended.h"
#include "community-list/ZoBgpCommunityListExtendedTable.h"
#include "community-list/ZoBgpCommunityListLarge.h"
#include "community-list/ZoBgpCommunityListRouteTargets.h"
#include "community-list/ZoBgpCommunityListSnapshotTypes.h"
#include "community-list/ZoBgpCommunityListStandard.h"
#include "community-list/ZoBgpCommunityListTables.h"

// Lists of communities: what one path carries, shared by all that carry the same.
#pragma once

#include "community-list/ZoBgpCommunityListExtended.h"
#include "community-list/ZoBgpCommunityListExtendedTable.h"
#include "community-list/ZoBgpCommunityListLarge.h"
#include "community-list/ZoBgpCommunityListRouteTargets.h"
#include "community-list/ZoBgpCommunityListSnapshotTypes.h"
#include "community-list/ZoBgpCommunityListStandard.h"
#include "community-list/ZoBgpCommunityListTables.h"

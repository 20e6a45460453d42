// All bodies of extended lists and their groups. REQUIRES: only the sources that define a family
// include this; everybody else links what these instantiate.
#pragma once

#include "community-list/internal/ZoBgpCommunityListBuildingBodies.h"
#include "community-list/internal/ZoBgpCommunityListGroupBodies.h"
#include "community-list/internal/ZoBgpCommunityListReadingBodies.h"
#include "community-list/internal/ZoBgpCommunityListReflection.h"
#include "community-list/internal/ZoBgpCommunityListStoreBodies.h"
#include "community-list/internal/ZoBgpCommunityListTextBodies.h"
#include "community-list/internal/ZoBgpCommunityListWireBodies.h"

// Shared by the fuzz targets.
#pragma once

#include <cstdlib>

#include "path/ZoBgpCommunityTables.h"

using namespace Routing::Bgp;
using namespace Mox::Words;

inline void require(bool condition) {
  if (!condition) std::abort();
}

// The names of the MRT reader, which the tool uses as its own.
#pragma once

#include "mrt/Octets.h"

namespace bgpcomm {
using namespace Mox::Words;
using namespace Routing::Mrt;
}  // namespace bgpcomm

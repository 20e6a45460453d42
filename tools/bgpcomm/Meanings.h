// Communities in words, for who has not met them.
#pragma once

#include <string>

#include "HeldLists.h"

namespace bgpcomm {

/// The description that is given; of a well-known community what it asks for; or else the name of
/// its kind and where that is defined, or who defines the value.
std::string meaningOf(const ValueUse& value);

}  // namespace bgpcomm

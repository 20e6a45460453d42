// The rows of the built-in table.
#pragma once

#include "kinds/ZoBgpKind.h"

namespace Routing::Bgp {

/// Every assigned kind of extended communities, checked by the compiler.
std::span<const Kind> assignedKinds();

}  // namespace Routing::Bgp

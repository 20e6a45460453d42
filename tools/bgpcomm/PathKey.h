// The keys of paths, which the tool uses as its own.
#pragma once

#include "ReaderNames.h"
#include "mrt/PathKey.h"

// The version of these libraries. The build takes it from here.
#pragma once

#define ZOBGP_VERSION_MAJOR 0
#define ZOBGP_VERSION_MINOR 2
#define ZOBGP_VERSION_PATCH 0

/// One number, for `#if ZOBGP_VERSION >= 200`.
#define ZOBGP_VERSION \
  (ZOBGP_VERSION_MAJOR * 10000 + ZOBGP_VERSION_MINOR * 100 + ZOBGP_VERSION_PATCH)

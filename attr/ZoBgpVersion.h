// The version of these libraries. The build takes it from here.
#pragma once

/// Rises with changes that break programs; while it is 0, the minor number does.
#define ZOBGP_VERSION_MAJOR 0
/// Rises with what is new.
#define ZOBGP_VERSION_MINOR 2
/// Rises with faults that are mended.
#define ZOBGP_VERSION_PATCH 0

/// One number, for `#if ZOBGP_VERSION >= 200`.
#define ZOBGP_VERSION \
  (ZOBGP_VERSION_MAJOR * 10000 + ZOBGP_VERSION_MINOR * 100 + ZOBGP_VERSION_PATCH)

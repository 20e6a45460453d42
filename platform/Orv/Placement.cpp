#include "Orv/Placement.h"

#include <chrono>
#include <exception>
#include <random>

namespace Orv {
namespace {

U64 drawSeed() {
  try {
    std::random_device random;
    return U64(random()) << 32 | random();
  } catch (const std::exception&) {  // no source of randomness: where and when we were loaded
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    return foldedProduct(U64(now), U64(reinterpret_cast<std::uintptr_t>(&drawSeed)) | 1);
  }
}

}  // namespace

U64 placementSeed() {
  static const U64 seed = drawSeed();
  return seed;
}

}  // namespace Orv

#include "Mox/Assert.h"

#include <cstdio>
#include <cstdlib>

namespace Mox {

void assertionFailed(const char* file, int line, const char* signature, const char* text) noexcept {
  std::fprintf(stderr, "%s:%d: %s: %s\n", file, line, signature, text);
  std::abort();
}

}  // namespace Mox

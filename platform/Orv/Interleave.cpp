#include "Orv/Interleave.h"

#ifdef ORV_INTERLEAVE
#include <atomic>
#include <thread>

#include "Mox/Types.h"

namespace Orv {

void interleave() {
  static std::atomic<Mox::U32> threads{0};
  static thread_local Mox::U32 state = 2463534242u * (2 * ++threads + 1);
  state ^= state << 13;
  state ^= state >> 17;
  state ^= state << 5;
  if (state % 16 == 0) std::this_thread::yield();
}

}  // namespace Orv
#endif

// Where the interning protocol may be interrupted. In builds with ORV_INTERLEAVE every such place
// gives way to another thread now and then, so that tests meet the rare interleavings; in all
// others it is nothing.
#pragma once

namespace Orv {

#ifdef ORV_INTERLEAVE
void interleave();
#else
inline void interleave() {}
#endif

}  // namespace Orv

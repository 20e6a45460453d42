// The points at which a thread that interns or lets go may be interrupted by another. In builds
// with ORV_INTERLEAVE (those of the sanitizers) each gives way now and then, so that tests meet the
// rare interleavings. In all other builds it is nothing.
#pragma once

namespace Orv {

#ifdef ORV_INTERLEAVE
void interleave();
#else
/// Nothing, unless this is a build that gives way.
inline void interleave() {}
#endif

}  // namespace Orv

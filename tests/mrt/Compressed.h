// Octets compressed by the formats' own libraries.
#pragma once

#include <bzlib.h>

#include "TestOctets.h"

namespace Routing::Mrt {

inline Bytes bzip2(const Bytes& plain) {
  Bytes out(plain.size() + plain.size() / 50 + 600, '\0');
  unsigned size = unsigned(out.size());
  EXPECT_EQ(BZ2_bzBuffToBuffCompress(out.data(), &size, const_cast<char*>(plain.data()),
                                     unsigned(plain.size()), 9, 0, 0),
            BZ_OK);
  out.resize(size);
  return out;
}

}  // namespace Routing::Mrt

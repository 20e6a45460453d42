// The words that everything else is written with: integers of fixed width and the string.
//
// `U64` is `unsigned long long` on every word size, so that one signature and one printf
// conversion ("%llu") serve 32-bit and 64-bit builds alike.
#pragma once

#if __cplusplus < 202002L
#error "ZoBgpCommunity needs C++20 or later: -std=c++20"
#endif

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Mox {
inline namespace Words {
using U8 = std::uint8_t;
using U16 = std::uint16_t;
using U32 = std::uint32_t;
using U64 = unsigned long long;
}  // namespace Words
using String = std::string;
static_assert(sizeof(U64) == 8);
}  // namespace Mox

// Every layer above writes the words unqualified.
namespace MoxStash {
using namespace Mox::Words;
}
namespace Orv {
using namespace Mox::Words;
}
namespace Zonet {
using namespace Mox::Words;
}
namespace ZoFmt {
using namespace Mox::Words;
}
namespace Routing {
using namespace Mox::Words;
}

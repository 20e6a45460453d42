#include "Compressed.h"
#include "mrt/Input.h"
#include "mrt/internal/Bzip2Pieces.h"

namespace Routing::Mrt {
namespace {

/// None equal to the one before: runs would be stored as counts, which are further octets.
Bytes randomOf(const std::vector<U8>& octets, std::size_t size) {
  Bytes bytes(size, '\0');
  U32 random = 1;
  std::size_t at = 0;
  for (char& octet : bytes) {
    random = random * 1664525 + 1013904223;
    at = (at + 1 + (random >> 16) % (octets.size() - 1)) % octets.size();
    octet = char(octets[at]);
  }
  return bytes;
}

/// A block says which octets it uses, by 16 bits for each 16 of them. The bits of octets 0 to 47
/// make up a mark here.
Bytes usingTheBitsOf(U64 mark) {
  std::vector<U8> used;
  for (unsigned octet = 0; octet < 48; ++octet)
    if (mark >> (47 - octet) & 1) used.push_back(U8(octet));
  const Bytes plain = randomOf(used, 200'000);
  const Bytes data = bzip2(plain);
  // Behind header 32, mark 48, check sum 32, flag 1, origin 24, which sixteens there are 16.
  const Bzip2Piece piece{0, 8 * data.size(), {data.begin(), data.end()}};
  EXPECT_EQ(piece.bits(153, 48), mark);
  return plain;
}

Bytes flipped(Bytes data, std::size_t octet) {
  data[octet] ^= 0x10;
  return data;
}

TEST(Bzip2, DeliversBlocksUpToAFault) {
  std::vector<U8> all(256);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = U8(i);
  const Bytes plain = randomOf(all, 2'000'000), data = bzip2(plain);
  const Bytes zeros(5'000'000, '\0');
  const Bytes blockMark = usingTheBitsOf(0x314159265359);
  const Bytes endMark = usingTheBitsOf(0x177245385090);
  const Bytes block = plain.substr(0, 900'000 - 19);  // as much as a compressor puts into one
  const std::string early = "bzip2 data end too early", damaged = "bzip2 data are damaged",
                    more = "bzip2 data are followed by something else";
  const struct {
    const char* what;
    Bytes data, plain;
    std::string failure;
  } cases[] = {
      {"empty", bzip2(""), "", ""},
      {"three blocks", data, plain, ""},
      {"a block of more than a part", bzip2(zeros), zeros, ""},
      {"a mark that is none", bzip2(blockMark), blockMark, ""},
      {"an end that is none", bzip2(endMark), endMark, ""},
      {"twice, and zeros", data + bzip2(blockMark) + Bytes(600, '\0'), plain + blockMark, ""},
      {"something behind", data + "x", plain, more},
      {"a header behind", data + "BZh9", plain, more},
      {"no end", data.substr(0, data.size() - 10), plain, early},
      {"half an end", data.substr(0, data.size() - 3), plain, early},
      {"half a block", data.substr(0, data.size() / 2), block, early},
      {"the sum of a block", flipped(data, 10), "", damaged},
      {"values", flipped(data, data.size() / 2), block, damaged},
      {"the sum at the end", flipped(data, data.size() - 3), plain, damaged},
  };
  for (const auto& c : cases) {
    const TemporaryFile file(c.data);
    Input input(file.name());
    const Octets read = input.ahead(c.plain.size() + 1);
    EXPECT_TRUE(asText(read) == c.plain) << c.what << ": " << read.size();
    EXPECT_EQ(input.failure() ? input.failure()->text : "", c.failure) << c.what;
  }
}

}  // namespace
}  // namespace Routing::Mrt

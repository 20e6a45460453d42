#include "mrt/Input.h"

#include <lzma.h>
#include <zlib.h>
#include <zstd.h>

#include <random>

#include "Compressed.h"

namespace Routing::Mrt {
namespace {

/// Octets that are told apart by their place, and that do not compress to nothing.
Bytes pattern(std::size_t size) {
  Bytes bytes(size, '\0');
  std::minstd_rand random(1);
  for (char& octet : bytes) octet = char(random() >> 8);
  return bytes;
}

struct Format {
  const char* name;
  Bytes (*compress)(const Bytes& plain);
};

Bytes asItIs(const Bytes& plain) { return plain; }

Bytes gzip(const Bytes& plain) {
  Bytes out(plain.size() + plain.size() / 50 + 600, '\0');
  z_stream stream{};
  EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, MAX_WBITS + 16, 9, Z_DEFAULT_STRATEGY), Z_OK);
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(plain.data()));
  stream.avail_in = uInt(plain.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = uInt(out.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

Bytes xz(const Bytes& plain) {
  Bytes out(lzma_stream_buffer_bound(plain.size()), '\0');
  std::size_t size = 0;
  EXPECT_EQ(lzma_easy_buffer_encode(6, LZMA_CHECK_CRC64, nullptr, view(plain).data(), plain.size(),
                                    reinterpret_cast<U8*>(out.data()), &size, out.size()),
            LZMA_OK);
  out.resize(size);
  return out;
}

Bytes zstd(const Bytes& plain) {
  Bytes out(ZSTD_compressBound(plain.size()), '\0');
  const std::unique_ptr<ZSTD_CCtx, std::size_t (*)(ZSTD_CCtx*)> made(ZSTD_createCCtx(),
                                                                     ZSTD_freeCCtx);
  ZSTD_CCtx_setParameter(made.get(), ZSTD_c_checksumFlag, 1);
  out.resize(ZSTD_compress2(made.get(), out.data(), out.size(), plain.data(), plain.size()));
  return out;
}

constexpr Format formats[] = {
    {"plain", asItIs}, {"gzip", gzip}, {"bzip2", bzip2}, {"xz", xz}, {"zstd", zstd}};
constexpr std::span compressedFormats = std::span(formats).subspan(1);

/// Everything up to the end or the fault, in pieces of many sizes.
Bytes readAll(Input& input) {
  const std::size_t sizes[] = {1, 12, 4096, 700000, 3};
  Bytes all;
  for (std::size_t i = 0;; ++i) {
    const std::size_t size = sizes[i % std::size(sizes)];
    const Octets piece = input.ahead(size);
    EXPECT_EQ(input.offset(), all.size());
    all.append(reinterpret_cast<const char*>(piece.data()), std::min(piece.size(), size));
    input.take(std::min(piece.size(), size));
    if (piece.size() < size) return all;
  }
}

TEST(Input, DeliversWhatWasCompressedUpToAFault) {
  const Bytes plain = pattern(3'000'000);
  for (const Format& format : formats) {
    SCOPED_TRACE(format.name);
    const Bytes stored = format.compress(plain);
    const TemporaryFile file(stored), half(stored.substr(0, stored.size() / 2));
    Input whole(file.name()), cut(half.name()), unread(file.name());
    EXPECT_TRUE(readAll(whole) == plain);
    EXPECT_FALSE(whole.failure());
    EXPECT_EQ(whole.position(), whole.size());

    FILE* const pipe = ::popen(("dd bs=7777 status=none if=" + file.name()).c_str(), "r");
    Input piped("/dev/fd/" + std::to_string(::fileno(pipe)));
    EXPECT_TRUE(readAll(piped) == plain);
    EXPECT_EQ(piped.size(), 0u);
    ::pclose(pipe);

    const Bytes read = readAll(cut);
    EXPECT_TRUE(plain.starts_with(read));
    EXPECT_EQ(cut.failure() && cut.failure()->compression, format.compress != asItIs);
    // bzip2 gives whole blocks of 900 k only.
    EXPECT_GT(read.size(), plain.size() / 2 - (format.compress == bzip2 ? 1'100'000 : 140'000));
  }
}

/// The octets read of a file, and why no more.
std::pair<Bytes, std::string> readFile(const Bytes& stored) {
  const TemporaryFile file(stored);
  Input input(file.name());
  const Bytes all = readAll(input);
  return {all, input.failure() ? input.failure()->text : ""};
}

TEST(Input, KeepsWhatStandsBeforeAFault) {
  const Bytes first = pattern(50'000), second = pattern(70'000);
  for (const Format& format : compressedFormats) {
    const std::string name = format.name;
    const Bytes one = format.compress(first), both = one + format.compress(second);
    Bytes damaged = both;
    for (std::size_t at = one.size() + 1000; at < one.size() + 1400; ++at) damaged[at] ^= 0x55;
    const struct {
      const char* what;
      Bytes stored, plain;
      std::string failure;
    } cases[] = {
        {"two", both, first + second, ""},
        {"zeros behind", both + Bytes(700'001, '\0'), first + second, ""},
        {"something behind", both + Bytes(600, '\0') + "x", first + second,
         name + " data are followed by something else"},
        {"one that begins", one + format.compress(second).substr(0, 30), first,
         name + " data end too early"},
        {"cut off", both.substr(0, both.size() - 3), first, name + " data end too early"},
        {"damaged", damaged, first, name + " data are damaged"},
        {"no header", one.substr(0, 11), "", name + " data end too early"},
    };
    for (const auto& c : cases) {
      const auto [read, failure] = readFile(c.stored);
      EXPECT_TRUE(read.starts_with(c.plain)) << name << ", " << c.what << ": " << read.size();
      EXPECT_TRUE(failure.starts_with(c.failure) && failure.empty() == c.failure.empty())
          << name << ", " << c.what << ": " << failure;
    }
  }
}

TEST(Input, PassesOverSkippableFramesOfZstd) {
  const Bytes plain = pattern(1000), frame = zstd(plain);
  for (const char* const skipped : {"502a4d18 04000000 61626364", "5f2a4d18 00000000"})
    EXPECT_EQ(readFile(octets(skipped) + frame + octets(skipped) + frame + octets(skipped)),
              std::pair(plain + plain, std::string()))
        << skipped;
}

TEST(Input, UnpacksOneLayer) {
  for (const Format& outer : compressedFormats)
    for (const Format& inner : compressedFormats) {
      const auto [read, failure] = readFile(outer.compress(inner.compress(pattern(1000))));
      EXPECT_EQ(read, "") << outer.name << " of " << inner.name;
      EXPECT_EQ(failure, "compressed data are compressed once more");
    }
}

TEST(Input, LimitsTheMemoryThatDataAskFor) {
  Bytes dictionary = xz("x");
  // In the block's header, behind the 12 octets of the stream's: LZMA2, size 1, dictionary.
  const std::size_t filter = dictionary.find(octets("2101"), 13);
  ASSERT_LT(filter, 30u);
  dictionary[filter + 2] = 40;  // 4 GiB
  const std::size_t size = 4 * std::size_t(dictionary[12]);
  const U32 sum = lzma_crc32(view(dictionary).data() + 12, size, 0);
  for (int i = 0; i < 4; ++i) dictionary[12 + size + i] = char(sum >> 8 * i);
  EXPECT_EQ(readFile(dictionary).second, "xz data would take more than 256 MiB of memory");
  EXPECT_EQ(readFile(octets("fd377a585a00 0014 82c6035b")).second,  // a reserved flag is set
            "xz data need a newer version of the format or a filter not known here");
  const Bytes window = octets("28b52ffd 00 98 010000");  // 512 MiB
  EXPECT_EQ(readFile(window).second, "zstd data would take more than 128 MiB of memory");
}

TEST(Input, TellsFormatsByTheirWholeSignature) {
  // All begin with a time that is also the start of a signature.
  for (const char* const start :
       {"425a6839 0010 0004", "425a6830 3141 5926 5359", "425a683a 3141 5926 5359",
        "5d000080 000d 0002", "1f8b0010", "502a4d18 000d 0002"}) {
    const Bytes plain = octets(start) + pattern(100);
    const TemporaryFile file(plain);
    Input input(file.name());
    EXPECT_EQ(readAll(input), plain) << start;
    EXPECT_FALSE(input.failure()) << start;
  }
}

}  // namespace
}  // namespace Routing::Mrt

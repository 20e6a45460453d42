#include "mrt/Input.h"

#include "TestOctets.h"
#include "mrt/internal/Bzip2Pieces.h"

namespace {

/// The programs that compress to them.
const std::string formats[] = {"gzip", "bzip2", "xz", "zstd"};

Bytes compressed(const std::string& format, const Bytes& plain) {
  const TemporaryFile in(plain), out;
  EXPECT_EQ(std::system((format + " <" + in.name() + " >" + out.name()).c_str()), 0);
  return out.content();
}

/// Octets that do not compress to nothing, of those named or all. None is equal to the one before:
/// bzip2 would store runs as counts, which are further octets.
Bytes pattern(std::size_t size, const Bytes& used = "") {
  const std::size_t count = used.empty() ? 256 : used.size();
  Bytes bytes(size, '\0');
  U32 random = 1;
  std::size_t at = 0;
  for (char& octet : bytes) {
    random = random * 1664525 + 1013904223;
    at = (at + 1 + (random >> 16) % (count - 1)) % count;
    octet = used.empty() ? char(at) : used[at];
  }
  return bytes;
}

/// Everything up to the end or the fault, in pieces of many sizes.
Bytes readAll(Input& input) {
  const std::size_t sizes[] = {1, 12, 4096, 700000, 3};
  Bytes all;
  for (std::size_t i = 0;; ++i) {
    const std::size_t size = sizes[i % std::size(sizes)];
    const Octets piece = input.ahead(size);
    EXPECT_EQ(input.offset(), all.size());
    all.append(asText(piece.first(std::min(piece.size(), size))));
    input.take(std::min(piece.size(), size));
    if (piece.size() < size) return all;
  }
}

using Cases = std::initializer_list<std::array<Bytes, 4>>;

/// Files, with octets that they begin with and a text that the failure does; where nothing fails,
/// or if `exact`, no further octets.
void expectRead(Cases cases, bool exact = false) {
  for (const auto& [what, stored, plain, failure] : cases) {
    SCOPED_TRACE(what);
    const TemporaryFile file(stored);
    Input input(file.name());
    const Bytes read = readAll(input);
    const std::string text = input.failure() ? input.failure()->text : "";
    const bool whole = exact || failure.empty();
    EXPECT_TRUE(whole ? read == plain : read.starts_with(plain)) << read.size();
    EXPECT_TRUE(text.starts_with(failure) && text.empty() == failure.empty()) << text;
  }
}
void expectExactly(Cases cases) { expectRead(cases, true); }

TEST(Input, DeliversWhatWasCompressedUpToAFault) {
  const Bytes plain = pattern(3'000'000);
  for (const std::string format : {"cat", "gzip", "bzip2", "xz", "zstd"}) {
    SCOPED_TRACE(format);
    const Bytes stored = compressed(format, plain);
    const TemporaryFile file(stored), half(stored.substr(0, stored.size() / 2));
    Input whole(file.name()), cut(half.name()), unread(file.name());
    EXPECT_TRUE(readAll(whole) == plain);
    EXPECT_FALSE(whole.failure());
    EXPECT_EQ(whole.position(), whole.size());

    // At first an octet less than the longest signature.
    const Bytes copy = "{ dd bs=9 count=1; sleep 0.05; dd bs=7777; } 2>/dev/null <" + file.name();
    FILE* const pipe = ::popen(copy.c_str(), "r");
    Input piped("/dev/fd/" + std::to_string(::fileno(pipe)));
    EXPECT_TRUE(readAll(piped) == plain);
    EXPECT_EQ(piped.size(), 0u);
    ::pclose(pipe);

    const Bytes read = readAll(cut);
    EXPECT_TRUE(plain.starts_with(read));
    EXPECT_EQ(cut.failure() && cut.failure()->compression, format != "cat");
    // bzip2 gives whole blocks of 900 k only.
    EXPECT_GT(read.size(), plain.size() / 2 - (format == "bzip2" ? 1'100'000 : 140'000));
  }
}

TEST(Input, KeepsWhatStandsBeforeAFault) {
  const Bytes first = pattern(50'000), second = pattern(70'000);
  for (const std::string& format : formats) {
    SCOPED_TRACE(format);
    const Bytes one = compressed(format, first), next = compressed(format, second);
    const Bytes both = one + next;
    Bytes damaged = both;
    for (std::size_t at = one.size() + 1000; at < one.size() + 1400; ++at) damaged[at] ^= 0x55;
    const std::string early = format + " data end too early";
    expectRead({
        // clang-format off
        {"two", both, first + second}, {"zeros behind", both + Bytes(700'001, '\0'), first + second},
        {"something behind", both + Bytes(600, '\0') + "x", first + second,
         format + " data are followed by something else"},
        {"one that begins", one + next.substr(0, 30), first, early},
        {"cut off", both.substr(0, both.size() - 3), first, early},
        {"damaged", damaged, first, format + " data are damaged"}, {"no header", one.substr(0, 11), "", early},
        // clang-format on
    });
    const Bytes twice = "compressed data are compressed once more";
    for (const std::string& inner : formats)
      expectExactly({{inner, compressed(format, compressed(inner, first)), "", twice}});
  }
}

/// Random octets whose block has this mark in its header: a block says which octets it uses, by 16
/// bits for each 16 of them. The bits of octets 0 to 47 make up a mark here.
Bytes usingTheBitsOf(U64 mark) {
  Bytes used;
  for (unsigned octet = 0; octet < 48; ++octet)
    if (mark >> (47 - octet) & 1) used += char(octet);
  const Bytes plain = pattern(200'000, used), data = compressed("bzip2", plain);
  // Behind header 32, mark 48, check sum 32, flag 1, origin 24, which sixteens there are 16.
  const Bzip2Piece piece{0, 8 * data.size(), {data.begin(), data.end()}};
  EXPECT_EQ(piece.bits(153, 48), mark);
  return plain;
}

TEST(Input, DeliversWholeBlocksOfBzip2) {
  const auto bzip2 = [](const Bytes& plain) { return compressed("bzip2", plain); };
  const Bytes plain = pattern(2'000'000), data = bzip2(plain), zeros(5'000'000, '\0');
  const Bytes blockMark = usingTheBitsOf(0x314159265359);
  const Bytes endMark = usingTheBitsOf(0x177245385090);
  const Bytes block = plain.substr(0, 900'000 - 19);  // as much as a compressor puts into one
  const auto flipped = [&data](std::size_t octet) {
    Bytes other = data;
    other[octet] ^= 0x10;
    return other;
  };
  const std::string early = "bzip2 data end too early", damaged = "bzip2 data are damaged",
                    more = "bzip2 data are followed by something else";
  expectExactly({
      // clang-format off
      {"empty", bzip2(""), ""}, {"three blocks", data, plain}, {"a block of more than a part", bzip2(zeros), zeros},
      {"a mark that is none", bzip2(blockMark), blockMark}, {"an end that is none", bzip2(endMark), endMark},
      {"twice, and zeros", data + bzip2(blockMark) + Bytes(600, '\0'), plain + blockMark},
      {"a header behind", data + "BZh9", plain, more}, {"no end", data.substr(0, data.size() - 10), plain, early},
      {"half an end", data.substr(0, data.size() - 3), plain, early},
      {"far from any mark", data.substr(0, 500) + pattern(5'000'000), "", damaged},
      {"half a block", data.substr(0, data.size() / 2), block, early},
      {"the sum of a block", flipped(10), "", damaged}, {"values", flipped(data.size() / 2), block, damaged},
      {"the sum at the end", flipped(data.size() - 3), plain, damaged},
      // clang-format on
  });
}

TEST(Input, TellsFormatsByTheirWholeSignature) {
  const Bytes plain = pattern(1000), frame = compressed("zstd", plain), block = pattern(512 * 1024);
  const Bytes largeDictionary = octets("fd377a585a00 0004 e6d6b446 0200 2101 28 000000 e6a011b3");
  const Bytes skipped = octets("502a4d18 01010000") + block.substr(0, 257);
  const Bytes none = octets("5f2a4d18 00000000"), two = frame + skipped + frame;
  const Bytes tooMuch = "data would take more than ";
  // A piece that is read at once ends within the last octet of the compressed run.
  const Bytes zeros(512 * 1024 + 100, '\0'), run = compressed("gzip", zeros);
  const Bytes dictionaryOf64MiB = octets(
      "fd377a585a00 0004 e6d6b446 0200 2101 1c 000000 10cf58cc 0100026162630000 2776271a4a09d82c"
      "00011b03 0b2fb910 1fb6f37d 0100000000 04595a");
  // No matter where it is read from, a piece begins with a signature.
  Bytes signatures = "abcd";
  while (signatures.size() < 1'500'000) signatures += frame.substr(0, 4);
  expectExactly({
      // clang-format off
      {"frames to be skipped over", skipped + two + skipped, plain + plain},
      {"empty ones", none + two + none, plain + plain}, {"nothing else", none, ""},
      {"no check sum behind all that is read at once", compressed("zstd --no-check", block), block},
      {"signatures within", signatures, signatures},
      {"good blocks before another", octets("28b52ffd 0058 180000 616263 180000 646566 060000"), "abc",
       "zstd data are damaged"},
      {"the same", octets("1f8b0800000000000003 00 0300 fcff 616263 07"), "abc", "gzip data are damaged: invalid"},
      {"a wrong check sum", octets("1f8b0800000000000003 01 0300 fcff 616263 00000000 03000000"), "",
       "gzip data are damaged: incorrect"},
      {"a run that no check sum follows", run.substr(0, run.size() - 8), zeros, "gzip data end too early"},
      {"a later version", octets("fd377a585a00 0104 a7e7af5f"), "", "xz data need a newer version"},
      {"a dictionary of 64 MiB", dictionaryOf64MiB, "abc"},
      {"a dictionary of 4 GiB", largeDictionary, "", "xz " + tooMuch + "256 MiB of memory"},
      {"a window of 512 MiB", octets("28b52ffd 00 98 010000"), "", "zstd " + tooMuch + "128 MiB of memory"},
      // clang-format on
  });
  // All begin with a time that is also the start of a signature.
  for (const std::string start :
       {"425a6839 0010 0004", "425a6830 3141 5926 5359", "425a683a 3141 5926 5359",
        "5d000080 000d 0002", "1f8b0010", "502a4d18 000d 0002", "602a4d18 0000", "502a4d19 0000"})
    expectExactly({{start, octets(start) + plain, octets(start) + plain}});
}

}  // namespace

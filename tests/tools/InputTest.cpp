#include "tools/bgpcomm/Input.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>

#include <random>
#include <thread>

#include "TestOctets.h"

namespace bgpcomm {
namespace {

/// Octets that are told apart by their place, and that do not compress to nothing.
Bytes pattern(std::size_t size) {
  Bytes bytes(size, '\0');
  std::minstd_rand random(1);
  for (char& octet : bytes) octet = char(random() >> 8);
  return bytes;
}

using Filter = int (*)(archive*);

Bytes compressed(const Bytes& plain, Filter addFilter) {
  Bytes out(plain.size() + 65536, '\0');
  std::size_t used = 0;
  archive* const writer = archive_write_new();
  addFilter(writer);
  archive_write_set_format_raw(writer);
  archive_write_set_bytes_in_last_block(writer, 1);
  archive_write_open_memory(writer, out.data(), out.size(), &used);
  archive_entry* const entry = archive_entry_new();
  archive_entry_set_pathname(entry, "data");
  archive_entry_set_filetype(entry, AE_IFREG);
  archive_write_header(writer, entry);
  archive_write_data(writer, plain.data(), plain.size());
  archive_write_close(writer);
  archive_entry_free(entry);
  archive_write_free(writer);
  out.resize(used);
  return out;
}

const struct {
  const char* name;
  Filter add;
} filters[] = {{"plain", archive_write_add_filter_none},
               {"gzip", archive_write_add_filter_gzip},
               {"bzip2", archive_write_add_filter_bzip2},
               {"xz", archive_write_add_filter_xz},
               {"zstd", archive_write_add_filter_zstd}};

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

TEST(Input, DeliversWhatWasCompressed) {
  const Bytes plain = pattern(3'000'000);
  for (const auto& filter : filters) {
    const TemporaryFile file(compressed(plain, filter.add));
    Input input(file.name());
    EXPECT_TRUE(readAll(input) == plain) << filter.name;
    EXPECT_FALSE(input.failure()) << filter.name;
    EXPECT_EQ(input.position(), input.size()) << filter.name;
  }
}

TEST(Input, DeliversWhatStandsBeforeAFault) {
  const Bytes plain = pattern(3'000'000);
  for (const auto& filter : filters) {
    const Bytes whole = compressed(plain, filter.add);
    const TemporaryFile file(whole.substr(0, whole.size() / 2));
    Input input(file.name());
    const Bytes read = readAll(input);
    EXPECT_TRUE(plain.starts_with(read)) << filter.name;
    const bool isPlain = filter.add == archive_write_add_filter_none;
    EXPECT_EQ(input.failure() && input.failure()->compression, !isPlain) << filter.name;
    // bzip2 gives whole blocks of 900 k only.
    EXPECT_GT(read.size(), plain.size() / 2 - 1'100'000) << filter.name;
  }
}

TEST(Input, TellsFormatsByTheirWholeSignature) {
  // All begin with a time that is also the start of a signature.
  for (const char* const start : {"425a6839 0010 0004", "5d000080 000d 0002", "1f8b0010"}) {
    const Bytes plain = octets(start) + pattern(100);
    const TemporaryFile file(plain);
    Input input(file.name());
    EXPECT_EQ(readAll(input), plain) << start;
    EXPECT_FALSE(input.failure()) << start;
  }
}

TEST(Input, ReadsAPipeOfManySmallWrites) {
  const Bytes plain = pattern(200'000);
  for (const auto& filter : filters) {
    const Bytes sent = compressed(plain, filter.add);
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    std::thread writer([&] {
      for (std::size_t at = 0; at < sent.size(); at += 7777)
        EXPECT_GT(::write(ends[1], sent.data() + at, std::min<std::size_t>(7777, sent.size() - at)),
                  0);
      ::close(ends[1]);
    });
    Input input("/dev/fd/" + std::to_string(ends[0]));
    EXPECT_TRUE(readAll(input) == plain) << filter.name;
    EXPECT_EQ(input.size(), 0u);
    writer.join();
    ::close(ends[0]);
  }
}

TEST(Input, MayBeLeftUnread) {
  const TemporaryFile file(pattern(5'000'000));
  Input input(file.name());
  EXPECT_GE(input.ahead(1).size(), 1u);
}

}  // namespace
}  // namespace bgpcomm

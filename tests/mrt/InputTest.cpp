#include "mrt/Input.h"

#include <archive.h>
#include <archive_entry.h>

#include <random>

#include "TestOctets.h"

namespace Routing::Mrt {
namespace {

/// Octets that are told apart by their place, and that do not compress to nothing.
Bytes pattern(std::size_t size) {
  Bytes bytes(size, '\0');
  std::minstd_rand random(1);
  for (char& octet : bytes) octet = char(random() >> 8);
  return bytes;
}

using Filter = int (*)(archive*);

void writeCompressed(const Bytes& plain, Filter addFilter, const std::string& file) {
  archive* const writer = archive_write_new();
  archive_entry* const entry = archive_entry_new();
  addFilter(writer);
  archive_write_set_format_raw(writer);
  archive_write_open_filename(writer, file.c_str());
  archive_entry_set_filetype(entry, AE_IFREG);
  archive_write_header(writer, entry);
  archive_write_data(writer, plain.data(), plain.size());
  archive_entry_free(entry);
  archive_write_free(writer);
}

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
  const std::pair<const char*, Filter> filters[] = {{"plain", archive_write_add_filter_none},
                                                    {"gzip", archive_write_add_filter_gzip},
                                                    {"bzip2", archive_write_add_filter_bzip2},
                                                    {"xz", archive_write_add_filter_xz},
                                                    {"zstd", archive_write_add_filter_zstd}};
  const Bytes plain = pattern(3'000'000);
  for (const auto& [name, addFilter] : filters) {
    SCOPED_TRACE(name);
    const TemporaryFile file;
    writeCompressed(plain, addFilter, file.name());
    const Bytes stored = file.content();
    const TemporaryFile half(stored.substr(0, stored.size() / 2));
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
    EXPECT_EQ(cut.failure() && cut.failure()->compression, addFilter != filters[0].second);
    // bzip2 gives whole blocks of 900 k only.
    EXPECT_GT(read.size(), plain.size() / 2 - 1'100'000);
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

}  // namespace
}  // namespace Routing::Mrt

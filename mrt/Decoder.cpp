#include "mrt/Decoder.h"

#include <archive.h>

#include <algorithm>
#include <cstring>
#include <system_error>

namespace Routing::Mrt {
namespace {

class Plain final : public Decoder {
 public:
  explicit Plain(Source& source) : source_(source) {}

 private:
  std::size_t decodeSome(std::span<U8> into) override { return source_.read(into); }

  Source& source_;
};

/// xz and zstd. A fault costs what the library had decoded and not yet handed out, less
/// than 128 KiB.
class Archive final : public Decoder {
 public:
  using SupportFilter = int (*)(archive*);

  Archive(Source& source, SupportFilter supportFilter) : source_(source) {
    supportFilter(archive_.get());
    archive_read_support_format_raw(archive_.get());
    archive_read_support_format_empty(archive_.get());
  }

 private:
  struct Free {
    void operator()(archive* opened) const { archive_read_free(opened); }
  };

  std::size_t decodeSome(std::span<U8> into) override {
    if (!opened_) open();
    while (block_.empty() && !ended_) nextBlock();
    const std::size_t size = std::min(into.size(), block_.size());
    std::copy_n(block_.begin(), size, into.begin());
    block_ = block_.subspan(size);
    return size;
  }

  void open() {
    opened_ = true;
    check(archive_read_open(archive_.get(), this, nullptr, &Archive::readSource, nullptr));
    archive_entry* entry = nullptr;
    ended_ = check(archive_read_next_header(archive_.get(), &entry)) == ARCHIVE_EOF;
  }

  void nextBlock() {
    const void* data = nullptr;
    std::size_t size = 0;
    la_int64_t offset = 0;
    ended_ = check(archive_read_data_block(archive_.get(), &data, &size, &offset)) == ARCHIVE_EOF;
    if (!ended_) block_ = Octets(static_cast<const U8*>(data), size);
  }

  int check(int result) {
    if (sourceFault_) std::rethrow_exception(sourceFault_);
    if (result < ARCHIVE_WARN) {
      const char* why = archive_error_string(archive_.get());
      throw CompressionError(std::string("compressed data are damaged: ") + (why ? why : "?"));
    }
    return result;
  }

  static la_ssize_t readSource(archive*, void* self, const void** buffer) noexcept {
    auto& decoder = *static_cast<Archive*>(self);
    try {
      const Octets input = decoder.source_.ahead();
      decoder.source_.take(input.size());
      *buffer = input.data();
      return la_ssize_t(input.size());
    } catch (...) {
      decoder.sourceFault_ = std::current_exception();
      return ARCHIVE_FATAL;
    }
  }

  Source& source_;
  std::unique_ptr<archive, Free> archive_{archive_read_new()};
  std::exception_ptr sourceFault_;
  Octets block_;
  bool opened_ = false;
  bool ended_ = false;
};

using namespace std::string_view_literals;

bool startsWith(Octets octets, std::string_view signature) {
  return octets.size() >= signature.size() &&
         std::memcmp(octets.data(), signature.data(), signature.size()) == 0;
}

/// "BZh", the block size, then the mark of a first block or of the end. "BZh" alone is also a time
/// in April 2005.
bool isBzip2(Octets octets) {
  return startsWith(octets, "BZh"sv) && octets.size() >= 10 &&
         (startsWith(octets.subspan(4), "\x31\x41\x59\x26\x53\x59"sv) ||
          startsWith(octets.subspan(4), "\x17\x72\x45\x38\x50\x90"sv));
}

}  // namespace

std::size_t Decoder::decode(std::span<U8> into) {
  if (fault_) std::rethrow_exception(fault_);
  std::size_t size = 0;
  try {
    while (size < into.size()) {
      const std::size_t got = decodeSome(into.subspan(size));
      if (got == 0) break;
      size += got;
    }
  } catch (...) {
    if (size == 0) throw;
    fault_ = std::current_exception();
  }
  return size;
}

std::unique_ptr<Decoder> makeDecoder(Source& source) {
  const Octets start = source.ahead(10);
  if (startsWith(start, "\x1f\x8b\x08"sv)) return makeGzipDecoder(source);
  if (isBzip2(start)) return makeBzip2Decoder(source);
  if (startsWith(start, "\xfd\x37zXZ\0"sv))
    return std::make_unique<Archive>(source, archive_read_support_filter_xz);
  if (startsWith(start, "\x28\xb5\x2f\xfd"sv))
    return std::make_unique<Archive>(source, archive_read_support_filter_zstd);
  return std::make_unique<Plain>(source);
}

}  // namespace Routing::Mrt

#include "mrt/internal/Decoder.h"

#include <string_view>

namespace Routing::Mrt {
namespace {

class Plain final : public Decoder {
 public:
  explicit Plain(Source& source) : source_(source) {}

 private:
  std::size_t decodeSome(std::span<U8> into) override { return source_.read(into); }

  Source& source_;
};

using namespace std::string_view_literals;

bool startsWith(Octets octets, std::string_view signature) {
  return asText(octets).starts_with(signature);
}

constexpr std::size_t longestSignature = 10;

struct Format {
  bool (*begins)(Octets);
  std::unique_ptr<Decoder> (*makeDecoder)(Source&);
};
constexpr Format formats[] = {{isGzip, makeGzipDecoder},
                              {isBzip2, makeBzip2Decoder},
                              {isXz, makeXzDecoder},
                              {isZstd, makeZstdDecoder}};

/// Null for plain octets.
const Format* formatOf(Octets start) {
  for (const Format& format : formats)
    if (format.begins(start)) return &format;
  return nullptr;
}

}  // namespace

bool isGzip(Octets octets) { return startsWith(octets, "\x1f\x8b\x08"sv); }

/// "BZh", the block size, then the mark of a first block or of the end. "BZh" alone is also a time
/// in April 2005.
bool isBzip2(Octets octets) {
  return startsWith(octets, "BZh"sv) && octets.size() >= 10 && octets[3] >= '1' &&
         octets[3] <= '9' &&
         (startsWith(octets.subspan(4), "\x31\x41\x59\x26\x53\x59"sv) ||
          startsWith(octets.subspan(4), "\x17\x72\x45\x38\x50\x90"sv));
}

bool isXz(Octets octets) { return startsWith(octets, "\xfd\x37zXZ\0"sv); }

/// A frame, or one to be skipped over (RFC 8878, 3.1.2), as compressors that work in parallel put
/// in front of each: 16 marks, then a size, the least octet first. Some of those marks are times of
/// 2012 to 2020, so sizes that could be the type of a record are left out.
bool isZstd(Octets octets) {
  const bool skippable = octets.size() >= 6 && octets[0] >> 4 == 5 &&
                         startsWith(octets.subspan(1), "\x2a\x4d\x18"sv) &&
                         (octets[4] != 0 || octets[5] == 0);
  return skippable || startsWith(octets, "\x28\xb5\x2f\xfd"sv);
}

std::size_t Decoder::decode(std::span<U8> into, Source& source) {
  if (fault_) std::rethrow_exception(fault_);
  std::size_t size = 0;
  // Octets that are decoded are delivered before anything waits; the first few are needed to tell
  // whether they are compressed.
  const Source::Pausing pausing(
      source, [&] { return size >= (begun_ ? std::size_t{1} : longestSignature); });
  try {
    while (size < into.size()) {
      const std::size_t got = decodeSome(into.subspan(size));
      if (got == 0) break;
      size += got;
    }
  } catch (const Source::Pause&) {
  } catch (...) {
    if (size == 0) throw;
    fault_ = std::current_exception();
  }
  if (!begun_ && formatOf(into.first(size)))
    throw CompressionError("compressed data are compressed once more");
  begun_ = true;
  return size;
}

bool Decoder::anotherFollows(Source& source, bool (*begins)(Octets), const char* format) {
  Octets input = source.ahead(longestSignature);
  if (!filledUp_ && begins(input)) return true;
  for (; !input.empty(); input = source.ahead()) {
    if (!onlyZeros(input))
      throw CompressionError(std::string(format) + " data are followed by something else");
    source.take(input.size());
    filledUp_ = true;
  }
  return false;
}

std::unique_ptr<Decoder> makeDecoder(Source& source) {
  if (const Format* const format = formatOf(source.ahead(longestSignature)))
    return format->makeDecoder(source);
  return std::make_unique<Plain>(source);
}

}  // namespace Routing::Mrt

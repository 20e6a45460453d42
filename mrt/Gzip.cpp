#include <zlib.h>

#include "mrt/internal/Decoder.h"

namespace Routing::Mrt {
namespace {

class Gzip final : public Decoder {
 public:
  explicit Gzip(Source& source) : source_(source) {
    constexpr int gzipHeader = 16;
    if (inflateInit2(&stream_, MAX_WBITS + gzipHeader) != Z_OK) throw std::bad_alloc();
  }
  ~Gzip() override { inflateEnd(&stream_); }

 private:
  std::size_t decodeSome(std::span<U8> into) override {
    while (nextMember()) {
      const Octets input = source_.ahead();
      if (input.empty()) throw CompressionError("gzip data end too early");
      stream_.next_in = const_cast<U8*>(input.data());
      stream_.avail_in = uInt(input.size());
      stream_.next_out = into.data();
      stream_.avail_out = uInt(into.size());
      const int result = inflate(&stream_, Z_NO_FLUSH);
      source_.take(input.size() - stream_.avail_in);
      const std::size_t got = into.size() - stream_.avail_out;
      if (result == Z_MEM_ERROR) throw std::bad_alloc();
      if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) {
        if (got > 0 && !checkSumFailed()) return got;  // The next call fails with nothing left.
        throw CompressionError(std::string("gzip data are damaged: ") +
                               (stream_.msg ? stream_.msg : zError(result)));
      }
      memberEnded_ = result == Z_STREAM_END;
      if (got > 0) return got;
    }
    return 0;
  }

  /// Then the octets just decoded are known to be wrong somewhere, so they are held back.
  bool checkSumFailed() const {
    return stream_.msg && std::string_view(stream_.msg).starts_with("incorrect");
  }

  /// False behind the last member.
  bool nextMember() {
    if (!memberEnded_) return true;
    if (!anotherFollows(source_, isGzip, "gzip")) return false;
    inflateReset(&stream_);
    memberEnded_ = false;
    return true;
  }

  Source& source_;
  z_stream stream_{};
  bool memberEnded_ = false;
};

}  // namespace

std::unique_ptr<Decoder> makeGzipDecoder(Source& source) { return std::make_unique<Gzip>(source); }

}  // namespace Routing::Mrt

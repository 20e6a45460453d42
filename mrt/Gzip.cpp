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
      if (result_ != Z_OK && result_ != Z_BUF_ERROR) throwFault();
      // None while the last call may have more to give.
      const Octets input = full_ ? Octets() : source_.ahead();
      if (!full_ && input.empty()) throw CompressionError("gzip data end too early");
      stream_.next_in = const_cast<U8*>(input.data());
      stream_.avail_in = uInt(input.size());
      stream_.next_out = into.data();
      stream_.avail_out = uInt(into.size());
      result_ = inflate(&stream_, Z_NO_FLUSH);
      source_.take(input.size() - stream_.avail_in);
      if (checkSumFailed()) throwFault();
      full_ = stream_.avail_out == 0;
      if (const std::size_t got = into.size() - stream_.avail_out) return got;
    }
    return 0;
  }

  /// False behind the last member.
  bool nextMember() {
    if (result_ != Z_STREAM_END) return true;
    if (!anotherFollows(source_, isGzip, "gzip")) return false;
    result_ = inflateReset(&stream_);
    return true;
  }

  /// Then the octets just decoded are known to be wrong somewhere, so they are held back.
  bool checkSumFailed() const {
    return result_ == Z_DATA_ERROR && std::string_view(stream_.msg).starts_with("incorrect");
  }

  [[noreturn]] void throwFault() const {
    if (result_ == Z_MEM_ERROR) throw std::bad_alloc();
    throw CompressionError(std::string("gzip data are damaged: ") +
                           (stream_.msg ? stream_.msg : zError(result_)));
  }

  Source& source_;
  z_stream stream_{};
  int result_ = Z_OK;  // of the last call
  bool full_ = false;  // the last call filled its output, and may have more
};

}  // namespace

std::unique_ptr<Decoder> makeGzipDecoder(Source& source) { return std::make_unique<Gzip>(source); }

}  // namespace Routing::Mrt

#include <lzma.h>

#include "mrt/internal/Decoder.h"

namespace Routing::Mrt {
namespace {

/// More than the 65 MiB that the compressor's highest preset makes its readers take. The data's
/// header may ask for 4 GiB.
constexpr U64 mostMemory = U64{256} << 20;

class Xz final : public Decoder {
 public:
  explicit Xz(Source& source) : source_(source) {}
  ~Xz() override { lzma_end(&stream_); }

 private:
  std::size_t decodeSome(std::span<U8> into) override {
    while (result_ != LZMA_STREAM_END || nextStream()) {
      if (result_ != LZMA_OK) throwFault();
      // None while the last call may have more to give.
      const Octets input = full_ ? Octets() : source_.ahead();
      const bool ended = !full_ && input.empty();
      stream_.next_in = input.data();
      stream_.avail_in = input.size();
      stream_.next_out = into.data();
      stream_.avail_out = into.size();
      result_ = lzma_code(&stream_, ended ? LZMA_FINISH : LZMA_RUN);
      source_.take(input.size() - stream_.avail_in);
      full_ = stream_.avail_out == 0;
      if (const std::size_t got = into.size() - stream_.avail_out) return got;
    }
    return 0;
  }

  /// False behind the last stream.
  bool nextStream() {
    if (started_ && !anotherFollows(source_, isXz, "xz")) return false;
    started_ = true;
    result_ = lzma_stream_decoder(&stream_, mostMemory, 0);
    return true;
  }

  [[noreturn]] void throwFault() const {
    switch (result_) {
      case LZMA_MEM_ERROR:
        throw std::bad_alloc();
      case LZMA_MEMLIMIT_ERROR:
        throw std::runtime_error("xz data would take more than 256 MiB of memory");
      case LZMA_OPTIONS_ERROR:
        throw CompressionError(
            "xz data need a newer version of the format or a filter not known here");
      case LZMA_BUF_ERROR:
        throw CompressionError("xz data end too early");
      default:
        throw CompressionError("xz data are damaged");
    }
  }

  Source& source_;
  lzma_stream stream_ = LZMA_STREAM_INIT;
  lzma_ret result_ = LZMA_STREAM_END;  // of the last call, or no stream begun
  bool full_ = false;                  // the last call filled its output, and may have more
  bool started_ = false;
};

}  // namespace

std::unique_ptr<Decoder> makeXzDecoder(Source& source) { return std::make_unique<Xz>(source); }

}  // namespace Routing::Mrt

#include <zstd.h>
#include <zstd_errors.h>

#include <algorithm>

#include "mrt/internal/Decoder.h"

namespace Routing::Mrt {
namespace {

/// zstd. The library refuses data that take a window of more than 128 MiB.
class Zstd final : public Decoder {
 public:
  explicit Zstd(Source& source) : source_(source) {
    if (!stream_) throw std::bad_alloc();
  }

 private:
  struct Free {
    void operator()(ZSTD_DStream* stream) const { ZSTD_freeDStream(stream); }
  };

  std::size_t decodeSome(std::span<U8> into) override {
    while (full_ || wanted_ > 0 || nextFrame()) {
      // One block a call, and none while the last one has more to give: a call that fails gives
      // nothing.
      const Octets all = full_ ? Octets() : source_.ahead();
      if (!full_ && all.empty()) throw CompressionError("zstd data end too early");
      ZSTD_inBuffer input{all.data(), std::min(all.size(), wanted_), 0};
      ZSTD_outBuffer output{into.data(), into.size(), 0};
      const std::size_t result = ZSTD_decompressStream(stream_.get(), &output, &input);
      if (ZSTD_isError(result)) throwFault(ZSTD_getErrorCode(result));
      source_.take(input.pos);
      wanted_ = result;
      full_ = output.pos == output.size && wanted_ > 0;
      if (output.pos > 0) return output.pos;
    }
    return 0;
  }

  /// False behind the last frame.
  bool nextFrame() {
    if (started_ && !anotherFollows(source_, isZstd, "zstd")) return false;
    started_ = true;
    wanted_ = ZSTD_initDStream(stream_.get());
    if (ZSTD_isError(wanted_)) throwFault(ZSTD_getErrorCode(wanted_));
    return true;
  }

  [[noreturn]] static void throwFault(ZSTD_ErrorCode error) {
    if (error == ZSTD_error_memory_allocation) throw std::bad_alloc();
    if (error == ZSTD_error_frameParameter_windowTooLarge)
      throw std::runtime_error("zstd data would take more than 128 MiB of memory");
    throw CompressionError(std::string("zstd data are damaged: ") + ZSTD_getErrorString(error));
  }

  Source& source_;
  std::unique_ptr<ZSTD_DStream, Free> stream_{ZSTD_createDStream()};
  std::size_t wanted_ = 0;  // octets that the next call can use; 0: no frame begun
  bool full_ = false;       // the last call filled its output, and may have more
  bool started_ = false;
};

}  // namespace

std::unique_ptr<Decoder> makeZstdDecoder(Source& source) { return std::make_unique<Zstd>(source); }

}  // namespace Routing::Mrt

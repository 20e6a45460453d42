// Turns the octets of a file, plain or compressed with gzip, bzip2, xz or zstd, into plain octets.
//
// The format is told by its signature alone. Signatures are chosen so that no MRT file can carry
// one: its first four octets are a time, and the next two one of a few known types.
#pragma once

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Octets.h"

namespace bgpcomm {

/// The compressed data are damaged or end too early. The text says which.
class CompressionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// An open file or standard input, read in large pieces.
class Source {
 public:
  /// `-` is standard input. Throws std::system_error.
  explicit Source(const std::string& file);
  ~Source();
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  /// The octets read and not yet taken; reads the next piece when there are none. Empty at the end
  /// of the file. Throws std::system_error.
  Octets ahead();
  /// Reads on until `size` octets are ahead, or the file ends.
  Octets ahead(std::size_t size);
  void take(std::size_t size) { begin_ += size; }
  /// Straight into the caller's memory; returns 0 at the end of the file.
  std::size_t read(std::span<U8> into);

  /// Octets read so far; may be asked for from any thread.
  U64 position() const { return position_.load(std::memory_order_relaxed); }
  /// 0 when it is not known, as of a pipe.
  U64 size() const { return size_; }

 private:
  std::size_t readSome(std::span<U8> into);

  int descriptor_;
  U64 size_ = 0;
  std::atomic<U64> position_{0};
  std::vector<U8> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

class Decoder {
 public:
  virtual ~Decoder() = default;

  /// Fills `into` as far as the data go; fewer octets than asked for mean that they have ended or
  /// that the next call throws. Throws CompressionError or std::system_error, with everything
  /// before the fault delivered by earlier calls.
  std::size_t decode(std::span<U8> into);

 protected:
  /// As `decode`, but may deliver less than it could; 0 means the end.
  virtual std::size_t decodeSome(std::span<U8> into) = 0;

 private:
  std::exception_ptr fault_;
};

std::unique_ptr<Decoder> makeDecoder(Source& source);
// For data that begin with the signature of their format.
std::unique_ptr<Decoder> makeGzipDecoder(Source& source);
std::unique_ptr<Decoder> makeBzip2Decoder(Source& source);

}  // namespace bgpcomm

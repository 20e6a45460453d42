// Turns the octets of a file, plain or compressed with gzip, bzip2, xz or zstd, into plain octets.
//
// The format is told by its signature alone. Signatures are chosen so that no MRT file can carry
// one: its first four octets are a time, and the next two one of a few known types.
#pragma once

#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

#include "mrt/Source.h"

namespace Routing::Mrt {

/// The compressed data are damaged or end too early. The text says which.
class CompressionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Decoder {
 public:
  virtual ~Decoder() = default;

  /// Fills `into` up to the end of the data, or with what has come when the source would have to
  /// wait; returns 0 at their end. Everything before a fault is delivered by earlier calls.
  /// Throws CompressionError, also for data that are compressed once more; std::system_error of the
  /// source; std::bad_alloc; std::runtime_error for data that ask for more memory than a limit.
  std::size_t decode(std::span<U8> into, Source& source);

 protected:
  /// As `decode`, but may deliver less than it could; 0 means the end. A call that throws has
  /// delivered nothing; after Source::Pause the next one goes on from there.
  virtual std::size_t decodeSome(std::span<U8> into) = 0;

  /// Whether more data of the format stand behind those that have ended. Takes the zeros that fill
  /// up a block of a medium. Throws CompressionError for anything else.
  bool anotherFollows(Source& source, bool (*begins)(Octets), const char* format);

 private:
  std::exception_ptr fault_;
  bool begun_ = false;
  bool filledUp_ = false;  // by zeros, behind which nothing follows
};

/// The decoder that the signature asks for. Its `decode` gets the same source.
std::unique_ptr<Decoder> makeDecoder(Source& source);

// Whether octets begin with the signature of a format; ten are enough. Data of the format that go
// on behind others of it begin with the same.
bool isGzip(Octets octets);
bool isBzip2(Octets octets);
bool isXz(Octets octets);
bool isZstd(Octets octets);

// REQUIRES: the source begins with the signature of the format.
std::unique_ptr<Decoder> makeGzipDecoder(Source& source);
std::unique_ptr<Decoder> makeBzip2Decoder(Source& source);
std::unique_ptr<Decoder> makeXzDecoder(Source& source);
std::unique_ptr<Decoder> makeZstdDecoder(Source& source);

}  // namespace Routing::Mrt

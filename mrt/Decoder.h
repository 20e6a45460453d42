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

}  // namespace Routing::Mrt

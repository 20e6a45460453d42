// Hand-made octets and the files that hold them.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "mrt/Octets.h"
#include "tests/HexOctets.h"

namespace Routing::Mrt {

using Bytes = std::string;

/// The octets of hexadecimal digits; blanks are for the reader.
inline Bytes octets(const std::string& digits) {
  const std::vector<U8> octets = hexOctets(digits);
  return {octets.begin(), octets.end()};
}

inline Octets view(const Bytes& bytes) {
  return {reinterpret_cast<const U8*>(bytes.data()), bytes.size()};
}

inline std::string hex(Octets octets) {
  std::string digits;
  for (const U8 octet : octets)
    for (const int shift : {4, 0}) digits += "0123456789abcdef"[octet >> shift & 15];
  return digits;
}

/// `size` octets in network order.
inline Bytes number(U64 value, std::size_t size) {
  Bytes out;
  while (size-- > 0) out += char(value >> 8 * size);
  return out;
}
/// With its length of `size` octets in front.
inline Bytes counted(const Bytes& bytes, std::size_t size) {
  return number(bytes.size(), size) + bytes;
}

inline Bytes mrtRecord(U16 type, U16 subtype, const Bytes& body) {
  return octets("6553f100") + number(type, 2) + number(subtype, 2) + counted(body, 4);
}

inline Bytes update(const Bytes& attributes, const Bytes& nlri, const Bytes& withdrawn = "") {
  const Bytes body = counted(withdrawn, 2) + counted(attributes, 2) + nlri;
  return Bytes(16, '\xff') + number(19 + body.size(), 2) + '\x02' + body;
}

/// The fields in front of a message: AS of peer and collector, interface, AFI, their addresses.
inline Bytes session(const Bytes& peer = octets("c0000201"), std::size_t asSize = 4,
                     U32 asNumber = 64600) {
  return number(asNumber, asSize) + number(64601, asSize) + number(1, 2) +
         number(peer.size() == 4 ? 1 : 2, 2) + peer + Bytes(peer.size(), '\x11');
}
/// BGP4MP_MESSAGE_AS4 from 192.0.2.1, AS 64600.
inline Bytes messageRecord(const Bytes& message, U16 subtype = 4) {
  return mrtRecord(16, subtype, session() + message);
}

class TemporaryFile {
 public:
  explicit TemporaryFile(const Bytes& content = "") {
    ::close(::mkstemp(name_.data()));
    std::ofstream(name_, std::ios::binary) << content;
  }
  ~TemporaryFile() { ::unlink(name_.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;

  const std::string& name() const { return name_; }
  Bytes content() const {
    std::ifstream in(name_, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

 private:
  std::string name_ = testing::TempDir() + "bgpcomm-XXXXXX";
};

}  // namespace Routing::Mrt

using namespace Routing::Mrt;

#include "MoxStash/StoreFormat.h"

namespace MoxStash {

namespace {

U64 fnv1a(U64 sum, std::string_view octets) {
  for (const char octet : octets) sum = (sum ^ U8(octet)) * 0x100000001B3;
  return sum;
}

}  // namespace

U64 storeChecksum(StoreHeader header, std::initializer_list<std::string_view> rest) {
  header.checksum = 0;
  U64 sum = fnv1a(0xCBF29CE484222325, {reinterpret_cast<const char*>(&header), sizeof header});
  for (const std::string_view piece : rest) sum = fnv1a(sum, piece);
  return sum;
}

}  // namespace MoxStash

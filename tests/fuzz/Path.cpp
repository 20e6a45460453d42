// The path attributes of a hostile peer: read at once, and cut in two at any octet.

#include "Fuzzing.h"
#include "tests/path/PathProperties.h"

// The first octet says where the others are cut.
extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  static const CommunityTables tables;
  if (size == 0) return 0;
  // In memory of their own, where reading beyond the end is seen.
  const std::vector<U8> octets(data + 1, data + size);
  require(!brokenRule(tables, octets, octets.empty() ? 0 : data[0] % octets.size()));
  return 0;
}

// Texts of communities, from both sides: octets have a text that reads back, and a text that is
// read is a community whose canonical text says the same.
#include "Fuzzing.h"
#include "tests/kinds/TextProperties.h"

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  // As a community of each attribute.
  using enum BgpPathAttrType;
  constexpr std::pair<BgpPathAttrType, std::size_t> sizes[] = {
      {community, 4}, {extCommunity, 8}, {largeCommunity, 12}, {extCommunityIp6, 20}};
  for (const auto& [attribute, octets] : sizes)
    if (size >= octets) require(isStable(communityOf(attribute, {data, octets})));
  require(!brokenRule({reinterpret_cast<const char*>(data), size}));
  return 0;
}

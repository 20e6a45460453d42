// Texts of communities, from both sides: octets have a text that reads back, and a text that is
// read is a community whose canonical text says the same.
#include "Fuzzing.h"
#include "kinds/ZoBgpCommunityReader.h"

static void requirePlaced(const CommunityTextError& error, std::string_view text) {
  require(error.position <= text.size());
  require(text.substr(error.position, error.token.size()) == error.token);
  require(!error.expected.empty() && !error.text().empty());
}

static void requireStable(const AnyCommunity& community) {
  const Mox::String text = canonicalText(community);
  for (const auto& parsed : {parseCanonical(text), readCommunity(text),
                             readCommunity(text, KindTable::builtIn(), attributeOf(community))})
    require(parsed && *parsed == community && canonicalText(*parsed) == text);
}

// As a community of each attribute.
static void fromOctets(std::span<const U8> octets) {
  using enum BgpPathAttrType;
  constexpr std::pair<BgpPathAttrType, std::size_t> sizes[] = {
      {community, 4}, {extCommunity, 8}, {largeCommunity, 12}, {extCommunityIp6, 20}};
  for (const auto& [attribute, size] : sizes)
    if (octets.size() >= size) requireStable(communityOf(attribute, octets.first(size)));
}

static void fromText(std::string_view text) {
  const auto canonical = parseCanonical(text);
  const auto parsed = readCommunity(text);
  if (!parsed) requirePlaced(parsed.error, text);
  if (!canonical) requirePlaced(canonical.error, text);
  require(!canonical || (parsed && *parsed == *canonical));
  if (parsed) {
    requireStable(*parsed);
    const auto again = readCommunity(text, KindTable::builtIn(), attributeOf(*parsed));
    require(again && *again == *parsed);
  }
  const auto list = readCommunities(text);
  require(list || !parsed);
  if (!list) return requirePlaced(list.error, text);
  require(!parsed || list.value->size() == 1);
}

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  fromOctets({data, size});
  fromText({reinterpret_cast<const char*>(data), size});
  return 0;
}

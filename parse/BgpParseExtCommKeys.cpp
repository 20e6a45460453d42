#include "parse/BgpParseExtCommKeys.h"

#include "community/internal/ZoBgpCommunityTextReader.h"

namespace Routing::Bgp {

namespace detail {

U32 ruleAddressHash(const void* rule) {
  const U64 address = std::uintptr_t(rule);
  U32 hash = U32(address) ^ U32(address >> 32);
  hash = (hash ^ hash >> 16) * 0x85EBCA6B;
  hash = (hash ^ hash >> 13) * 0xC2B2AE35;
  return hash ^ hash >> 16;
}

void readNullRuleKey(std::string_view keyName, std::string_view text) {
  TextReader reader(text);
  reader.literal("Value('");
  reader.literal(keyName);
  reader.literal("', ** {'rule': NULL})");
  reader.end();
}

}  // namespace detail

template <class Kind>
const Mox::Type BgpParseExtCommRuleKey<Kind>::type{
    Kind::keyName, nullptr, {{"rule", Mox::Attribute::Form::value, [](const void* key) {
                                return Mox::valueToStrep(static_cast<const void*>(
                                    static_cast<const BgpParseExtCommRuleKey*>(key)->rule()));
                              }}}};

#define ZOBGP_KIND(Kind, ...) template class BgpParseExtCommRuleKey<kind::Kind>;
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"

}  // namespace Routing::Bgp

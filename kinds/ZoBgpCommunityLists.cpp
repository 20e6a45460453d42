#include "kinds/ZoBgpCommunityLists.h"

#include <map>

namespace Routing::Bgp {

ParsedCommunity<PathCommunities> readCommunityLists(std::string_view text,
                                                    const CommunityTables& tables,
                                                    const KindTable& kinds) {
  const auto communities = readAnyCommunities(text, kinds);
  if (!communities) return {{}, communities.error};
  std::map<BgpPathAttrType, std::vector<U8>> values;  // of attributes
  for (const AnyCommunity& community : *communities) {
    const CommunityOctets octets(community);
    auto& value = values[attributeOf(community)];
    value.insert(value.end(), octets.all().begin(), octets.all().end());
  }
  PathCommunities path;
  for (const auto& [attribute, value] : values)
    if (const auto fault = tables.read(attribute, value, path))
      return {{}, {0, Mox::String(text), "what attributes can carry: " + fault->toStrep()}};
  return {path};
}

}  // namespace Routing::Bgp

#include "path/internal/ZoBgpCommunityTablesBodies.h"

namespace Routing::Bgp {

template class CommunityListTables<CommList>;
template class CommunityListTables<ExtCommList>;
template class CommunityListTables<ExtCommIp6List>;
template class CommunityListTables<LargeCommList>;
template class CommunityTablesOf<PathCommunities>;

}  // namespace Routing::Bgp

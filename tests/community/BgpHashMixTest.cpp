#include <gtest/gtest.h>

#include "community-list/ZoBgpCommunityList.h"
#include "community/BgpHashMixImpl.h"

namespace Routing::Bgp {
namespace {

TEST(BgpHashMix, FeedsTheAddressOfInternedObjectsAndNothingForNull) {
  const auto table = commListDedupTableFactory();
  const auto list = CommList::CommListIs();
  Orv::HashMix mix, octets;
  EXPECT_DEATH(_BgpHashMix(&mix, list.get()),
               ": __null == \\( p \\) \\|\\| \\( p \\)->dedupState\\(\\) != "
               "Orv::dedupHandleStateNeverDeduped\\(\\)\n");
  list->dedup(table);
  _BgpHashMix(&mix, list.get());
  _BgpHashMix(&mix, nullptr);
  const auto address = reinterpret_cast<std::uintptr_t>(list.get());
  for (std::size_t i = 0; i < sizeof address; ++i) octets.feed(U8(address >> (8 * i)));
  EXPECT_EQ(mix.finish(), octets.finish());
}

TEST(BgpCommunityValue, NamesAndNumbers) {
  EXPECT_EQ(BgpCommunityValueInstance("communityGshut"), communityGshut);
  EXPECT_EQ(stringValue(BgpCommunityValueInstance(0xFFFFFF03)), "communityNoExportSubconfed");
  EXPECT_EQ(stringValue(BgpCommunityValueInstance(0xFFFFFF02)), "communityNoAdvertise");
  EXPECT_EQ(stringValue(BgpCommunityValueInstance(0xFFFFFF01)), "communityNoExport");
  EXPECT_EQ(stringValue(BgpCommunityValueInstance(0)), "communityInternet");
}

}  // namespace
}  // namespace Routing::Bgp

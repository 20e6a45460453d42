#include "Meant.h"

#include "kinds/internal/ZoBgpNearestWord.h"

namespace bgpcomm {

std::string meantAmongViews(const std::vector<std::string_view>& words, std::string_view unknown) {
  Routing::Bgp::NearestWord nearest(unknown);
  for (const std::string_view word : words) nearest.offer(word);
  return nearest.word().empty() ? "" : "; did you mean " + std::string(nearest.word()) + '?';
}

}  // namespace bgpcomm

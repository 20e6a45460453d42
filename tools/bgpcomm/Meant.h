// The word of a list that somebody probably meant.
#pragma once

#include <string>

#include "kinds/internal/ZoBgpNearestWord.h"

namespace bgpcomm {

/// `; did you mean paths?`, or nothing where no word is close to the one that is unknown.
template <class Words>
std::string meantAmong(const Words& words, std::string_view unknown) {
  Routing::Bgp::NearestWord nearest(unknown);
  for (const auto& word : words) nearest.offer(word);
  return nearest.word().empty() ? "" : "; did you mean " + std::string(nearest.word()) + '?';
}

}  // namespace bgpcomm

// The word of a list that somebody probably meant.
#pragma once

#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace bgpcomm {

/// `; did you mean paths?`, or nothing where no word is close to the one that is unknown.
std::string meantAmongViews(const std::vector<std::string_view>& words, std::string_view unknown);
template <class Words>
std::string meantAmong(const Words& words, std::string_view unknown) {
  return meantAmongViews({std::begin(words), std::end(words)}, unknown);
}

}  // namespace bgpcomm

#include "Meant.h"

#include <algorithm>

#include "Errors.h"
#include "kinds/internal/ZoBgpNearestWord.h"

namespace bgpcomm {

std::string meantAmongViews(const std::vector<std::string_view>& words, std::string_view unknown) {
  Routing::Bgp::NearestWord nearest(unknown);
  for (const std::string_view word : words) nearest.offer(word);
  return nearest.word().empty() ? "" : "; did you mean " + std::string(nearest.word()) + '?';
}

std::size_t placeAmong(std::span<const std::string_view> words, std::string_view word,
                       std::string_view option) {
  const auto at = std::ranges::find(words, word);
  if (at != words.end()) return std::size_t(at - words.begin());
  std::string text = std::string(option) + ' ' + std::string(word) + ": there are ";
  for (const std::string_view one : words) (text += one) += one == words.back() ? "" : ", ";
  throw UsageError(text + meantAmong(words, word));
}

}  // namespace bgpcomm

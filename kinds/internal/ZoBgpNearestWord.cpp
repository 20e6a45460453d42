#include "kinds/internal/ZoBgpNearestWord.h"

#include <algorithm>
#include <array>

#include "community/ZoBgpCommunityTextParts.h"

namespace Routing::Bgp {
namespace {

/// How many letters must be added, dropped, changed, or swapped with their neighbours; `enough`
/// stands for more as well.
std::size_t editDistance(std::string_view a, std::string_view b, std::size_t enough) {
  using Row = std::array<U8, 2 * NearestWord::longest>;  // longer ones cannot be close
  Row rows[3];                                           // the one at work and the two before
  const auto row = [&rows](std::size_t i) -> Row& { return rows[i % 3]; };
  const auto isSame = [&](std::size_t i, std::size_t j) {
    return comparedLetter(a[i - 1]) == comparedLetter(b[j - 1]);
  };
  for (std::size_t j = 0; j <= b.size(); ++j) row(0)[j] = U8(j);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    U32 least = row(i)[0] = U8(i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      U32 steps = std::min(row(i - 1)[j - 1] + U32(!isSame(i, j)),
                           std::min(row(i - 1)[j], row(i)[j - 1]) + 1u);
      if (i > 1 && j > 1 && isSame(i, j - 1) && isSame(i - 1, j))
        steps = std::min(steps, row(i - 2)[j - 2] + 1u);
      row(i)[j] = U8(steps);
      least = std::min(least, steps);
    }
    if (least >= enough) return enough;
  }
  return row(a.size())[b.size()];
}

}  // namespace

NearestWord::NearestWord(std::string_view misspelt)
    : misspelt_(misspelt.substr(0, longest)),
      best_(std::max<std::size_t>(1, misspelt_.size() / 4) + 1) {}

void NearestWord::offer(std::string_view word) {
  const std::size_t a = misspelt_.size(), b = word.size();
  if (std::max(a, b) - std::min(a, b) >= best_) return;  // no distance is shorter
  const std::size_t distance = editDistance(misspelt_, word, best_);
  if (distance >= best_) return;
  best_ = distance;
  word_ = word;
}

}  // namespace Routing::Bgp

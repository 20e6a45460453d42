#include "kinds/internal/ZoBgpNearestWord.h"

#include <algorithm>
#include <array>

#include "community/ZoBgpCommunityTextParts.h"

namespace Routing::Bgp {
namespace {

/// How many letters must be added, dropped or changed; `enough` stands for more as well.
std::size_t editDistance(std::string_view a, std::string_view b, std::size_t enough) {
  std::array<U8, 2 * NearestWord::longest> row;  // longer ones cannot be close
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = U8(j);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    U32 diagonal = row[0];
    U32 least = row[0] = U8(i);
    const char letter = comparedLetter(a[i - 1]);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const U32 changed = diagonal + (letter != comparedLetter(b[j - 1]));
      diagonal = row[j];
      row[j] = U8(std::min(changed, std::min<U32>(row[j], row[j - 1]) + 1));
      least = std::min<U32>(least, row[j]);
    }
    if (least >= enough) return enough;
  }
  return row[b.size()];
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

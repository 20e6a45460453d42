#include "kinds/internal/ZoBgpNearestWord.h"

#include <algorithm>
#include <vector>

#include "kinds/ZoBgpKindCheck.h"

namespace Routing::Bgp {
namespace {

/// How many letters must be added, dropped or changed; `enough` stands for more as well.
std::size_t editDistance(std::string_view a, std::string_view b, std::size_t enough) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    std::size_t least = row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t changed = diagonal + (comparedLetter(a[i - 1]) != comparedLetter(b[j - 1]));
      diagonal = row[j];
      row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
      least = std::min(least, row[j]);
    }
    if (least >= enough) return enough;
  }
  return row[b.size()];
}

}  // namespace

char comparedLetter(char c) { return c == '-' || c == ' ' ? '_' : lowerCase(c); }

bool isSameWord(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, comparedLetter, comparedLetter);
}

NearestWord::NearestWord(std::string_view misspelt)
    : misspelt_(misspelt.substr(0, 64)),
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

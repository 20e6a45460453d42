#include "kinds/internal/ZoBgpNearestWord.h"

#include <algorithm>
#include <vector>

#include "kinds/ZoBgpKindCheck.h"

namespace Routing::Bgp {
namespace {

/// How many letters must be added, dropped or changed.
std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t changed = diagonal + (comparedLetter(a[i - 1]) != comparedLetter(b[j - 1]));
      diagonal = row[j];
      row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
    }
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
  const auto [shorter, longer] = std::minmax(misspelt_.size(), word.size());
  if (longer - shorter >= best_) return;
  const std::size_t distance = editDistance(misspelt_, word);
  if (distance >= best_) return;
  best_ = distance;
  word_ = word;
}

}  // namespace Routing::Bgp

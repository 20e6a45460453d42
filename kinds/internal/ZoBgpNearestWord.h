// The word that somebody probably meant.
//
//   NearestWord nearest("no-exprot");
//   nearest.offer("NO_EXPORT");
//   nearest.offer("local-as");
//   nearest.word()    // "NO_EXPORT"
#pragma once

#include <string_view>

#include "Mox/Types.h"

namespace Routing::Bgp {
using namespace Mox::Words;

class NearestWord {
 public:
  /// As many letters of it are looked at.
  static constexpr std::size_t longest = 64;

  /// REQUIRES: the text lives as long as this.
  explicit NearestWord(std::string_view misspelt);

  /// REQUIRES: the word lives as long as this.
  void offer(std::string_view word);
  /// The first of the closest words; empty when none is close: a letter in four may be wrong, and
  /// one in a short word; two that are swapped count as one.
  std::string_view word() const { return word_; }

 private:
  std::string_view misspelt_;
  std::size_t best_;  // one more than the letters that may be wrong
  std::string_view word_;
};

}  // namespace Routing::Bgp

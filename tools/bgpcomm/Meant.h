// Words of the command line that are among a few, and the one that somebody probably meant.
#pragma once

#include <iterator>
#include <span>
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

/// The place of a word among those that an option or argument takes. Throws UsageError:
/// `--sort pats: there are paths, peers, prefixes, value; did you mean paths?`
std::size_t placeAmong(std::span<const std::string_view> words, std::string_view word,
                       std::string_view option);

}  // namespace bgpcomm

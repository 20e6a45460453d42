// Properties of reading any text: for tests and fuzzing.
#pragma once

#include "kinds/ZoBgpCommunityReader.h"

namespace Routing::Bgp {

/// An error says what it wants, and its token stands in the text.
inline bool isPlaced(const CommunityTextError& error, std::string_view text) {
  return error.position <= text.size() && !error.expected.empty() &&
         text.substr(error.position, error.token.size()) == error.token;
}

/// The canonical text is read by all that read, and is the canonical text of what they read.
inline bool isStable(const AnyCommunity& community) {
  const Mox::String text = canonicalText(community);
  for (const auto& parsed : {parseCanonical(text), readCommunity(text),
                             readCommunity(text, KindTable::builtIn(), attributeOf(community))})
    if (!parsed || *parsed != community || canonicalText(*parsed) != text) return false;
  return true;
}

/// A rule that does not hold when the text is read; null if all do.
inline const char* brokenRule(std::string_view text) {
  const auto canonical = parseCanonical(text), parsed = readCommunity(text);
  const auto list = readCommunities(text);
  if ((!canonical && !isPlaced(canonical.error, text)) ||
      (!parsed && !isPlaced(parsed.error, text)) || (!list && !isPlaced(list.error, text)))
    return "an error stands in the text";
  if (canonical && (!parsed || *parsed != *canonical)) return "canonical texts are read";
  if (!parsed) return nullptr;
  if (!isStable(*parsed)) return "each community has one canonical text";
  const auto again = readCommunity(text, KindTable::builtIn(), attributeOf(*parsed));
  if (!again || *again != *parsed) return "the attribute may be given";
  return !list || list->size() != 1 ? "one text is a list of one" : nullptr;
}

}  // namespace Routing::Bgp

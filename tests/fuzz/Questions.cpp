// Questions of any text: an error stands in the text; a question has the same answer with a memory
// and without. Descriptions of any text are found or not.
#include "Fuzzing.h"
#include "kinds/ZoBgpCommunityLists.h"
#include "query/ZoBgpPatternMatcher.h"

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  static const CommunityTables tables;
  static const auto path = readCommunityLists("65000:100 RT:65000:1 65000:1:2", tables);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto question = CommunityPattern::parse(text);
  if (question) {
    PatternMatcher matcher(*question);
    const bool holds = question->matches(*path);
    require(matcher.matches(*path) == holds && matcher.matches(*path) == holds);
  } else {
    require(question.error.position <= size && !question.error.text().empty());
  }
  const auto value = ValuePattern::parse(text);
  if (!value) require(text.substr(value.error.position).starts_with(value.error.token));
  CommunityDescriptions descriptions;
  descriptions.add(text);
  descriptions.find(BgpCommunityValue(0xFDE80064));
  descriptions.find(Acl::CommunityValue(65000, 1, 2));
  return 0;
}

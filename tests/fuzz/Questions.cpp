// Questions of any text: an error stands in the text; a question has the same answer with a memory
// and without. Descriptions of any text are found or not.
#include "Fuzzing.h"
#include "query/ZoBgpPatternMatcher.h"

static const PathCommunities& path() {
  static const CommunityTables tables;
  static const PathCommunities path = [] {
    constexpr U8 attributes[] = {0xC0, 8,  4,  0xFD, 0xE8, 0,    100,               // 65000:100
                                 0xC0, 16, 8,  0,    2,    0xFD, 0xE8, 0, 0, 0, 1,  // RT:65000:1
                                 0xC0, 32, 12, 0,    0,    0xFD, 0xE8, 0, 0, 0, 1,
                                 0,    0,  0,  2};  // 65000:1:2
    PathCommunities path;
    require(!tables.readAll(attributes, path));
    return path;
  }();
  return path;
}

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto question = CommunityPattern::parse(text);
  if (question) {
    PatternMatcher matcher(*question);
    const bool holds = question->matches(path());
    require(matcher.matches(path()) == holds && matcher.matches(path()) == holds);
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

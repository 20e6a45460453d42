// Questions about the communities of a path, compiled once.
//
//   const auto question = CommunityPattern::parse("route-target-as2:65000:* and not no-export");
//   if (!question) return question.error.text();
//   question->matches(path)         // PathCommunities, see path/ZoBgpCommunityTables.h
//   PatternMatcher matcher(*question);
//   matcher.matches(path)           // the same, answers remembered by list
//
//   question    = conjunction { "or" conjunction } ;
//   conjunction = condition { "and" condition } ;
//   condition   = "not" condition
//               | "(" question ")"
//               | value                          (* some community of the path matches *)
//               | "has" list                     (* the path has one with communities *)
//               | "count" "(" counted ")" comparison number
//               | "described"                    (* some community has a description *)
//               | "description" "~" text ;       (* one that contains the text *)
//   counted     = list | value ;                 (* a value of one attribute *)
//   list        = "standard" | "extended" | "ipv6-extended" | "large" ;
//   comparison  = "<" | "<=" | "=" | "!=" | ">=" | ">" ;
//   value       = text ;                         (* see ZoBgpValuePattern.h *)
//   text        = '"' { any but '"' } '"'
//               | { any but blanks, quotes and parentheses; these in pairs, blanks in braces } ;
//
// 1. Blanks separate; letter case never counts. A value that has blanks of its own, or that is one
//    of the words above, stands in double quotes.
// 2. A list that a path does not have counts as empty.
//
// Threads: a pattern does not change once it is made; use it from any.
#pragma once

#include <memory>

#include "path/ZoBgpPathCommunities.h"
#include "query/ZoBgpCommunityDescriptions.h"
#include "query/ZoBgpValuePattern.h"

namespace Routing::Bgp {

class CommunityPattern {
 public:
  /// So many conditions fit into one pattern. Values between which there is only `or` are one.
  static constexpr std::size_t mostConditions = 64;
  /// So deep may parentheses and `not` stand in each other.
  static constexpr std::size_t mostLevels = 100;

  /// Reads a question. Only one that asks for descriptions needs these; null is like none. Both are
  /// shared: they may go before the pattern does.
  static ParsedCommunity<CommunityPattern> parse(
      std::string_view text, const KindTable& table = KindTable::builtIn(),
      std::shared_ptr<const CommunityDescriptions> descriptions = nullptr);

  /// Cost: each value of each list that is asked for, times the conditions.
  bool matches(const PathCommunities& path) const;

  // The same in steps, for readers that have lists without a path, or remember answers.

  /// One bit for each condition, the first the lowest.
  using Answers = U64;
  /// How many different ones the pattern asks for.
  std::size_t conditions() const { return conditions_.size(); }
  /// Whether lists of this attribute are asked for at all.
  bool asks(BgpPathAttrType attribute) const;
  /// Which conditions hold because a path has this list.
  template <class List>
  Answers answersOf(const List& list) const {
    Counts counts{};
    list.forEachValue([&](const auto& value) {
      if constexpr (std::is_same_v<decltype(value), const U32&>)
        count(BgpCommunityValue(value), counts);
      else
        count(value, counts);
    });
    return answersOf(List::pathAttribute, counts);
  }
  /// Which conditions hold because a path has no list of this attribute.
  Answers answersWithout(BgpPathAttrType attribute) const;
  /// The answer for a path, from the answers of all its lists, taken together by `|`.
  bool holds(Answers answers) const;

 private:
  friend class PatternReader;

  enum class Comparison : U8 { less, lessOrEqual, equal, unequal, greaterOrEqual, greater };
  /// How many communities there must be. All but `count` ask for more than none.
  struct Condition {
    std::optional<BgpPathAttrType> attribute =
        {};                                   ///< of the one list that counts; nothing: of any
    std::optional<ValuePattern> values = {};  ///< which communities count; nothing: all
    bool described = false;                   ///< only such as have a description
    Mox::String description = {};             ///< that contains this
    Comparison comparison = Comparison::greater;
    U64 number = 0;

    bool asks(BgpPathAttrType attribute) const;
    bool counts(const AnyCommunity& community, const CommunityDescriptions* descriptions) const;
    bool holds(U64 count) const;
  };
  using Counts = std::array<U32, mostConditions>;

  // The expression in the order in which a stack works it off: numbers of conditions, and these.
  static constexpr U8 opNot = 64, opAnd = 65, opOr = 66;

  void count(const AnyCommunity& community, Counts& counts) const;
  Answers answersOf(BgpPathAttrType attribute, const Counts& counts) const;

  std::vector<Condition> conditions_;
  std::vector<U8> program_;
  std::shared_ptr<const CommunityDescriptions> descriptions_;
};

}  // namespace Routing::Bgp

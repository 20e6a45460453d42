#include "query/ZoBgpCommunityPattern.h"

#include <algorithm>

#include "kinds/ZoBgpKindCheck.h"

namespace Routing::Bgp {
namespace {

using Attribute = BgpPathAttrType;

struct ListWord {
  std::string_view word;
  Attribute attribute;
};
constexpr ListWord listWords[] = {{"standard", Attribute::community},
                                  {"extended", Attribute::extCommunity},
                                  {"ipv6-extended", Attribute::extCommunityIp6},
                                  {"ipv6Extended", Attribute::extCommunityIp6},
                                  {"large", Attribute::largeCommunity}};
constexpr std::string_view listsExpected = "standard, extended, ipv6-extended, large";

constexpr Attribute allAttributes[] = {Attribute::community, Attribute::extCommunity,
                                       Attribute::extCommunityIp6, Attribute::largeCommunity};

bool contains(std::string_view text, std::string_view piece) {
  const auto equal = [](char a, char b) { return lowerCase(a) == lowerCase(b); };
  return std::search(text.begin(), text.end(), piece.begin(), piece.end(), equal) != text.end() ||
         piece.empty();
}

constexpr bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace

/// Reads a question from left to right: each function one rule of the grammar.
class PatternReader {
 public:
  using Parsed = ParsedCommunity<CommunityPattern>;

  PatternReader(std::string_view text, const KindTable& table,
                std::shared_ptr<const CommunityDescriptions> descriptions)
      : text_(text), rest_(text), table_(table) {
    pattern_.descriptions_ = std::move(descriptions);
  }

  Parsed read() {
    std::optional<Expression> whole = question();
    skipBlanks();
    if (whole && !rest_.empty()) fail(rest_, "and, or, or the end");
    if (!fault_ && !emit(std::move(*whole)))
      fail(text_, "at most " + std::to_string(CommunityPattern::mostConditions) + " conditions");
    if (fault_) return {{}, std::move(*fault_)};
    return {std::move(pattern_)};
  }

 private:
  using Condition = CommunityPattern::Condition;
  using Comparison = CommunityPattern::Comparison;

  enum class Join : U8 { none, negation, conjunction, disjunction };
  struct Expression {
    Join join = Join::none;
    Condition condition = {};  // unless something is joined
    std::vector<Expression> parts = {};
  };
  using Read = std::optional<Expression>;

  // --- The grammar.

  Read question() {
    return joined(Join::disjunction, "or", [this] { return conjunction(); });
  }
  Read conjunction() {
    return joined(Join::conjunction, "and", [this] { return condition(); });
  }

  Read joined(Join join, std::string_view word, auto readPart) {
    Expression whole{join};
    do {
      Read part = readPart();
      if (!part) return {};
      whole.parts.push_back(std::move(*part));
    } while (takeWord(word));
    if (whole.parts.size() > 1) return whole;
    return std::move(whole.parts.front());
  }

  Read condition() {
    skipBlanks();
    const std::string_view start = rest_;
    if (++levels_ > CommunityPattern::mostLevels)
      return fail(start, "at most " + std::to_string(CommunityPattern::mostLevels) +
                             " parentheses and not inside each other");
    Read read = unlimitedCondition();
    --levels_;
    return read;
  }

  Read unlimitedCondition() {
    if (takeWord("not")) {
      Read part = condition();
      if (!part) return {};
      return Expression{Join::negation, {}, {std::move(*part)}};
    }
    if (takeSign("(")) {
      Read inner = question();
      if (inner && !takeSign(")")) return fail(rest_, "`)`");
      return inner;
    }
    if (takeWord("has")) {
      const auto attribute = takeList();
      if (!attribute) return fail(rest_, Mox::String(listsExpected));
      return Expression{.condition = {.attribute = attribute}};
    }
    if (takeWord("count")) return count();
    if (takeWord("described")) return Expression{.condition = {.described = true}};
    if (takeWord("description")) {
      if (!takeSign("~")) return fail(rest_, "`~` and a text");
      const auto text = takeText();
      if (!text || text->empty()) return fail(rest_, "a text");
      return Expression{.condition = {.described = true, .description = Mox::String(*text)}};
    }
    auto values = takeValue();
    if (!values) return {};
    return Expression{.condition = {.values = std::move(values)}};
  }

  Read count() {
    if (!takeSign("(")) return fail(rest_, "`(`");
    Condition condition{.attribute = takeList()};
    if (!condition.attribute) {
      const std::string_view start = rest_;
      condition.values = takeValue();
      if (!condition.values) {
        if (fault_) fault_->expected = Mox::String(listsExpected) + ", or " + fault_->expected;
        return {};
      }
      for (const Attribute attribute : allAttributes)
        if (condition.values->mayMatch(attribute)) {
          if (condition.attribute)
            return fail(start.substr(0, start.size() - rest_.size()),
                        "communities of one attribute");
          condition.attribute = attribute;
        }
    }
    if (!takeSign(")")) return fail(rest_, "`)`");
    constexpr struct {
      std::string_view sign;
      Comparison comparison;
    } signs[] = {{"<=", Comparison::lessOrEqual}, {">=", Comparison::greaterOrEqual},
                 {"!=", Comparison::unequal},     {"<", Comparison::less},
                 {">", Comparison::greater},      {"=", Comparison::equal}};
    const auto* const sign =
        std::ranges::find_if(signs, [this](const auto& row) { return takeSign(row.sign); });
    if (sign == std::end(signs)) return fail(rest_, "<, <=, =, !=, >= or >");
    condition.comparison = sign->comparison;
    skipBlanks();
    const std::string_view digits = rest_.substr(0, rest_.find_first_not_of("0123456789"));
    const auto number = decimalNumber(digits, 32);
    if (!number) return fail(digits.empty() ? rest_ : digits, "a number below 4294967296");
    rest_.remove_prefix(digits.size());
    condition.number = *number;
    return Expression{.condition = std::move(condition)};
  }

  // --- The words.

  void skipBlanks() {
    while (!rest_.empty() && isBlank(rest_.front())) rest_.remove_prefix(1);
  }
  bool takeSign(std::string_view sign) {
    skipBlanks();
    if (!rest_.starts_with(sign)) return false;
    rest_.remove_prefix(sign.size());
    return true;
  }
  /// Takes a word that stands alone.
  bool takeWord(std::string_view word) {
    skipBlanks();
    if (!equalIgnoringCase(rest_.substr(0, word.size()), word)) return false;
    const std::string_view behind = rest_.substr(word.size());
    if (!behind.empty() && !isBlank(behind[0]) &&
        std::string_view("()~<=>!").find(behind[0]) == std::string_view::npos)
      return false;
    rest_ = behind;
    return true;
  }
  std::optional<Attribute> takeList() {
    for (const auto& [word, attribute] : listWords)
      if (takeWord(word)) return attribute;
    return {};
  }

  /// A text, in quotes or not; nothing for one whose quotes do not end, or where none is.
  std::optional<std::string_view> takeText() {
    skipBlanks();
    if (rest_.starts_with('"')) {
      const auto end = rest_.find('"', 1);
      if (end == rest_.npos) return {};
      const std::string_view text = rest_.substr(1, end - 1);
      rest_.remove_prefix(end + 1);
      return text;
    }
    std::size_t at = 0, open = 0;
    bool inBraces = false;
    for (; at < rest_.size(); ++at) {
      const char c = rest_[at];
      if (inBraces ? c == '}' : c == '{') inBraces = !inBraces;
      if (inBraces) continue;
      if (isBlank(c) || c == '"' || (c == '(' && at == 0) || (c == ')' && open == 0)) break;
      open += c == '(';
      open -= c == ')';
    }
    if (at == 0) return {};
    const std::string_view text = rest_.substr(0, at);
    rest_.remove_prefix(at);
    return text;
  }

  std::optional<ValuePattern> takeValue() {
    skipBlanks();
    const std::string_view start = rest_;
    const auto text = takeText();
    if (!text) {
      fail(start, start.starts_with('"') ? "a double quote at the end" : "a condition");
      return {};
    }
    if (!start.starts_with('"') && isWordOfGrammar(*text)) {
      fail(*text, "a condition");
      return {};
    }
    auto pattern = ValuePattern::parse(*text, table_);
    if (pattern) return std::move(pattern.value);
    if (!fault_) {
      pattern.error.position += std::size_t(text->data() - text_.data());
      fault_ = std::move(pattern.error);
    }
    return {};
  }
  static bool isWordOfGrammar(std::string_view text) {
    return equalIgnoringCase(text, "and") || equalIgnoringCase(text, "or");
  }

  std::nullopt_t fail(std::string_view piece, Mox::String expected) {
    constexpr std::size_t longest = 40;
    if (!fault_)
      fault_ = {std::size_t(piece.data() - text_.data()), Mox::String(piece.substr(0, longest)),
                std::move(expected)};
    return std::nullopt;
  }

  // --- The program.

  /// Values of which one must be there: what `or` joins is one condition.
  static bool isValue(const Expression& expression) {
    const Condition& one = expression.condition;
    return expression.join == Join::none && one.values && !one.attribute;
  }

  /// False when there are too many conditions.
  bool emit(Expression&& expression) {
    if (expression.join == Join::none) {
      if (pattern_.conditions_.size() == CommunityPattern::mostConditions) return false;
      pattern_.program_.push_back(U8(pattern_.conditions_.size()));
      pattern_.conditions_.push_back(std::move(expression.condition));
      return true;
    }
    if (expression.join == Join::disjunction) joinValues(expression.parts);
    bool first = true;
    for (Expression& part : expression.parts) {
      if (!emit(std::move(part))) return false;
      if (!std::exchange(first, false))
        pattern_.program_.push_back(expression.join == Join::conjunction ? CommunityPattern::opAnd
                                                                         : CommunityPattern::opOr);
    }
    if (expression.join == Join::negation) pattern_.program_.push_back(CommunityPattern::opNot);
    return true;
  }
  static void joinValues(std::vector<Expression>& parts) {
    const auto first = std::ranges::find_if(parts, isValue);
    if (first == parts.end()) return;
    const auto others = std::remove_if(first + 1, parts.end(), [&](const Expression& part) {
      if (!isValue(part)) return false;
      first->condition.values->add(*part.condition.values);
      return true;
    });
    parts.erase(others, parts.end());
  }

  const std::string_view text_;
  std::string_view rest_;
  const KindTable& table_;
  CommunityPattern pattern_;
  std::size_t levels_ = 0;
  std::optional<CommunityTextError> fault_;
};

ParsedCommunity<CommunityPattern> CommunityPattern::parse(
    std::string_view text, const KindTable& table,
    std::shared_ptr<const CommunityDescriptions> descriptions) {
  return PatternReader(text, table, std::move(descriptions)).read();
}

bool CommunityPattern::Condition::asks(BgpPathAttrType of) const {
  if (attribute) return *attribute == of;
  return !values || values->mayMatch(of);
}

bool CommunityPattern::Condition::counts(const AnyCommunity& community,
                                         const CommunityDescriptions* descriptions) const {
  if (values && !values->matches(community)) return false;
  if (!described) return true;
  static const CommunityDescriptions none;  // but of well-known ones
  const CommunityDescriptions& known = descriptions ? *descriptions : none;
  if (description.empty()) return known.has(community);
  const auto text = known.find(community);
  return text && contains(*text, description);
}

bool CommunityPattern::Condition::holds(U64 count) const {
  switch (comparison) {
    case Comparison::less:
      return count < number;
    case Comparison::lessOrEqual:
      return count <= number;
    case Comparison::equal:
      return count == number;
    case Comparison::unequal:
      return count != number;
    case Comparison::greaterOrEqual:
      return count >= number;
    case Comparison::greater:
      break;
  }
  return count > number;
}

bool CommunityPattern::asks(BgpPathAttrType attribute) const {
  return std::ranges::any_of(conditions_,
                             [attribute](const Condition& one) { return one.asks(attribute); });
}

void CommunityPattern::count(const AnyCommunity& community, Counts& counts) const {
  for (std::size_t i = 0; i < conditions_.size(); ++i)
    counts[i] += conditions_[i].counts(community, descriptions_.get());
}

CommunityPattern::Answers CommunityPattern::answersOf(BgpPathAttrType attribute,
                                                      const Counts& counts) const {
  Answers answers = 0;
  for (std::size_t i = 0; i < conditions_.size(); ++i)
    if (conditions_[i].asks(attribute) && conditions_[i].holds(counts[i])) answers |= 1ULL << i;
  return answers;
}

CommunityPattern::Answers CommunityPattern::answersWithout(BgpPathAttrType attribute) const {
  return answersOf(attribute, Counts{});
}

bool CommunityPattern::matches(const PathCommunities& path) const {
  Answers answers = 0;
  path.forEachType([&]<class List>(const Mox::Ptr<const List>& list) {
    answers |= list ? answersOf(*list) : answersWithout(List::pathAttribute);
  });
  return holds(answers);
}

bool CommunityPattern::holds(Answers answers) const {
  U64 stack = 0;  // the last is the lowest bit
  for (const U8 op : program_) {
    if (op == opNot) {
      stack ^= 1;
      continue;
    }
    if (op < mostConditions) {
      stack = stack << 1 | (answers >> op & 1);
      continue;
    }
    const U64 last = stack & 1;
    stack >>= 1;
    stack = op == opAnd ? stack & (last | ~U64{1}) : stack | last;
  }
  return stack & 1;
}

}  // namespace Routing::Bgp

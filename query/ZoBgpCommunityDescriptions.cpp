#include "query/ZoBgpCommunityDescriptions.h"

#include <algorithm>
#include <charconv>

#include "community/ZoBgpCommunityCanonicalText.h"
#include "community/ZoBgpCommunityTextParts.h"
#include "kinds/ZoBgpKindCheck.h"

namespace Routing::Bgp {
namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const auto first = text.find_first_not_of(blanks);
  return first == text.npos ? std::string_view()
                            : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

/// A number's decimal digits.
struct Digits {
  explicit Digits(U32 number) : end(std::to_chars(text, std::end(text), number).ptr) {}
  std::string_view view() const { return {text, std::size_t(end - text)}; }

  char text[10];
  const char* end;
};

constexpr bool isAnyDigit(char c) { return c == 'x' || c == 'X'; }

}  // namespace

bool CommunityDescriptions::Part::matches(U32 number) const {
  if (form != Form::digits) return number >= first && number <= last;
  const Digits its(number);
  return std::ranges::equal(its.view(), digits, [](char digit, char wanted) {
    return isAnyDigit(wanted) || digit == wanted;
  });
}

std::size_t CommunityDescriptions::HashNumbers::operator()(const Numbers& numbers) const {
  U64 hash = 0;
  for (const U32 number : numbers) hash = (hash ^ number) * 0x9E3779B97F4A7C15;
  return std::size_t(hash >> 32);
}

/// One line, taken apart.
class CommunityDescriptions::Line {
 public:
  explicit Line(std::string_view line) : line_(line) {}

  /// Empty, or a comment.
  bool isBlank() const { return line_.empty() || line_.front() == '#'; }
  /// Why it is no entry; empty if it is one. Adds the entry.
  Mox::String addTo(CommunityDescriptions& descriptions) {
    const auto comma = line_.find(',');
    if (comma == line_.npos) return "expected a comma behind the community";
    const CommunityTextParts parts(trimmed(line_.substr(0, comma)));
    if (parts.count() != 2 && parts.count() != 3)
      return "expected two numbers, or three of a large community, with colons between them";
    const bool large = parts.count() == 3;
    const U32 bits = large ? 32 : 16;
    Entry entry{{}, trimmed(line_.substr(comma + 1))};
    for (std::size_t i = 0; i < parts.count(); ++i)
      if (!readPart(parts[i], bits, entry.parts[i]))
        return '"' + Mox::String(parts[i]) + "\": expected a number or a range of at most " +
               std::to_string(bits) + " bits, digits with x, or nnn";
    add(large ? descriptions.large_ : descriptions.standard_, entry);
    ++descriptions.size_;
    return {};
  }

 private:
  static bool readPart(std::string_view text, U32 bits, Part& part) {
    const U32 most = U32((1ULL << bits) - 1);
    if (equalIgnoringCase(text, "nnn")) {
      part = {Part::Form::range, 0, most};
      return true;
    }
    const auto dash = text.find('-');
    const auto first = decimalNumber(text.substr(0, dash), bits);
    const auto last = dash == text.npos ? first : decimalNumber(text.substr(dash + 1), bits);
    if (first && last) {
      part = {dash == text.npos ? Part::Form::number : Part::Form::range, U32(*first), U32(*last)};
      return *first <= *last;
    }
    part = {Part::Form::digits, 0, 0, text};
    const auto isDigit = [](char c) { return isAnyDigit(c) || (c >= '0' && c <= '9'); };
    return !text.empty() && text.size() <= 10 && std::ranges::all_of(text, isDigit) &&
           std::ranges::any_of(text, isAnyDigit);
  }

  static void add(OfAttribute& entries, const Entry& entry) {
    Numbers numbers;
    for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = entry.parts[i].first;
    const auto isPlain = [](const Part& part) { return part.form == Part::Form::number; };
    if (std::ranges::all_of(entry.parts, isPlain))
      entries.plain.try_emplace(numbers, entry.text);
    else
      (isPlain(entry.parts[0]) ? entries.byFirst[numbers[0]] : entries.others).push_back(entry);
  }

  std::string_view line_;
};

std::vector<CommunityDescriptions::LineFault> CommunityDescriptions::add(std::string_view text) {
  std::vector<LineFault> faults;
  std::string_view rest = files_.emplace_back(text);
  constexpr std::string_view mark = "\xEF\xBB\xBF";  // of UTF-8, as some editors write
  if (rest.starts_with(mark)) rest.remove_prefix(mark.size());
  for (std::size_t number = 1; !rest.empty(); ++number) {
    const auto end = rest.find('\n');
    Line line(trimmed(rest.substr(0, end)));
    rest = end == rest.npos ? std::string_view() : rest.substr(end + 1);
    if (line.isBlank()) continue;
    if (auto fault = line.addTo(*this); !fault.empty())
      faults.push_back({number, std::move(fault)});
  }
  return faults;
}

CommunityDescriptions::Found CommunityDescriptions::find(const OfAttribute& entries,
                                                         const Numbers& numbers) const {
  if (const auto at = entries.plain.find(numbers); at != entries.plain.end()) return {at->second};
  const auto matches = [&](const Entry& entry) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
      if (!entry.parts[i].matches(numbers[i])) return false;
    return true;
  };
  const auto findIn = [&](const std::vector<Entry>& some) -> Found {
    const auto at = std::ranges::find_if(some, matches);
    if (at == some.end()) return {};
    return {at->text, &*at};
  };
  if (const auto ofFirst = entries.byFirst.find(numbers[0]); ofFirst != entries.byFirst.end())
    if (const Found found = findIn(ofFirst->second); found.entry) return found;
  return findIn(entries.others);
}

CommunityDescriptions::Found CommunityDescriptions::findAny(const AnyCommunity& community,
                                                            Numbers& numbers) const {
  if (const auto* value = std::get_if<BgpCommunityValue>(&community)) {
    if (const auto* const row = registeredCommunity(*value)) return {row->name};
    numbers = {U32(*value) >> 16, U32(*value) & 0xFFFF, 0};
    return find(standard_, numbers);
  }
  const auto* const large = std::get_if<Acl::CommunityValue>(&community);
  if (!large) return {};
  numbers = {large->globalAdmin(), large->localData1(), large->localData2()};
  return find(large_, numbers);
}

bool CommunityDescriptions::has(const AnyCommunity& community) const {
  Numbers numbers;
  return findAny(community, numbers).text.data();
}

std::optional<Mox::String> CommunityDescriptions::find(const AnyCommunity& community) const {
  Numbers numbers;
  const auto [text, entry] = findAny(community, numbers);
  if (!text.data()) return {};
  if (!entry) return Mox::String(text);
  // The meaning of each part that is no plain number, in their order.
  std::vector<Mox::String> meant;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const Part& part = entry->parts[i];
    if (part.form == Part::Form::number) continue;
    const Digits digits(numbers[i]);
    if (part.form == Part::Form::range) {
      meant.emplace_back(digits.view());
      continue;
    }
    for (std::size_t at = 0; at < part.digits.size(); ++at) {
      if (!isAnyDigit(part.digits[at])) continue;
      if (at == 0 || !isAnyDigit(part.digits[at - 1])) meant.emplace_back();
      meant.back() += digits.view()[at];
    }
  }
  Mox::String described;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool named = text[at] == '$' && at + 1 < text.size() && text[at + 1] >= '0' &&
                       std::size_t(text[at + 1] - '0') < meant.size();
    if (named)
      described += meant[std::size_t(text[++at] - '0')];
    else
      described += text[at];
  }
  return described;
}

}  // namespace Routing::Bgp

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

bool CommunityDescriptions::Entry::matches(const Numbers& numbers) const {
  for (std::size_t i = 0; i < numbers.size(); ++i)
    if (!parts[i].matches(numbers[i])) return false;
  return true;
}

CommunityDescriptions::Entries::Box CommunityDescriptions::Entries::Box::around(
    const Entry& entry) {
  Box box{{}, {}, entry.order};
  for (std::size_t i = 0; i < entry.parts.size(); ++i) {
    box.first[i] = entry.parts[i].first;
    box.last[i] = entry.parts[i].last;
  }
  return box;
}

void CommunityDescriptions::Entries::Box::add(const Box& other) {
  for (std::size_t i = 0; i < first.size(); ++i) {
    first[i] = std::min(first[i], other.first[i]);
    last[i] = std::max(last[i], other.last[i]);
  }
  order = std::min(order, other.order);
}

bool CommunityDescriptions::Entries::Box::holds(const Numbers& numbers) const {
  for (std::size_t i = 0; i < numbers.size(); ++i)
    if (numbers[i] < first[i] || numbers[i] > last[i]) return false;
  return true;
}

void CommunityDescriptions::Entries::add(const Entry& entry) {
  entries_.push_back(entry);
  entries_.back().order = entries_.size();
}

void CommunityDescriptions::Entries::sort() {
  boxes_.resize(entries_.size());
  sorted_ = entries_.size();
  std::ranges::sort(entries_, {}, [](const Entry& entry) {
    const Box box = Box::around(entry);
    return std::pair(box.first, box.order);
  });
  for (std::size_t node = sorted_; node-- > 1;) {
    boxes_[node] = boxAt(2 * node);
    boxes_[node].add(boxAt(2 * node + 1));
  }
}

CommunityDescriptions::Entries::Box CommunityDescriptions::Entries::boxAt(std::size_t node) const {
  return node < sorted_ ? boxes_[node] : Box::around(entries_[node - sorted_]);
}

const CommunityDescriptions::Entry* CommunityDescriptions::Entries::find(
    const Numbers& numbers) const {
  const Entry* found = nullptr;
  if (sorted_ > 0) find(1, numbers, found);
  return found;
}

void CommunityDescriptions::Entries::find(std::size_t node, const Numbers& numbers,
                                          const Entry*& found) const {
  if (node >= sorted_) {
    const Entry& entry = entries_[node - sorted_];
    if ((!found || entry.order < found->order) && entry.matches(numbers)) found = &entry;
    return;
  }
  const Box& box = boxes_[node];
  if ((found && found->order < box.order) || !box.holds(numbers)) return;
  // The earlier half first: it may spare the other.
  const bool turned = boxAt(2 * node).order > boxAt(2 * node + 1).order;
  find(2 * node + turned, numbers, found);
  find(2 * node + !turned, numbers, found);
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
    OfAttribute& entries = large ? descriptions.large_ : descriptions.standard_;
    if (Entries* const grown = add(entries, entry)) descriptions.grown_.push_back(grown);
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
    const auto isDigit = [](char c) { return isAnyDigit(c) || (c >= '0' && c <= '9'); };
    if (text.size() > 10 || !std::ranges::all_of(text, isDigit) ||
        !std::ranges::any_of(text, isAnyDigit))
      return false;
    U64 least = 0, largest = 0;
    for (const char c : text) {
      least = 10 * least + (isAnyDigit(c) ? 0 : U64(c - '0'));
      largest = 10 * largest + (isAnyDigit(c) ? 9 : U64(c - '0'));
    }
    part = {Part::Form::digits, U32(std::min<U64>(least, most)), U32(std::min<U64>(largest, most)),
            text};
    return true;
  }

  /// The entries that it was added to; null for a plain one.
  static Entries* add(OfAttribute& entries, const Entry& entry) {
    Numbers numbers;
    for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = entry.parts[i].first;
    const auto isPlain = [](const Part& part) { return part.form == Part::Form::number; };
    if (std::ranges::all_of(entry.parts, isPlain)) {
      entries.plain.try_emplace(numbers, entry.text);
      return nullptr;
    }
    Entries& grown = isPlain(entry.parts[0]) ? entries.byFirst[numbers[0]] : entries.others;
    grown.add(entry);
    return &grown;
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
  std::ranges::sort(grown_);
  grown_.erase(std::unique(grown_.begin(), grown_.end()), grown_.end());
  for (Entries* const entries : grown_) entries->sort();
  grown_.clear();
  return faults;
}

CommunityDescriptions::Found CommunityDescriptions::find(const OfAttribute& entries,
                                                         const Numbers& numbers) const {
  if (const auto at = entries.plain.find(numbers); at != entries.plain.end()) return {at->second};
  const Entry* found = nullptr;
  if (const auto ofFirst = entries.byFirst.find(numbers[0]); ofFirst != entries.byFirst.end())
    found = ofFirst->second.find(numbers);
  if (!found) found = entries.others.find(numbers);
  if (!found) return {};
  return {found->text, found};
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

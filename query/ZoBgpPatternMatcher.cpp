#include "query/ZoBgpPatternMatcher.h"

#include <algorithm>

namespace Routing::Bgp {
namespace {

constexpr std::size_t leastSlots = 64;

// Expressions of so many conditions are worked off beforehand, for all answers that there may be.
constexpr std::size_t mostTabled = 12;

}  // namespace

PatternMatcher::PatternMatcher(CommunityPattern pattern)
    : pattern_(std::move(pattern)), slots_(leastSlots), lastSlot_(leastSlots - 1), answers_{0} {
  if (pattern_.conditions() <= mostTabled)
    for (Answers answers = 0; answers < Answers{1} << pattern_.conditions(); ++answers)
      truths_.push_back(pattern_.holds(answers));
  auto ofType = types_.begin();
  PathCommunities().forEachType([&]<class List>(const Mox::Ptr<const List>&) {
    *ofType++ = {pattern_.asks(List::pathAttribute), pattern_.answersWithout(List::pathAttribute)};
  });
}

bool PatternMatcher::matchesNew(const PathCommunities& path) {
  Answers answers = 0;
  auto ofType = types_.begin();
  path.forEachType([&](const auto& list) {
    if (ofType->asked) answers |= list ? answersOf(list) : ofType->without;
    ++ofType;
  });
  return holds(answers);
}

template <class List>
PatternMatcher::Answers PatternMatcher::answersOf(const Mox::Ptr<const List>& list) {
  const Slot slot = slots_[placeOf(list.get())];
  return slot ? answers_[slot.tag()] : remember(list);
}

/// Looks at the list. Everything that may throw comes before the list is known. Not inlined, for it
/// would make the usual case longer.
template <class List>
[[gnu::noinline]] PatternMatcher::Answers PatternMatcher::remember(
    const Mox::Ptr<const List>& list) {
  const Answers answers = pattern_.answersOf(*list);
  const auto known = answerNumbers_.find(answers);
  const U32 number = known != answerNumbers_.end() ? known->second : U32(answers_.size());
  if (number > Slot::mostTag) return answers;  // lists that differ so much are looked at each time
  if (number == answers_.size()) {
    answers_.push_back(answers);
    answerNumbers_.emplace(answers, number);
  }
  if (4 * (size_ + 1) > slots_.size()) grow(2 * slots_.size());
  std::get<std::vector<Mox::Ptr<const List>>>(held_).push_back(list);
  slots_[placeOf(list.get())] = Slot(number, list.get());
  ++size_;
  return answers;
}

void PatternMatcher::grow(std::size_t size) {
  std::vector<Slot> old(size);
  old.swap(slots_);
  lastSlot_ = size - 1;
  for (const Slot slot : old)
    if (slot) slots_[placeOf(slot.pointer())] = slot;
}

/// Numbers of answers stay: there are far fewer than lists.
void PatternMatcher::forgetUnused() {
  std::vector<Slot> kept;
  const auto keep = [&](auto& lists) {
    std::erase_if(lists, [&](const auto& list) {
      const bool unused = list->references() <= list->keep() + 1;
      if (!unused) kept.push_back(slots_[placeOf(list.get())]);
      return unused;
    });
  };
  kept.reserve(size_);
  std::apply([&](auto&... lists) { (keep(lists), ...); }, held_);
  std::ranges::fill(slots_, Slot());
  for (const Slot slot : kept) slots_[placeOf(slot.pointer())] = slot;
  size_ = kept.size();
}

}  // namespace Routing::Bgp

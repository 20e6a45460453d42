#include "query/ZoBgpPatternMatcher.h"

#include <algorithm>

namespace Routing::Bgp {
namespace {

constexpr std::size_t leastSlots = 64;

/// Addresses differ in their middle bits.
std::size_t placeOf(const void* list, std::size_t slots) {
  const auto address = U64(reinterpret_cast<std::uintptr_t>(list));
  return std::size_t(address * 0x9E3779B97F4A7C15 >> 32) & (slots - 1);
}

}  // namespace

PatternMatcher::PatternMatcher(CommunityPattern pattern)
    : pattern_(std::move(pattern)), slots_(leastSlots) {
  PathCommunities().forEachType([this]<class List>(const Mox::Ptr<const List>&) {
    types_.push_back(
        {pattern_.asks(List::pathAttribute), pattern_.answersWithout(List::pathAttribute)});
  });
}

bool PatternMatcher::matches(const PathCommunities& path) {
  Answers answers = 0;
  std::size_t type = 0;
  path.forEachType([&](const auto& list) {
    const OfType& ofType = types_[type++];
    if (ofType.asked) answers |= list ? answersOf(list) : ofType.without;
  });
  return pattern_.holds(answers);
}

template <class List>
PatternMatcher::Answers PatternMatcher::answersOf(const Mox::Ptr<const List>& list) {
  const Slot& slot = slotOf(list.get());
  return slot.list ? slot.answers : remember(list);
}

/// Looks at the list. Everything that may throw comes before anything is changed for good.
template <class List>
PatternMatcher::Answers PatternMatcher::remember(const Mox::Ptr<const List>& list) {
  const Slot slot{list.get(), pattern_.answersOf(*list)};
  if (2 * (size_ + 1) > slots_.size()) grow(2 * slots_.size());
  std::get<std::vector<Mox::Ptr<const List>>>(held_).push_back(list);
  slotOf(slot.list) = slot;
  ++size_;
  return slot.answers;
}

/// The slot of a list, or the free one where it belongs.
PatternMatcher::Slot& PatternMatcher::slotOf(const void* list) {
  for (std::size_t at = placeOf(list, slots_.size());; at = (at + 1) & (slots_.size() - 1))
    if (slots_[at].list == list || !slots_[at].list) return slots_[at];
}

void PatternMatcher::grow(std::size_t size) {
  std::vector<Slot> old(size);
  old.swap(slots_);
  for (const Slot& slot : old)
    if (slot.list) slotOf(slot.list) = slot;
}

void PatternMatcher::forgetUnused() {
  std::vector<Slot> kept;
  const auto keep = [&](auto& lists) {
    std::erase_if(lists, [&](const auto& list) {
      const bool unused = list->references() <= list->keep() + 1;
      if (!unused) kept.push_back(slotOf(list.get()));
      return unused;
    });
  };
  kept.reserve(size_);
  std::apply([&](auto&... lists) { (keep(lists), ...); }, held_);
  std::ranges::fill(slots_, Slot());
  for (const Slot& slot : kept) slotOf(slot.list) = slot;
  size_ = kept.size();
}

}  // namespace Routing::Bgp

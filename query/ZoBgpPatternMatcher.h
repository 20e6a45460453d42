// A pattern that remembers its answers: each list is looked at once, however many paths carry it.
//
//   PatternMatcher matcher(*CommunityPattern::parse("RT:65000:* and not no-export"));
//   for (const PathCommunities& path : table) if (matcher.matches(path)) use(path);
//   matcher.forgetUnused();       // now and then, where routes come and go
//
// 1. What is remembered is held: the address of a list that is known to the matcher is not given to
//    another. `forgetUnused` lets go of lists that nobody else holds any more.
// 2. A path whose lists are known costs a look-up for each list that the pattern asks for, and
//    allocates nothing. Beyond 524,288 different answers, lists with further ones are looked at
//    each time.
//
// Threads: one at a time.
#pragma once

#include <array>
#include <unordered_map>

#include "Mox/TaggedPointer.h"
#include "query/ZoBgpCommunityPattern.h"

namespace Routing::Bgp {

class PatternMatcher {
 public:
  /// Remembers nothing yet.
  explicit PatternMatcher(CommunityPattern pattern);

  /// As given to the constructor.
  const CommunityPattern& pattern() const { return pattern_; }
  /// Whether the pattern holds for the path. std::bad_alloc when a list is new and no memory is
  /// left; the matcher is as before then.
  bool matches(const PathCommunities& path) {
    Answers answers = 0;
    return recall(path, answers) ? holds(answers) : matchesNew(path);
  }

  /// How many lists are remembered.
  std::size_t lists() const { return size_; }
  /// Lets go of the lists that only this matcher holds. Cost: all lists remembered.
  void forgetUnused();

 private:
  using Answers = CommunityPattern::Answers;
  // A list, by its address, with the number of its answers; a free slot has none.
  using Slot = Mox::TaggedPointer<const Orv::DedupHandle>;
  /// A list type, as the pattern looks at it.
  struct OfType {
    bool asked = false;
    Answers without = 0;  ///< when a path has none
  };
  template <class... Lists>
  static std::tuple<std::vector<Mox::Ptr<const Lists>>...> holdersOf(
      const PathCommunitiesOf<Lists...>&);

  /// Gets the answers for a path. False when one of its lists is new.
  bool recall(const PathCommunities& path, Answers& answers) const {
    bool known = true;
    auto ofType = types_.begin();
    path.forEachType([&](const auto& list) {
      if (ofType->asked) {
        if (list) {
          const Slot slot = slots_[placeOf(list.get())];
          known &= bool(slot);
          answers |= answers_[slot.tag()];
        } else {
          answers |= ofType->without;
        }
      }
      ++ofType;
    });
    return known;
  }
  bool matchesNew(const PathCommunities& path);
  template <class List>
  Answers answersOf(const Mox::Ptr<const List>& list);
  template <class List>
  Answers remember(const Mox::Ptr<const List>& list);
  bool holds(Answers answers) const {
    return truths_.empty() ? pattern_.holds(answers) : truths_[answers];
  }

  /// The place of a list, or the free one where it belongs: a search ends at the first free one.
  std::size_t placeOf(const Orv::DedupHandle* list) const {
    // Addresses differ in their middle bits, which the product has from its 20th bit on.
    const auto address = U64(reinterpret_cast<std::uintptr_t>(list));
    for (std::size_t at = std::size_t(address * 0x9E3779B97F4A7C15 >> 20);; ++at)
      if (const Slot slot = slots_[at & lastSlot_]; slot.pointer() == list || !slot)
        return at & lastSlot_;
  }
  void grow(std::size_t size);

  const CommunityPattern pattern_;
  std::vector<U8> truths_;  // by answers; empty when there are too many
  std::array<OfType, std::tuple_size_v<decltype(holdersOf(PathCommunities()))>> types_;
  // A power of two, at most a quarter of them taken.
  std::vector<Slot> slots_;
  std::size_t lastSlot_;
  std::size_t size_ = 0;
  // Different answers, by number: most lists have the same few. A free slot has number 0.
  std::vector<Answers> answers_;
  std::unordered_map<Answers, U32> answerNumbers_;
  decltype(holdersOf(PathCommunities())) held_;
};

}  // namespace Routing::Bgp

// HeldLists of a type. All types have the same code, but for the memory that they take.
#pragma once

#include <algorithm>
#include <map>
#include <unordered_map>

#include "Descriptions.h"
#include "Hex.h"
#include "ListTypes.h"
#include "ListValues.h"
#include "Mox/Allocation.h"
#include "ValueUses.h"

namespace bgpcomm {

Fault faultOf(const Routing::Bgp::WireFault& fault);

/// The octets of all values, one behind the other.
template <class List>
void appendOctets(std::vector<U8>& octets, const List& list) {
  list.forEachValue([&](const auto& value) {
    const auto one = octetsOf(value);
    octets.insert(octets.end(), one.begin(), one.end());
  });
}

/// The memory that lists of a type take. Values that are numbers stand in the list itself.
template <class List>
struct ListMemory {
  using Tables = Routing::Bgp::CommunityListTables<List>;
  /// Whether an object of this type is part of such lists.
  static bool counts(const Mox::Type& type) { return type.isA(List::type); }
  /// The octets of the tables themselves, without their members.
  static U64 ofTables(const Tables& tables) { return tables.lists()->dedupHashTable()->octets(); }
  /// The octets of a list that a path shares with no other.
  static U64 ofOwnList(const List& list) {
    return sizeof(List) + list.comms() * sizeof(typename List::Value);
  }
};

/// Values that are objects count too, and the groups of the list.
template <Routing::Bgp::InternsValues List>
struct ListMemory<List> {
  using Tables = Routing::Bgp::CommunityListTables<List>;
  static bool counts(const Mox::Type& type) {
    return type.isA(List::type) || type.isA(List::Group::type) || type.isA(List::Value::type) ||
           (std::same_as<List, Routing::Bgp::ExtCommList> &&
            type.isA(Routing::Bgp::RtExtCommListLifeTimeNotifier::type));
  }
  static U64 ofTables(const Tables& tables) {
    U64 octets = tables.lists()->dedupHashTable()->octets() +
                 tables.values()->dedupHashTable()->octets() +
                 tables.lists()->extCommClassificationListDedupTable()->octets();
    if constexpr (requires { tables.lists()->rtExtCommClassificationListDedupTable(); })
      octets += tables.lists()->rtExtCommClassificationListDedupTable()->octets();
    return octets;
  }
  static U64 ofOwnList(const List& list) {
    U64 octets = sizeof(List) + list.comms() * (2 * sizeof(void*) + sizeof(typename List::Value));
    for (const auto& group : list.classificationLists().present())
      octets += sizeof(group) + sizeof *group;
    return octets;
  }
};

template <class List>
class HeldListsOf final : public HeldLists {
 public:
  explicit HeldListsOf(const CommunityTables& tables) : tables_(tables.of<List>()) {}

  Holding hold(Octets value) override {
    auto interned = tables_.dedupWire(value);
    if (!interned) return {faultOf(*interned.fault)};
    communities_ += value.size() / valueSizeOf<List>;
    return {{}, addPaths(std::move(interned.list), 1)};
  }

  void add(const HeldLists& lists) override {
    const auto& other = static_cast<const HeldListsOf&>(lists);
    std::vector<U8> octets;
    for (const auto& [list, held] : other.held_) {
      octets.clear();
      if (&tables_ != &other.tables_) appendOctets(octets, *list);
      addPaths(octets.empty() ? held.list : tables_.dedupWire(octets).list, held.paths);
    }
    communities_ += other.communities_;
  }

  void figures(ListFigures& figures, std::size_t mostUsed) const override {
    figures.communities = communities_;
    figures.internedOctets = memory() - memoryBefore_ + Memory::ofTables(tables_);
    figures.distinctLists = tables_.lists()->dedupHashTable()->members();
    for (const auto& [list, held] : held_) {
      figures.attributes += held.paths;
      figures.unsharedOctets += held.paths * Memory::ofOwnList(*list);
    }
    ValueUses<valueSizeOf<List>> uses;
    for (const auto& entry : held_) {
      const Held& held = entry.second;
      held.list->forEachValue([&](const auto& value) { uses.add(octetsOf(value), held.paths); });
    }
    uses.addUp();
    for (const auto& use : uses.mostUsed(mostUsed)) addMostUsed(figures, use.first, use.second);
    if constexpr (requires { tables_.lists()->notifyingRtExtCommListCollection(); }) {
      figures.distinctRouteTargetSets =
          tables_.lists()->notifyingRtExtCommListCollection()->rtExtCommLists();
      auto& types = figures.types.emplace();
      uses.forEach([&](Octets value) { ++types[typeText(value)]; });
    }
    figures.distinctValues = uses.distinct();
  }

  ListDetails details() const override {
    KindUses kinds(List::pathAttribute);
    std::map<const void*, RouteTargetSet> sets;
    for (const auto& entry : held_) {
      const Held& held = entry.second;
      kinds.startList(held.paths);
      held.list->forEachValue([&](const auto& value) { kinds.add(octetsOf(value)); });
      if constexpr (requires { held.list->classificationLists(); })
        if (const auto targets =
                held.list->classificationList(Routing::Bgp::extCommClassificationRouteTarget)) {
          RouteTargetSet& set = sets[targets.get()];
          if (set.lists++ == 0)
            for (const auto& target : targets->commVector())
              (set.text += set.text.empty() ? "" : " ") += textOf(*target);
          set.paths += held.paths;
        }
    }
    ListDetails details{kinds.all(), {}};
    for (auto& entry : sets) details.routeTargetSets.push_back(std::move(entry.second));
    std::ranges::sort(details.routeTargetSets, [](const auto& a, const auto& b) {
      return a.paths != b.paths ? a.paths > b.paths : a.text < b.text;
    });
    return details;
  }

  std::vector<StoredUse> save(MoxStash::StoreWriter& writer) const override {
    std::vector<StoredUse> uses;
    for (const auto& [list, held] : held_)
      uses.push_back({writer.add(held.list, held.paths), held.paths});
    return uses;
  }
  MoxStash::RecordType recordType() const override { return List::recordType; }
  void restore(const MoxStash::StoreManager& store, const StoredUse& use) override {
    auto list = tables_.dedupStored(use.list, store);
    if (list->empty() || list->comms() > Routing::Bgp::maxAttributeOctets / valueSizeOf<List>)
      store.fail("a list is one that no attribute can have");
    addPaths(std::move(list), use.paths);
  }

 private:
  using Memory = ListMemory<List>;
  struct Held {
    Mox::Ptr<const List> list;
    U64 paths = 0;
    U32 number = 0;
  };

  /// Returns the number of the list.
  U32 addPaths(Mox::Ptr<const List> list, U64 paths) {
    Held& held = held_[list.get()];
    if (!held.list) {
      held.list = std::move(list);
      held.number = U32(held_.size() - 1);
    }
    held.paths += paths;
    return held.number;
  }

  void addMostUsed(ListFigures& figures, Octets value, U64 paths) const {
    const auto list = tables_.dedupWire(value).list;  // of this one value
    const auto community = communityOf(List::pathAttribute, value);
    forEachCommunity(*list, [&](const auto& one) {
      figures.mostUsed.push_back(
          {textOf(one), hex(value), kindName(community), descriptionOf(community), paths});
    });
  }

  static U64 memory() {
    U64 octets = 0;
    for (const Mox::AllocationCount& count : Mox::allocationCounts()) {
      const Mox::Type* const type = Mox::Type::find(count.type);
      if (type && Memory::counts(*type)) octets += count.octets;
    }
    return octets;
  }

  const Routing::Bgp::CommunityListTables<List>& tables_;
  const U64 memoryBefore_ = memory();
  std::unordered_map<const List*, Held> held_;
};

}  // namespace bgpcomm

// The intern table of one kind of lists, as the commands see it: all that is the same for every
// kind. What differs is a struct:
//
//   struct StandardKind {
//     using List = ...;                              an interned list
//     static constexpr auto attributeType = ...;     its path attribute
//     static constexpr std::size_t valueSize = 4;    octets of a value
//     static counts(type);                           whether objects of this type are what lists of
//                                                    the kind are made of
//     intern(octets);                                the list of an attribute's value, or the fault
//     restore(reference, store);                     a stored list
//     table();                                       the intern table of the lists
//     octets();                                      what all intern tables take
//     static attribute(list);                        the attribute that it writes
//     static ownOctets(list);                        what a path's own list would take
//     text(list, names);  valueText(octets, names);
//     addFigures(figures, uses);                     if it has figures of its own
//   };
#pragma once

#include <unordered_map>

#include "Attributes.h"
#include "Kinds.h"
#include "Mox/Allocation.h"
#include "ValueUses.h"
#include "community-list/ZoBgpCommunityListWire.h"

namespace bgpcomm {

template <class Kind>
class ListTable final : public KindTable {
 public:
  std::optional<Fault> hold(Octets value) override {
    auto interned = kind_.intern(value);
    if (!interned) return faultOf(*interned.fault);
    addPaths(std::move(interned.list), 1);
    communities_ += value.size() / Kind::valueSize;
    return std::nullopt;
  }

  void add(const KindTable& table) override {
    const auto& other = static_cast<const ListTable&>(table);
    for (const auto& [list, held] : other.held_)
      addPaths(kind_.intern(valueOf(asOctets(Kind::attribute(*list)))).list, held.paths);
    communities_ += other.communities_;
  }

  void figures(KindFigures& figures) const override {
    figures.communities = communities_;
    figures.internedOctets = memory() - memoryBefore_ + kind_.octets();
    figures.distinctLists = kind_.table().members();
    for (const auto& [list, held] : held_) {
      figures.attributes += held.paths;
      figures.unsharedOctets += held.paths * Kind::ownOctets(*list);
    }
    ValueUses<Kind::valueSize> uses;
    for (const auto& [list, held] : held_)
      uses.add(valueOf(asOctets(Kind::attribute(*list))), held.paths);
    uses.addUp();
    constexpr std::size_t shown = 10;
    for (const auto& [value, paths] : uses.mostUsed(shown))
      figures.mostUsed.push_back({kind_.valueText(value, true), paths});
    if constexpr (requires { kind_.addFigures(figures, uses); }) kind_.addFigures(figures, uses);
    figures.distinctValues = uses.distinct();
  }

  Text text(Octets value, bool names) const override {
    return textOf(value, [&](const List& list) { return kind_.text(list, names); });
  }

  std::vector<std::string> texts(Octets value, bool names) const override {
    std::vector<std::string> texts;
    const auto interned = kind_.intern(value);
    if (!interned) return texts;
    const std::string attribute = Kind::attribute(*interned.list);
    for (Octets left = valueOf(asOctets(attribute)); !left.empty();
         left = left.subspan(Kind::valueSize))
      texts.push_back(kind_.valueText(left.first(Kind::valueSize), names));
    return texts;
  }

  Text serialized(Octets value) const override { return textOf(value, &Kind::attribute); }

  std::vector<StoredUse> save(MoxStash::StoreWriter& writer) const override {
    std::vector<StoredUse> uses;
    for (const auto& [list, held] : held_)
      uses.push_back({writer.add(held.list, held.paths), held.paths});
    return uses;
  }
  MoxStash::RecordType recordType() const override { return List::recordType; }
  void restore(const MoxStash::StoreManager& store, const StoredUse& use) override {
    auto list = kind_.restore(use.list, store);
    if (list->empty() || list->comms() > Routing::Bgp::maxAttributeOctets / Kind::valueSize)
      store.fail("a list is one that no attribute can have");
    addPaths(std::move(list), use.paths);
  }

 private:
  using List = typename Kind::List;
  struct Held {
    typename List::PtrConst list;
    U64 paths = 0;
  };

  void addPaths(typename List::PtrConst list, U64 paths) {
    Held& held = held_[list.get()];
    if (!held.list) held.list = std::move(list);
    held.paths += paths;
  }

  template <class Make>
  Text textOf(Octets value, Make make) const {
    const auto interned = kind_.intern(value);
    if (!interned) return {faultOf(*interned.fault), interned.fault->toStrep()};
    return {std::nullopt, make(*interned.list)};
  }

  static Fault faultOf(const Routing::Bgp::WireFault& fault) {
    using Reason = Routing::Bgp::WireFault::Reason;
    return fault.reason == Reason::linkBandwidth ? Fault::linkBandwidth : Fault::attrLength;
  }

  static U64 memory() {
    U64 octets = 0;
    for (const Mox::AllocationCount& count : Mox::allocationCounts()) {
      const Mox::Type* const type = Mox::Type::find(count.type);
      if (type && Kind::counts(*type)) octets += count.octets;
    }
    return octets;
  }

  U64 memoryBefore_ = memory();
  Kind kind_;
  std::unordered_map<const List*, Held> held_;
};

}  // namespace bgpcomm

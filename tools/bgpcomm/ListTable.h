// The intern table of one kind of lists, as the commands see it: all that is the same for every
// kind. What differs is a struct:
//
//   struct StandardKind {
//     using List = ...;                              an interned list
//     static constexpr std::size_t valueSize = 4;    octets of a value
//     static constexpr std::string_view memory[];    names under which the library counts the
//                                                    memory of what a list is made of
//     intern(octets);                                the list of an attribute's value, or the fault
//     table();                                       the intern table of the lists
//     octets();                                      what all intern tables take
//     static attribute(list);                        the attribute that it writes
//     static ownOctets(list);                        what a path's own list would take
//     static text(list, names);  static valueText(octets, names);
//     static readValue(text);                        as KindRow has it
//   };
#pragma once

#include <unordered_map>

#include "Attributes.h"
#include "Kinds.h"
#include "Mox/Allocation.h"
#include "ValueUses.h"

namespace bgpcomm {

template <class Kind>
class ListTable final : public KindTable {
 public:
  std::optional<std::string> hold(Octets value) override {
    auto interned = kind_.intern(value);
    if (!interned) return interned.fault->toStrep();
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
      figures.mostUsed.push_back({Kind::valueText(value, true), paths});
    figures.distinctValues = uses.distinct();
  }

  Text text(Octets value, bool names) const override {
    return textOf(value, [names](const List& list) { return Kind::text(list, names); });
  }

  std::vector<std::string> texts(Octets value, bool names) const override {
    std::vector<std::string> texts;
    const auto interned = kind_.intern(value);
    if (!interned) return texts;
    const std::string attribute = Kind::attribute(*interned.list);
    for (Octets left = valueOf(asOctets(attribute)); !left.empty();
         left = left.subspan(Kind::valueSize))
      texts.push_back(Kind::valueText(left.first(Kind::valueSize), names));
    return texts;
  }

  Text serialized(Octets value) const override { return textOf(value, &Kind::attribute); }

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
    if (!interned) return {false, interned.fault->toStrep()};
    return {true, make(*interned.list)};
  }

  static U64 memory() {
    U64 octets = 0;
    for (const std::string_view type : Kind::memory) octets += Mox::allocationCount(type).octets;
    return octets;
  }

  U64 memoryBefore_ = memory();
  Kind kind_;
  std::unordered_map<const List*, Held> held_;
  U64 communities_ = 0;
};

}  // namespace bgpcomm

// The extended communities of both families (RFC 4360, RFC 5701) as ListTable wants them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Kinds.h"
#include "ReaderNames.h"
#include "ValueUses.h"
#include "community-list/ZoBgpCommunityListExtended.h"
#include "community-list/ZoBgpCommunityListExtendedTable.h"
#include "ip6/ExtCommIp6ListDedupTable.h"
#include "parse/BgpParseExtComm.h"

namespace bgpcomm {

/// A family: its lists, how its tables are made, how its octets are read.
struct EightOctets {
  using List = Routing::Bgp::ExtCommList;
  using Group = Routing::Bgp::ExtCommClassificationList;
  using Value = Routing::Bgp::ExtComm;
  static constexpr auto makeValues = Routing::Bgp::extCommDedupTableFactory;
  static constexpr auto makeLists = Routing::Bgp::extCommListDedupTableFactory;
};
struct TwentyOctets {
  using List = Routing::Bgp::ExtCommIp6List;
  using Group = Routing::Bgp::ExtCommIp6ClassificationList;
  using Value = Routing::Bgp::ExtCommIp6;
  static constexpr auto makeValues = Routing::Bgp::extCommIp6DedupTableFactory;
  static constexpr auto makeLists = Routing::Bgp::extCommIp6ListDedupTableFactory;
};

/// The parser that all tables of the process share.
const Routing::Bgp::BgpParseExtendedCommunityRule::Ptr& sharedParser();

template <class Family>
class ExtendedKind {
 public:
  using List = typename Family::List;
  using Value = typename Family::Value;
  static constexpr std::size_t valueSize = sizeof(typename Value::Content);
  static constexpr auto attributeType = List::Family::attribute;

  auto intern(Octets value) const { return List::dedupWire(lists_, values_, value); }
  auto restore(MoxStash::StoreReference list, const MoxStash::StoreManager& store) const {
    return List::dedupStored(lists_, values_, list, store);
  }
  const Orv::DedupHashTableUnorderedSet& table() const { return *lists_->dedupHashTable(); }
  U64 octets() const {
    U64 octets = table().octets() + values_->dedupHashTable()->octets() +
                 lists_->extCommClassificationListDedupTable()->octets();
    if constexpr (requires { lists_->rtExtCommClassificationListDedupTable(); })
      octets += lists_->rtExtCommClassificationListDedupTable()->octets();
    return octets;
  }
  static bool counts(const Mox::Type& type) {
    return type.isA(List::type) || type.isA(Family::Group::type) || type.isA(Value::type) ||
           (std::same_as<Value, Routing::Bgp::ExtComm> &&
            type.isA(Routing::Bgp::RtExtCommListLifeTimeNotifier::type));
  }

  static std::string attribute(const List& list) { return list.serialize(true); }
  /// List, groups and values.
  static U64 ownOctets(const List& list) {
    U64 octets = sizeof(List);
    for (const auto& comm : list.commVector()) octets += 2 * sizeof(comm) + sizeof *comm;
    for (const auto& group : list.classificationLists().present())
      octets += sizeof(group) + sizeof *group;
    return octets;
  }
  std::string text(const List& list, bool) const {
    std::string text;
    for (const auto& comm : list.commVector())
      (text += text.empty() ? "" : " ") += valueText(*comm);
    return text;
  }
  std::string valueText(Octets octets, bool) const {
    return valueText(*values_->dedupContent(
        Routing::Bgp::fromWireOctets<typename List::Content>(octets.data())));
  }

  /// What only extended communities have.
  void addFigures(KindFigures& figures, const ValueUses<valueSize>& uses) const;

 private:
  static std::string valueText(const Value& value);

  Mox::Ptr<typename List::Family::ValueTable> values_ = Family::makeValues(sharedParser());
  Mox::Ptr<typename List::Family::Table> lists_ = Family::makeLists();
};

}  // namespace bgpcomm

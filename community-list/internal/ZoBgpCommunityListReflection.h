// The names by which reflection knows extended lists and their groups.
#pragma once

#include "Mox/ValueText.h"
#include "community-list/ZoBgpCommunityListFamilyList.h"

namespace Routing::Bgp {

template <class Group>
std::vector<Mox::Attribute> extCommGroupAttributes() {
  using Mox::attribute, Mox::operation;
  return {attribute<&Group::classification>("classification"),
          Mox::collection<&Group::toStrep>("comm"),
          attribute<&Group::comms>("comms"),
          attribute<&Group::commVectorSorted>("commVectorSorted"),
          attribute<&Group::toStrep>("toStrep"),
          attribute<&Group::hash>("hash"),
          operation("commIs"),
          operation("compare"),
          operation("commSnapshot"),
          operation("dedup")};
}

/// `more` is what only one family has.
template <class List>
std::vector<Mox::Attribute> extCommListAttributes(std::vector<Mox::Attribute> more) {
  using Mox::attribute, Mox::operation;
  std::vector<Mox::Attribute> attributes{
      Mox::collection<&List::toStrep>("comm"),
      Mox::collection<&List::groupsText>("classificationList"),
      attribute<&List::commVectorSorted>("commVectorSorted"),
      attribute<&List::totalCommunities>("totalCommunities"),
      attribute<&List::totalTransitiveCommunities>("totalTransitiveCommunities"),
      attribute<&List::comms>("comms"),
      attribute<&List::empty>("empty"),
      attribute<&List::commsStringForm>("commsStringForm"),
      attribute<&List::toStrep>("toStrep"),
      attribute<&List::hash>("hash")};
  for (const std::string_view name :
       {"commIs", "append", "appendClassificationList", "expectedCommunityCountIs", "sortComms",
        "lookupExtComm", "commSnapshot", "dedup", "serialize", "sendNonTransExtComms", "compare"})
    attributes.push_back(operation(name));
  attributes.insert(attributes.end(), more.begin(), more.end());
  return attributes;
}

}  // namespace Routing::Bgp

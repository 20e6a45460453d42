// The values of lists: their octets on the wire, and their texts.
//
//   octetsOf(0xfde80064u);        // fd e8 00 64
//   textOf(0xffffff01u);          // "NO_EXPORT", or "no-export", as TextStyle says
//   textOf(community);            // "route-target-as2:65000:100", or "RT:65000:100"
#pragma once

#include <array>
#include <string>
#include <utility>

#include "ReaderNames.h"
#include "community-list/ZoBgpCommunityListLarge.h"
#include "community/ZoBgpCommunity.h"
#include "ip6/ExtCommIp6.h"
#include "kinds/ZoBgpKindTable.h"

namespace bgpcomm {

// The octets on the wire.

std::array<U8, 4> octetsOf(U32 community);
std::array<U8, 12> octetsOf(const Acl::CommunityValue& community);
auto octetsOf(const auto& content) requires requires { content.octets(); }
{ return content.octets(); }
auto octetsOf(const auto& community) requires requires { community.getContent(); }
{ return community.getContent().octets(); }

// The texts.

/// `65000:100`, or the name of a well-known community.
std::string textOf(U32 community);
/// `65000:1:2`.
std::string textOf(const Acl::CommunityValue& community);
/// In policies: the short policy text of a community that has a meaning, or else the long one,
/// which names type and subtype. Octets without a meaning are shorter in hex, as
/// `0x0400000000000001`. Different communities may have the same text: `RT:100:1` does not tell how
/// the AS number is written. Canonical texts do tell.
std::string textOf(const Routing::Bgp::ExtComm& community);
std::string textOf(const Routing::Bgp::ExtCommIp6& community);

/// The row of a community's kind among those in use, or null. It lives as long as the process.
const Routing::Bgp::Kind* kindOf(const Routing::Bgp::AnyCommunity& community);

/// The identifier of a community's kind; `standard` and `large` of those that have no name,
/// `unknown` of one without a row.
std::string kindName(const Routing::Bgp::AnyCommunity& community);

/// How many octets each value of a list has.
template <class List>
inline constexpr std::size_t valueSizeOf =
    sizeof(octetsOf(std::declval<const typename List::Value&>()));

/// Calls `use` with each community of a list, as `textOf` takes it.
void forEachCommunity(const auto& list, auto use) {
  if constexpr (requires { list.values(); })
    for (const auto& value : list.values()) use(value);
  else
    for (const auto& value : list.commVector()) use(*value);
}

}  // namespace bgpcomm

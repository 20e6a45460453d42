#pragma once

#include <functional>

#include "parse/BgpParseExtComm.h"

namespace parsing {

using namespace Routing::Bgp;
using Mox::U16;
using Mox::U32;
using Mox::U64;
using Mox::U8;

/// Allocations by this program, and every library in it, so far.
extern thread_local std::size_t allocations;

/// Parses a content of these two octets and nothing more.
inline Mox::Ptr<ExtComm> parse(const BgpParseExtendedCommunityRule::Ptr& parser, U32 octets) {
  return parser->parseExtendedCommunity(ExtCommContent(U64{octets} << 48));
}

/// The message of the exception that `act` raises; empty when it raises none of the class.
template <class Exception>
std::string raised(const std::function<void()>& act) {
  try {
    act();
  } catch (const Exception& exception) {
    return exception.what();
  }
  return {};
}

}  // namespace parsing

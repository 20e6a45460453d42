// Prefixes as BGP encodes them: how long one is, and its text; and the texts of what else a path
// has.
#pragma once

#include <optional>
#include <string>

#include "mrt/Mrt.h"

namespace Routing::Mrt {

/// Takes the next prefix of the family (its path identifier already taken) off the cursor; nothing
/// when it does not fit.
std::optional<Octets> takeNlri(Cursor& in, Family family);

/// `192.0.2.0/24`, `2001:db8::/32`; of other families `25/70:0203616263`, in hex.
std::string nlriText(Family family, Octets nlri);

/// `192.0.2.1`, `2001:db8::1`; `-` for an address of another length.
std::string addressText(Octets address);

/// `2026-07-30T14:00:00Z`, with microseconds where the dump has them.
std::string timeText(const Path& path);

struct Prefix {
  Family family;
  Octets nlri;
  std::optional<U32> pathId;
};
/// Visits everything that a path announces. False when a prefix cannot be read; those before it
/// have been visited.
bool visitPrefixes(const Path& path, const std::function<void(const Prefix&)>& visit);
/// The same for everything that a path withdraws.
bool visitWithdrawn(const Path& path, const std::function<void(const Prefix&)>& visit);

}  // namespace Routing::Mrt

// The prefixes that a path announces and withdraws (RFC 4271, section 4.3; RFC 4760), one after the
// other, and their texts.
//
//   PrefixReader prefixes = PrefixReader::announced(*path);
//   while (const Prefix* prefix = prefixes.next())
//     std::cout << nlriText(prefix->addressFamily, prefix->nlri);
//   if (prefixes.cutShort()) ...
//
// Threads: a reader is used by one thread at a time; functions by any.
#pragma once

#include <optional>
#include <string>

#include "mrt/Mrt.h"

namespace Routing::Mrt {

/// One prefix, as the message or the table has it.
struct Prefix {
  AddressFamily addressFamily;
  Octets nlri;                ///< as encoded, its length included, the path identifier not
  std::optional<U32> pathId;  ///< with ADD-PATH (RFC 7911)
};

/// Reads, of an UPDATE, first the IPv4 prefixes of the message, then those of MP_REACH_NLRI or
/// MP_UNREACH_NLRI; of a RIB entry its one prefix. Nothing is allocated.
class PrefixReader {
 public:
  /// The octets of `path` must live as long as the reader.
  static PrefixReader announced(const Path& path);
  /// The same for the withdrawn ones.
  static PrefixReader withdrawn(const Path& path);

  /// The next prefix, valid until the next call; null behind the last. Octets behind a prefix
  /// that does not fit cannot be read: the prefixes of the attribute come next then.
  const Prefix* next();
  /// Whether a prefix did not fit. Known once `next` has returned null.
  bool cutShort() const { return cutShort_; }

 private:
  PrefixReader(const Path& path, Octets nlri, U8 attribute);

  void start(Octets nlri, AddressFamily family);
  bool startAttribute();

  Octets attributes_;
  U8 attribute_;  // whose prefixes come next; 0: none
  bool messageAddPath_;

  Cursor in_{Octets()};
  bool addPath_ = false;
  Prefix prefix_;
  bool single_ = false;  // the prefix of a RIB entry, not yet delivered
  bool cutShort_ = false;
};

/// Calls `visit(prefix)` for each. False when a prefix does not fit; those before it have been
/// visited.
template <class Visit>
bool visitPrefixes(const Path& path, const Visit& visit) {
  PrefixReader prefixes = PrefixReader::announced(path);
  while (const Prefix* const prefix = prefixes.next()) visit(*prefix);
  return !prefixes.cutShort();
}
/// The same for the withdrawn ones.
template <class Visit>
bool visitWithdrawn(const Path& path, const Visit& visit) {
  PrefixReader prefixes = PrefixReader::withdrawn(path);
  while (const Prefix* const prefix = prefixes.next()) visit(*prefix);
  return !prefixes.cutShort();
}

/// Takes the next prefix of the address family off the cursor, behind its path identifier; nothing
/// when it does not fit.
std::optional<Octets> takeNlri(Cursor& in, AddressFamily family);

/// Whether prefixes of the family are an address and a length, and no more.
bool isPlain(AddressFamily family);

/// `192.0.2.0/24`, `2001:db8::/32`, `10.0.0.0/8 multicast`; with labels (RFC 8277)
/// `10.1.0.0/16 label 100/200`, of VPNs (RFC 4364) `64600:1 10.1.0.0/16 label 100`, of EVPN (RFC
/// 7432, RFC 9136) `mac 64600:1 02:00:5e:00:53:01 192.0.2.1 tag 0 label 100`, of flow
/// specifications (RFC 8955) `destination 10.0.0.0/24 protocol =6 port >=80&<90,=443`. Of other
/// families, and where the octets are none of theirs, in hex: `25/65:0011...`. A withdrawn one has
/// no label. REQUIRES: `nlri` is what `takeNlri` takes.
std::string nlriText(AddressFamily family, Octets nlri);

/// Adds the prefix to those in the text, with a blank between; or ", " before one that has blanks
/// itself. A path identifier stands behind `#`.
void appendPrefix(std::string& text, const Prefix& prefix);

/// `192.0.2.1`, `2001:db8::1`; `-` for an address that has neither 4 nor 16 octets.
std::string addressText(Octets address);

/// `2026-07-30T14:00:00Z`, with microseconds where the dump has them:
/// `2026-07-30T14:00:00.000001Z`.
std::string timeText(const Path& path);

}  // namespace Routing::Mrt

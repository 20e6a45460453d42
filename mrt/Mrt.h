// Cuts MRT dumps (RFC 6396, RFC 8050) into records and records into paths.
//
//   RecordReader reader(input);
//   PathCutter cutter;
//   while (std::optional<Record> record = reader.next())
//     if (!cutter.cut(*record, [](const Path& path) { ... })) ...  // a field does not fit
//
// A path is one RIB entry, or one UPDATE message that carries path attributes. All spans point
// into the input's buffer and live until the next record; nothing is allocated per path.
//
//   record:  0 time  4 type  6 subtype  8 length of the body  12 body
//
// Understood are TABLE_DUMP, TABLE_DUMP_V2, BGP4MP and BGP4MP_ET. Records of other types have no
// paths.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "mrt/Input.h"
#include "mrt/Octets.h"

namespace Routing::Mrt {

struct Record {
  U64 number = 0;  ///< counted from 1
  U64 offset = 0;  ///< of its header, in plain octets
  U32 seconds = 0;
  U16 type = 0;
  U16 subtype = 0;
  Octets body;
  bool tooLong = false;  ///< passed by, the body is left empty
};

class RecordReader {
 public:
  /// Room for the 65,535 entries that a record can have, of about 1,000 octets each. Longer ones
  /// are passed by: else a small compressed file could take gigabytes of memory.
  static constexpr std::size_t longestRecord = 64 * 1024 * 1024;

  explicit RecordReader(Input& input) : input_(input) {}

  /// Nothing at the end of the file, and when the file ends inside a record.
  std::optional<Record> next();
  /// Complete records so far.
  U64 records() const { return records_; }
  /// After the last record: how many octets of the unfinished one are there, and of how many it
  /// would be. Nothing when the file ended with a record.
  struct Truncation {
    U64 offset;  ///< of its header
    U64 there;
    U64 wanted;
  };
  const std::optional<Truncation>& truncation() const { return truncation_; }

 private:
  bool take(Record& record, std::size_t size);

  Input& input_;
  std::size_t shown_ = 0;
  U64 records_ = 0;
  std::optional<Truncation> truncation_;
};

/// Address family and what is carried in it (RFC 4760).
struct Family {
  U16 afi = 0;
  U8 safi = 0;
};
inline constexpr U16 afiIpv4 = 1;
inline constexpr U16 afiIpv6 = 2;
inline constexpr U8 safiUnicast = 1;
inline constexpr U8 safiMulticast = 2;

struct Peer {
  U32 asNumber = 0;
  /// 4 or 16 octets; empty when the dump does not say.
  Octets address;
};

struct Path {
  U32 seconds = 0;
  std::optional<U32> microseconds;
  Peer peer;
  Octets attributes;

  bool fromTable = false;  ///< A RIB entry; otherwise an UPDATE message.
  /// With ADD-PATH (RFC 7911): of the message's prefixes each carries its own identifier.
  bool addPath = false;
  /// Of a RIB entry: its family, prefix and identifier.
  Family family;
  std::optional<U32> pathId;
  /// The encoded prefix of a RIB entry, or the IPv4 prefixes at the end of an UPDATE.
  Octets nlri;
  /// The IPv4 prefixes that an UPDATE withdraws.
  Octets withdrawn;
};

class PathCutter {
 public:
  using Visit = std::function<void(const Path&)>;
  /// Who follows a table wants `all`: an UPDATE that only withdraws may have no attributes.
  enum class Updates { withAttributes, all };

  explicit PathCutter(Updates updates = Updates::withAttributes) : updates_(updates) {}

  /// Calls `visit` for each path. False when a field goes beyond its record; the paths before it
  /// have been visited. A PEER_INDEX_TABLE is remembered for the records after it.
  bool cut(const Record& record, const Visit& visit);

 private:
  struct IndexedPeer {
    U32 asNumber;
    std::array<U8, 16> address;
    U8 addressSize;
  };

  bool readPeers(Cursor in);
  bool cutTableDump(const Record& record, const Visit& visit) const;
  bool cutTableDumpV2(const Record& record, const Visit& visit);
  bool cutEntries(Cursor in, Path& path, bool addPath, const Visit& visit) const;
  Peer peer(U16 index) const;

  const Updates updates_;
  std::vector<IndexedPeer> peers_;
};

}  // namespace Routing::Mrt

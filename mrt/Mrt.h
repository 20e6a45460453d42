// Reads MRT dumps (RFC 6396, RFC 8050) path by path: a RIB entry, or an UPDATE message.
//
//   Input input("rib.bz2");
//   PathReader reader(input);
//   while (const Path* path = reader.next()) use(path->attributes);
//   if (input.failure() || reader.truncation() || reader.badRecords()) ...
//
// 1. Understood are TABLE_DUMP, TABLE_DUMP_V2, BGP4MP and BGP4MP_ET. Records that are passed over,
//    being of another type or no route's, are counted by what they are: `Skipped`. Changes of
//    state that are passed over count, whole or cut short.
// 2. A record whose fields do not fit into it is bad: the paths before the fault are delivered, the
//    record is counted, and reading goes on with the next. The file's end inside a record, and
//    damaged compressed data, end the reading.
// 3. Spans point into the input's buffer and are valid until the next path is asked for. Nothing is
//    allocated per path.
//
//   record:  0 time  4 type  6 subtype  8 length of the body  12 body
//
// Threads: a reader is used by one thread at a time. Different readers share nothing.
// Errors: std::bad_alloc when a record or a peer table does not fit into memory.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "mrt/Input.h"
#include "mrt/Octets.h"

namespace Routing::Mrt {

/// Where a record stands in a file.
struct Position {
  U64 record = 1;  ///< counted from 1
  U64 octet = 0;   ///< of the record's header, in decompressed octets
};

/// An MRT record: its header in host order, its body as it lies there.
struct Record {
  U64 number = 0;   ///< counted from 1
  U64 offset = 0;   ///< of its header, in decompressed octets
  U32 seconds = 0;  ///< since 1970, UTC
  U16 type = 0;
  U16 subtype = 0;
  U32 length = 0;  ///< of the body, in octets
  Octets body;
  bool tooLong = false;  ///< Longer than `RecordReader::longestRecord`; the body is left empty.
};

/// Cuts a file into records, whatever their type.
class RecordReader {
 public:
  /// Octets, the header included. Room for the 65,535 entries that a record can have, of about
  /// 1,000 octets each. Longer records are passed by: a small compressed file could take gigabytes
  /// of memory.
  static constexpr std::size_t longestRecord = 64 * 1024 * 1024;

  /// REQUIRES: `input` lives as long as the reader.
  explicit RecordReader(Input& input) : input_(input) {}

  /// The next record, valid until the next call. Nothing at the end of the file, and when the file
  /// ends inside a record.
  std::optional<Record> next();
  /// Complete records so far.
  U64 records() const { return records_; }
  /// The type of the file's first record, while no record has been of any type of MRT's.
  const std::optional<U16>& foreignType() const { return foreignType_; }
  /// The position of the record that was read last, or that could not be read to its end.
  const Position& position() const { return position_; }
  /// How much of the unfinished record at the file's end is there, in octets.
  struct Truncation {
    U64 offset;  ///< of its header
    U64 there;
    U64 wanted;
    /// The type of the file's first record, where no record is of any type of MRT's.
    std::optional<U16> foreignType;
    /// The file begins like a text.
    bool isText = false;
    /// `ends inside a record, 6 of 12 octets`, or that it is no MRT file.
    std::string text() const;
  };
  /// Known after the last record; nothing when the file ended with a record.
  const std::optional<Truncation>& truncation() const { return truncation_; }

 private:
  bool take(Record& record, std::size_t size);

  Input& input_;
  std::size_t shown_ = 0;
  U64 records_ = 0;
  Position position_;
  std::optional<U16> foreignType_;
  bool isText_ = false;
  std::optional<Truncation> truncation_;
};

/// Address family and subsequent address family (RFC 4760): which prefixes there are.
struct AddressFamily {
  U16 afi = 0;
  U8 safi = 0;
  friend bool operator==(const AddressFamily&, const AddressFamily&) = default;
};
inline constexpr U16 afiIpv4 = 1;
inline constexpr U16 afiIpv6 = 2;
inline constexpr U8 safiUnicast = 1;
inline constexpr U8 safiMulticast = 2;

/// The BGP speaker that a path was learned from.
struct Peer {
  U32 asNumber = 0;
  /// 4 or 16 octets; empty when the dump does not say.
  Octets address;
};

/// The states of a session with a peer before and after a change (RFC 6396, section 4.4.1), by the
/// numbers of RFC 4271: from 1, Idle, to 6, Established.
///
/// All that the peer has announced is void then (RFC 4271, section 8): when a session ends, and
/// when one comes up, which begins with nothing, though the end of the one before was not recorded.
struct StateChange {
  U16 before = 0;
  U16 after = 0;
};

/// A RIB entry, an UPDATE message, or a change of the peer's state.
struct Path {
  U32 seconds = 0;  ///< since 1970, UTC
  /// The microseconds of BGP4MP_ET, below 1,000,000. Nothing when the record holds a greater
  /// number, which is no part of a second: such a record is read like one without.
  std::optional<U32> microseconds;
  Peer peer;
  /// As in an UPDATE, one after the other: `Bgp::PathAttributeReader` takes them apart.
  Octets attributes;
  /// AS numbers in AS_PATH and AGGREGATOR have 4 octets, else 2 (RFC 6396, sections 4.2 to 4.4).
  bool as4 = false;

  bool fromTable = false;  ///< A RIB entry.
  /// Only with `PathCutter::Updates::all`. Such a path has peer and time, and nothing else.
  std::optional<StateChange> stateChange;
  /// An UPDATE that the collector sent to the peer.
  bool sent = false;
  /// With ADD-PATH (RFC 7911): of the message's prefixes each carries its own identifier.
  bool addPath = false;
  /// The address family of the prefixes in `nlri` and `withdrawn`.
  AddressFamily addressFamily;
  std::optional<U32> pathId;  ///< of a RIB entry
  /// The encoded prefix of a RIB entry, or the IPv4 prefixes at the end of an UPDATE. `Nlri.h`
  /// reads these and those in the attributes.
  Octets nlri;
  /// The IPv4 prefixes that an UPDATE withdraws.
  Octets withdrawn;
};

/// Records without paths, by what they are. Types, subtypes: RFC 6396; messages: RFC 4271.
enum class Skipped : U8 {
  ospf,               ///< types 11, 48 and 49
  isis,               ///< types 32 and 33
  deprecatedType,     ///< types 0 to 10 (RFC 6396, appendix B); some hold routes
  otherType,          ///< types without a meaning
  geoPeerTable,       ///< where the peers of a TABLE_DUMP_V2 are (RFC 6397)
  deprecatedSubtype,  ///< BGP4MP_ENTRY, BGP4MP_SNAPSHOT: a table's entry, a table's file
  otherSubtype,       ///< of a type that is read, without a meaning
  /// Changes of state, whole or cut short. With `PathCutter::Updates::all` only those that are cut
  /// short or of no known peer.
  stateChange,
  open,          ///< messages of this type
  notification,  ///< the same
  keepalive,     ///< the same
  routeRefresh,  ///< the same (RFC 2918)
  otherMessage,  ///< of a type without a meaning
  /// UPDATEs without attributes: withdrawals of IPv4, End-of-RIB. Paths with `Updates::all`.
  noAttributes,
};
inline constexpr std::size_t skippedSorts = std::size_t(Skipped::noAttributes) + 1;
/// How many there are of each.
using SkippedCounts = std::array<U64, skippedSorts>;

/// Cuts one record after the other into paths. `PathReader` does so for a file.
///
///   PathCutter cutter;
///   cutter.start(record);
///   while (const Path* path = cutter.next()) use(*path);
///   if (cutter.bad()) ...
class PathCutter {
 public:
  /// Which UPDATEs are paths.
  enum class Updates {
    withAttributes,  ///< Only UPDATEs that carry path attributes.
    /// UPDATEs that only withdraw, too, and changes of the peers' states: what it takes to follow a
    /// table.
    all,
  };

  /// No record yet.
  explicit PathCutter(Updates updates = Updates::withAttributes) : updates_(updates) {}
  PathCutter(const PathCutter&) = delete;
  PathCutter& operator=(const PathCutter&) = delete;

  /// Goes on with this record, whatever is left of the one before. A PEER_INDEX_TABLE is remembered
  /// for the records after it.
  /// REQUIRES: the record's body lives until its last path has been used.
  void start(const Record& record);
  /// The record's next path, valid until the next call of a function; null behind the last.
  const Path* next();
  /// Whether a field does not fit into the record, or the record is too long. Known once `next` has
  /// returned null.
  bool bad() const { return bad_; }
  /// The record's sort, if it is passed over. Known once it is started.
  const std::optional<Skipped>& skipped() const { return skipped_; }

  /// Calls `visit(path)` for each path of the record. False when the record is bad.
  template <class Visit>
  bool cut(const Record& record, const Visit& visit) {
    start(record);
    while (const Path* const path = next()) visit(*path);
    return !bad();
  }

 private:
  struct IndexedPeer {
    U32 asNumber;
    std::array<U8, 16> address;
    U8 addressSize;
  };

  bool startRecord(const Record& record);
  bool startTableDump(const Record& record);
  bool startTableDumpV2(const Record& record);
  bool startEntries(AddressFamily family, bool addPath);
  bool startBgp4mp(const Record& record);
  bool startMessage();
  bool readPeers();
  bool readStateChange();
  bool skip(Skipped what);
  const Path* nextEntry();
  Peer peer(U16 index) const;

  const Updates updates_;
  std::vector<IndexedPeer> peers_;

  // State of the record.
  Path path_;
  Cursor in_{Octets()};
  bool ready_ = false;    // `path_` is complete and not yet delivered
  unsigned entries_ = 0;  // of a RIB, not yet read
  bool entryIds_ = false;
  bool bad_ = false;
  std::optional<Skipped> skipped_;
  std::array<U8, 17> encoded_;  // the prefix of TABLE_DUMP
};

/// The paths of a file.
class PathReader {
 public:
  using Updates = PathCutter::Updates;

  /// Calls `onBadRecord` with each record whose fields do not fit, or that is too long, and
  /// `onRecord` whenever a record has been read.
  /// REQUIRES: `input` lives as long as the reader.
  explicit PathReader(Input& input, Updates updates = Updates::withAttributes,
                      std::function<void(const Record&)> onBadRecord = {},
                      std::function<void()> onRecord = {})
      : records_(input),
        cutter_(updates),
        onBadRecord_(std::move(onBadRecord)),
        onRecord_(std::move(onRecord)) {}

  /// The next path, valid until the next call; null at the end of the file, and where the file
  /// cannot be read on: `truncation` and the input's `failure` say why.
  const Path* next();

  /// The position of the record that the last path came from; behind the last path, that of the
  /// file's end.
  const Position& position() const { return records_.position(); }
  /// Complete records so far.
  U64 records() const { return records_.records(); }
  /// Records so far whose fields do not fit, or that are too long.
  U64 badRecords() const { return badRecords_; }
  /// The position of the first of them.
  const std::optional<Position>& firstBadRecord() const { return firstBadRecord_; }
  /// Records so far that are passed over. Bad ones are not among them.
  const SkippedCounts& skipped() const { return skipped_; }
  /// As of `RecordReader`.
  const std::optional<U16>& foreignType() const { return records_.foreignType(); }
  /// As of `RecordReader`.
  const std::optional<RecordReader::Truncation>& truncation() const {
    return records_.truncation();
  }

 private:
  RecordReader records_;
  Record record_;
  PathCutter cutter_;
  const std::function<void(const Record&)> onBadRecord_;
  const std::function<void()> onRecord_;
  U64 badRecords_ = 0;
  std::optional<Position> firstBadRecord_;
  SkippedCounts skipped_{};
};

}  // namespace Routing::Mrt

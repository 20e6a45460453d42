#include "mrt/Mrt.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "mrt/Nlri.h"

namespace Routing::Mrt {

namespace {

enum Type : U16 { tableDump = 12, tableDumpV2 = 13, bgp4mp = 16, bgp4mpEt = 17 };

constexpr std::size_t recordHeaderSize = 12;

std::optional<std::size_t> addressSize(U16 afi) {
  if (afi == afiIpv4) return 4;
  if (afi == afiIpv6) return 16;
  return std::nullopt;
}

/// The form of a subtype of TABLE_DUMP_V2.
struct RibForm {
  AddressFamily addressFamily;  ///< afi 0: the record says.
  bool addPath;
};
std::optional<RibForm> ribForm(U16 subtype) {
  switch (subtype) {
    case 2:
      return RibForm{{afiIpv4, safiUnicast}, false};
    case 3:
      return RibForm{{afiIpv4, safiMulticast}, false};
    case 4:
      return RibForm{{afiIpv6, safiUnicast}, false};
    case 5:
      return RibForm{{afiIpv6, safiMulticast}, false};
    case 6:
      return RibForm{{}, false};
    case 8:
      return RibForm{{afiIpv4, safiUnicast}, true};
    case 9:
      return RibForm{{afiIpv4, safiMulticast}, true};
    case 10:
      return RibForm{{afiIpv6, safiUnicast}, true};
    case 11:
      return RibForm{{afiIpv6, safiMulticast}, true};
    case 12:
      return RibForm{{}, true};
    default:
      return std::nullopt;
  }
}

/// The form of a subtype of BGP4MP.
struct MessageForm {
  bool as4;
  bool addPath;
  bool stateChange = false;
  bool sent = false;
};
std::optional<MessageForm> messageForm(U16 subtype) {
  switch (subtype) {
    case 0:
      return MessageForm{false, false, true};
    case 5:
      return MessageForm{true, false, true};
    case 1:
    case 6:
      return MessageForm{false, false, false, subtype == 6};
    case 4:
    case 7:
      return MessageForm{true, false, false, subtype == 7};
    case 8:
    case 10:
      return MessageForm{false, true, false, subtype == 10};
    case 9:
    case 11:
      return MessageForm{true, true, false, subtype == 11};
    default:
      return std::nullopt;
  }
}

Skipped skippedType(U16 type) {
  switch (type) {
    case 11:
    case 48:
    case 49:
      return Skipped::ospf;
    case 32:
    case 33:
      return Skipped::isis;
    default:
      return type <= 10 ? Skipped::deprecatedType : Skipped::otherType;
  }
}

Skipped skippedMessage(U8 type) {
  switch (type) {
    case 1:
      return Skipped::open;
    case 3:
      return Skipped::notification;
    case 4:
      return Skipped::keepalive;
    case 5:
      return Skipped::routeRefresh;
    default:
      return Skipped::otherMessage;
  }
}

/// Whether a text may begin so: the mark of UTF-16, or UTF-8 without control characters but white
/// space. A character at the end may be cut short.
bool beginsText(Octets octets) {
  const std::string_view start = asText(octets.first(2));
  if (start == "\xff\xfe" || start == "\xfe\xff") return true;
  int follow = 0;  // octets of the character that are still to come
  for (const U8 octet : octets) {
    const int ones = std::countl_one(octet);
    if (follow > 0 ? ones != 1 : ones == 1 || ones > 4) return false;
    follow = follow > 0 ? follow - 1 : std::max(ones - 1, 0);
    if ((octet < ' ' && (octet < '\t' || octet > '\r')) || octet == 0x7f) return false;
  }
  return true;
}

}  // namespace

std::optional<Record> RecordReader::next() {
  input_.take(std::exchange(shown_, 0));
  position_ = {records_ + 1, input_.offset()};
  const Octets header = input_.ahead(recordHeaderSize);
  Record record;
  record.offset = input_.offset();
  if (header.size() < recordHeaderSize) {
    if (!header.empty())
      truncation_ =
          Truncation{record.offset, header.size(), recordHeaderSize, foreignType_, isText_};
    return std::nullopt;
  }
  if (records_ == 0) isText_ = beginsText(header.first(recordHeaderSize));
  Cursor in(header);
  record.seconds = in.u32();
  record.type = in.u16();
  record.subtype = in.u16();
  record.length = in.u32();
  if (!take(record, recordHeaderSize + std::size_t(record.length))) return std::nullopt;
  record.number = ++records_;
  return record;
}

/// The whole record of `size` octets; false when the file ends inside it.
bool RecordReader::take(Record& record, std::size_t size) {
  record.tooLong = size > longestRecord;
  U64 there = 0;
  if (record.tooLong) {
    there = input_.skip(size);
  } else if (const Octets whole = input_.ahead(size); whole.size() >= size) {
    record.body = whole.subspan(recordHeaderSize, size - recordHeaderSize);
    there = shown_ = size;
  } else {
    there = whole.size();
  }
  // Types of RFC 6396, section 4, and of appendix B, which are used no more. Those below 5 only
  // marked a dump's start and end; zeros and version numbers of other formats look like them.
  constexpr U16 lowestType = 5, highestType = 49;
  if (records_ == 0) foreignType_ = record.type;
  if (record.type >= lowestType && record.type <= highestType) foreignType_.reset();
  if (there < size) truncation_ = Truncation{record.offset, there, size, foreignType_, isText_};
  return there == size;
}

std::string RecordReader::Truncation::text() const {
  const std::string octets = std::to_string(there) + " of " + std::to_string(wanted) + " octets";
  if (offset == 0 && there < recordHeaderSize)
    return "not an MRT file, or cut short: " + octets + " of a header";
  if (!foreignType) return "ends inside a record, " + octets;
  return "not an MRT file: its first record would be of type " + std::to_string(*foreignType) +
         (isText ? "; a text file?" : "") + (offset > 0 ? "; ends inside another" : "");
}

void PathCutter::start(const Record& record) {
  path_ = {};
  path_.seconds = record.seconds;
  in_ = Cursor(record.body);
  ready_ = false;
  entries_ = 0;
  skipped_.reset();
  bad_ = record.tooLong || !startRecord(record);
}

const Path* PathCutter::next() {
  if (entries_ > 0) return nextEntry();
  return std::exchange(ready_, false) ? &path_ : nullptr;
}

/// False when a field in front of the paths does not fit.
bool PathCutter::startRecord(const Record& record) {
  switch (record.type) {
    case tableDump:
      return startTableDump(record);
    case tableDumpV2:
      return startTableDumpV2(record);
    case bgp4mp:
    case bgp4mpEt:
      return startBgp4mp(record);
    default:
      return skip(skippedType(record.type));
  }
}

/// Notes that the record is passed over, which is no fault of it.
bool PathCutter::skip(Skipped what) {
  skipped_ = what;
  return true;
}

//   view 2, sequence 2, prefix 4 or 16, its length 1, status 1, time 4, peer 4 or 16, AS 2,
//   path attributes 2 + n
bool PathCutter::startTableDump(const Record& record) {
  const std::optional<std::size_t> size = addressSize(record.subtype);
  if (!size) return skip(Skipped::otherSubtype);
  in_.take(4);
  const Octets prefix = in_.take(*size);
  const U8 length = in_.u8();
  in_.take(1);
  path_.fromTable = true;
  path_.addressFamily = {record.subtype, safiUnicast};
  path_.seconds = in_.u32();
  path_.peer.address = in_.take(*size);
  path_.peer.asNumber = in_.u16();
  path_.attributes = in_.take(in_.u16());
  if (!in_ || length > 8 * *size) return false;

  // Brought into the form that the other records have.
  encoded_[0] = length;
  std::copy(prefix.begin(), prefix.end(), encoded_.begin() + 1);
  path_.nlri = Octets(encoded_).first(1 + (length + 7u) / 8);
  ready_ = true;
  return true;
}

bool PathCutter::startTableDumpV2(const Record& record) {
  constexpr U16 peerIndexTable = 1, geoPeerTable = 7;
  if (record.subtype == peerIndexTable) return readPeers();
  const std::optional<RibForm> form = ribForm(record.subtype);
  if (form) return startEntries(form->addressFamily, form->addPath);
  return skip(record.subtype == geoPeerTable ? Skipped::geoPeerTable : Skipped::otherSubtype);
}

//   sequence 4, prefix, count 2, then the entries
bool PathCutter::startEntries(AddressFamily family, bool addPath) {
  in_.take(4);
  if (family.afi == 0) {
    family.afi = in_.u16();
    family.safi = in_.u8();
  }
  const std::optional<Octets> nlri = takeNlri(in_, family);
  if (!nlri) return false;
  path_.fromTable = true;
  path_.as4 = true;
  path_.addressFamily = family;
  path_.nlri = *nlri;
  entryIds_ = addPath;
  entries_ = in_.u16();
  return bool(in_);
}

//   peer 2, time 4, with ADD-PATH identifier 4, path attributes 2 + n
const Path* PathCutter::nextEntry() {
  --entries_;
  path_.peer = peer(in_.u16());
  path_.seconds = in_.u32();
  if (entryIds_) path_.pathId = in_.u32();
  path_.attributes = in_.take(in_.u16());
  if (in_) return &path_;
  entries_ = 0;
  bad_ = true;
  return nullptr;
}

//   collector 4, view 2 + n, count 2, then each: type 1 (bit 0 IPv6, bit 1 AS of four octets),
//   identifier 4, address, AS
bool PathCutter::readPeers() {
  in_.take(4);
  in_.take(in_.u16());
  peers_.clear();
  for (unsigned left = in_.u16(); left > 0; --left) {
    const U8 type = in_.u8();
    in_.take(4);
    const Octets address = in_.take(type & 1 ? 16 : 4);
    IndexedPeer peer{type & 2 ? in_.u32() : in_.u16(), {}, U8(address.size())};
    if (!in_) return false;
    std::copy(address.begin(), address.end(), peer.address.begin());
    peers_.push_back(peer);
  }
  return bool(in_);
}

Peer PathCutter::peer(U16 index) const {
  if (index >= peers_.size()) return {};
  const IndexedPeer& peer = peers_[index];
  return {peer.asNumber, Octets(peer.address).first(peer.addressSize)};
}

//   AS of the peer (2 or 4 octets), AS of the collector, interface 2, AFI 2, both addresses
bool PathCutter::startBgp4mp(const Record& record) {
  if (record.type == bgp4mpEt) {
    const U32 microseconds = in_.u32();
    if (in_ && microseconds < 1'000'000) path_.microseconds = microseconds;
  }
  const std::optional<MessageForm> form = messageForm(record.subtype);
  if (!form) {
    const bool isOld = record.subtype == 2 || record.subtype == 3;  // a table's entry, its file
    return in_ && skip(isOld ? Skipped::deprecatedSubtype : Skipped::otherSubtype);
  }
  if (form->stateChange && updates_ != Updates::all) return in_ && skip(Skipped::stateChange);

  path_.peer.asNumber = form->as4 ? in_.u32() : in_.u16();
  in_.take(form->as4 ? 4 : 2);
  in_.take(2);
  const std::optional<std::size_t> size = addressSize(in_.u16());
  if (in_ && size) {
    path_.peer.address = in_.take(*size);
    in_.take(*size);
  }
  if (form->stateChange) return readStateChange();
  path_.as4 = form->as4;
  path_.sent = form->sent;
  path_.addPath = form->addPath;
  path_.addressFamily = {afiIpv4, safiUnicast};
  return in_ && size && startMessage();
}

/// Old collectors wrote changes of state without addresses. These say nothing of a peer that can be
/// told from others and are passed by.
bool PathCutter::readStateChange() {
  const StateChange change{in_.u16(), in_.u16()};
  ready_ = in_ && !path_.peer.address.empty();
  if (!ready_) return skip(Skipped::stateChange);
  path_.stateChange = change;
  return true;
}

//   message:  0 marker  16 length, header included  18 type
//   UPDATE:   2 + n withdrawn prefixes, 2 + n path attributes, prefixes
bool PathCutter::startMessage() {
  constexpr std::size_t headerSize = 19;
  constexpr U8 update = 2;

  in_.take(16);
  const std::size_t length = in_.u16();
  const U8 type = in_.u8();
  if (!in_ || length < headerSize || length - headerSize > in_.left().size()) return false;
  if (type != update) return skip(skippedMessage(type));

  Cursor body(in_.take(length - headerSize));
  path_.withdrawn = body.take(body.u16());
  path_.attributes = body.take(body.u16());
  path_.nlri = body.left();
  if (!body) return false;
  if (path_.attributes.empty() && updates_ != Updates::all) return skip(Skipped::noAttributes);
  ready_ = true;
  return true;
}

const Path* PathReader::next() {
  for (;;) {
    if (const Path* const path = cutter_.next()) return path;
    if (cutter_.bad()) {
      if (badRecords_++ == 0) firstBadRecord_ = records_.position();
      if (onBadRecord_) onBadRecord_(record_);
    }
    const std::optional<Record> next = records_.next();
    record_ = next.value_or(Record{});
    cutter_.start(record_);
    if (!next) return nullptr;
    if (onRecord_) onRecord_();
    if (const auto& skipped = cutter_.skipped()) ++skipped_[std::size_t(*skipped)];
  }
}

}  // namespace Routing::Mrt

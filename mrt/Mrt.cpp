#include "mrt/Mrt.h"

#include <algorithm>
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

/// What a subtype of TABLE_DUMP_V2 holds.
struct RibForm {
  Family family;  ///< afi 0: the record says.
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

/// What a subtype of BGP4MP holds. Changes of state (0 and 5) have no paths and are not looked at:
/// old collectors wrote them without addresses.
struct MessageForm {
  bool as4;
  bool addPath;
};
std::optional<MessageForm> messageForm(U16 subtype) {
  switch (subtype) {
    case 1:
    case 6:
      return MessageForm{false, false};
    case 4:
    case 7:
      return MessageForm{true, false};
    case 8:
    case 10:
      return MessageForm{false, true};
    case 9:
    case 11:
      return MessageForm{true, true};
    default:
      return std::nullopt;
  }
}

//   message:  0 marker  16 length, header included  18 type
//   UPDATE:   2 + n withdrawn prefixes, 2 + n path attributes, prefixes
bool cutMessage(Cursor in, Path& path, PathCutter::Updates updates,
                const PathCutter::Visit& visit) {
  constexpr std::size_t headerSize = 19;
  constexpr U8 update = 2;

  in.take(16);
  const std::size_t length = in.u16();
  const U8 type = in.u8();
  if (!in || length < headerSize || length - headerSize > in.left().size()) return false;
  if (type != update) return true;

  Cursor body(in.take(length - headerSize));
  path.withdrawn = body.take(body.u16());
  path.attributes = body.take(body.u16());
  path.nlri = body.left();
  if (!body) return false;
  if (updates == PathCutter::Updates::all || !path.attributes.empty()) visit(path);
  return true;
}

//   0 AS of the peer (2 or 4 octets), AS of the collector, interface, family, both addresses
bool cutBgp4mp(const Record& record, PathCutter::Updates updates, const PathCutter::Visit& visit) {
  Cursor in(record.body);
  Path path;
  path.seconds = record.seconds;
  if (record.type == bgp4mpEt) path.microseconds = in.u32();
  const std::optional<MessageForm> form = messageForm(record.subtype);
  if (!form) return bool(in);

  path.peer.asNumber = form->as4 ? in.u32() : in.u16();
  in.take(form->as4 ? 4 : 2);
  in.take(2);
  const std::optional<std::size_t> size = addressSize(in.u16());
  if (!in || !size) return false;
  path.peer.address = in.take(*size);
  in.take(*size);
  path.addPath = form->addPath;
  path.family = {afiIpv4, safiUnicast};
  return in && cutMessage(in, path, updates, visit);
}

}  // namespace

std::optional<Record> RecordReader::next() {
  input_.take(std::exchange(shown_, 0));
  const Octets header = input_.ahead(recordHeaderSize);
  Record record;
  record.offset = input_.offset();
  if (header.size() < recordHeaderSize) {
    if (!header.empty()) truncation_ = Truncation{record.offset, header.size(), recordHeaderSize};
    return std::nullopt;
  }
  Cursor in(header);
  record.seconds = in.u32();
  record.type = in.u16();
  record.subtype = in.u16();
  if (!take(record, recordHeaderSize + std::size_t(in.u32()))) return std::nullopt;
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
  if (there < size) truncation_ = Truncation{record.offset, there, size};
  return there == size;
}

bool PathCutter::cut(const Record& record, const Visit& visit) {
  if (record.tooLong) return false;
  switch (record.type) {
    case tableDump:
      return cutTableDump(record, visit);
    case tableDumpV2:
      return cutTableDumpV2(record, visit);
    case bgp4mp:
    case bgp4mpEt:
      return cutBgp4mp(record, updates_, visit);
    default:
      return true;
  }
}

//   view 2, sequence 2, prefix 4 or 16, its length 1, status 1, time 4, peer 4 or 16, AS 2,
//   path attributes 2 + n
bool PathCutter::cutTableDump(const Record& record, const Visit& visit) const {
  const std::optional<std::size_t> size = addressSize(record.subtype);
  if (!size) return true;
  Cursor in(record.body);
  in.take(4);
  const Octets prefix = in.take(*size);
  const U8 length = in.u8();
  in.take(1);
  Path path;
  path.fromTable = true;
  path.family = {record.subtype, safiUnicast};
  path.seconds = in.u32();
  path.peer.address = in.take(*size);
  path.peer.asNumber = in.u16();
  path.attributes = in.take(in.u16());
  if (!in || length > 8 * *size) return false;

  // Brought into the form that the other records have.
  std::array<U8, 17> encoded{length};
  std::copy(prefix.begin(), prefix.end(), encoded.begin() + 1);
  path.nlri = Octets(encoded).first(1 + (length + 7u) / 8);
  visit(path);
  return true;
}

bool PathCutter::cutTableDumpV2(const Record& record, const Visit& visit) {
  constexpr U16 peerIndexTable = 1;

  Cursor in(record.body);
  if (record.subtype == peerIndexTable) return readPeers(in);
  const std::optional<RibForm> form = ribForm(record.subtype);
  if (!form) return true;

  in.take(4);
  Path path;
  path.fromTable = true;
  path.family = form->family;
  if (path.family.afi == 0) {
    path.family.afi = in.u16();
    path.family.safi = in.u8();
  }
  const std::optional<Octets> nlri = takeNlri(in, path.family);
  if (!nlri) return false;
  path.nlri = *nlri;
  return cutEntries(in, path, form->addPath, visit);
}

//   count 2, then each: peer 2, time 4, with ADD-PATH identifier 4, path attributes 2 + n
bool PathCutter::cutEntries(Cursor in, Path& path, bool addPath, const Visit& visit) const {
  for (unsigned left = in.u16(); left > 0; --left) {
    path.peer = peer(in.u16());
    path.seconds = in.u32();
    if (addPath) path.pathId = in.u32();
    path.attributes = in.take(in.u16());
    if (!in) return false;
    visit(path);
  }
  return bool(in);
}

//   collector 4, view 2 + n, count 2, then each: type 1 (bit 0 IPv6, bit 1 AS of four octets),
//   identifier 4, address, AS
bool PathCutter::readPeers(Cursor in) {
  in.take(4);
  in.take(in.u16());
  peers_.clear();
  for (unsigned left = in.u16(); left > 0; --left) {
    const U8 type = in.u8();
    in.take(4);
    const Octets address = in.take(type & 1 ? 16 : 4);
    IndexedPeer peer{type & 2 ? in.u32() : in.u16(), {}, U8(address.size())};
    if (!in) return false;
    std::copy(address.begin(), address.end(), peer.address.begin());
    peers_.push_back(peer);
  }
  return bool(in);
}

Peer PathCutter::peer(U16 index) const {
  if (index >= peers_.size()) return {};
  const IndexedPeer& peer = peers_[index];
  return {peer.asNumber, Octets(peer.address).first(peer.addressSize)};
}

}  // namespace Routing::Mrt

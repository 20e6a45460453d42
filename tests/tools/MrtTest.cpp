#include "tools/bgpcomm/Mrt.h"

#include "TestOctets.h"
#include "tools/bgpcomm/Nlri.h"
#include "tools/bgpcomm/Reading.h"

namespace bgpcomm {
namespace {

const Bytes attributes = octets("40010100");
const Bytes peerTable =
    mrtRecord(13, 1,
              octets("0a000001 0000 0003"
                     "02 0a0000fe c0000209 0000fc58"                             // AS of 4 octets
                     "00 0a0000fe c000020a fde8"                                 // AS of 2 octets
                     "03 0a0000fe 20010db8000000000000000000000001 0001fc59"));  // IPv6

std::string pathText(const Path& path) {
  std::string text = addressText(path.peer.address) + ' ' + std::to_string(path.peer.asNumber);
  if (path.microseconds) text += " us=" + std::to_string(*path.microseconds);
  const bool whole = visitPrefixes(path, [&](const Prefix& prefix) {
    text += ' ' + nlriText(prefix.family, prefix.nlri);
    if (prefix.pathId) text += '#' + std::to_string(*prefix.pathId);
  });
  return text + (whole ? " " : " ? ") + hex(path.attributes) + '\n';
}

/// One line per path, `bad` for a record that cannot be cut, and how the file ended.
std::string cutAll(const Bytes& file) {
  const TemporaryFile stored(file);
  Input input(stored.name());
  RecordReader reader(input);
  PathCutter cutter;
  std::string text;
  while (const std::optional<Record> record = reader.next())
    if (!cutter.cut(*record, [&](const Path& path) { text += pathText(path); })) text += "bad\n";
  if (reader.truncation()) text += "truncated\n";
  return text;
}

struct Case {
  const char* what;
  Bytes file;
  const char* paths;
};

void expectPaths(const std::vector<Case>& cases) {
  for (const Case& c : cases) EXPECT_EQ(cutAll(c.file), c.paths) << c.what;
}

TEST(Mrt, CutsTables) {
  const Bytes ip4 = octets("00000001 18 0a0102");
  const Bytes ip6 = octets("00000001 20 20010db8");
  const auto entry = [](U16 peer, const Bytes& id = "") {
    return number(peer, 2) + octets("6553f100") + id + counted(attributes, 2);
  };
  const Bytes addPath = number(7, 4);
  const Bytes two = number(2, 2) + entry(0) + entry(1);
  expectPaths({
      {"IPv4 unicast", peerTable + mrtRecord(13, 2, ip4 + two),
       "192.0.2.9 64600 10.1.2.0/24 40010100\n192.0.2.10 65000 10.1.2.0/24 40010100\n"},
      {"IPv6 multicast, a peer of IPv6",
       peerTable + mrtRecord(13, 5, ip6 + number(1, 2) + entry(2)),
       "2001:db8::1 130137 2001:db8::/32 40010100\n"},
      {"no table of peers, no such peer", mrtRecord(13, 2, ip4 + number(1, 2) + entry(9)),
       "- 0 10.1.2.0/24 40010100\n"},
      {"ADD-PATH", mrtRecord(13, 8, ip4 + number(1, 2) + entry(0, addPath)),
       "- 0 10.1.2.0/24#7 40010100\n"},
      {"generic, EVPN", mrtRecord(13, 6, octets("00000001 0019 46 0203616263") + two),
       "- 0 25/70:0203616263 40010100\n- 0 25/70:0203616263 40010100\n"},
      {"generic with ADD-PATH, labelled VPN",
       mrtRecord(13, 12, octets("00000001 0001 80 08ff") + number(1, 2) + entry(0, addPath)),
       "- 0 1/128:08ff#7 40010100\n"},
      {"TABLE_DUMP",
       mrtRecord(
           12, 1,
           octets("0000 0001 0a010200 18 01 6553f100 c0000209 fc58") + counted(attributes, 2)),
       "192.0.2.9 64600 10.1.2.0/24 40010100\n"},
      {"an entry without attributes is a path",
       mrtRecord(13, 2, ip4 + number(1, 2) + octets("0000 6553f100 0000")), "- 0 10.1.2.0/24 \n"},
      {"fewer entries than said", mrtRecord(13, 2, ip4 + number(3, 2) + entry(0)),
       "- 0 10.1.2.0/24 40010100\nbad\n"},
      {"attributes go beyond the record",
       mrtRecord(13, 2, ip4 + number(1, 2) + octets("0000 6553f100 0005 40010100")), "bad\n"},
      {"prefix of 33 bits", mrtRecord(13, 2, octets("00000001 21 0a01020304") + two), "bad\n"},
      {"prefix of 33 bits, old form",
       mrtRecord(12, 1, octets("0000 0001 0a010200 21 01 6553f100 c0000209 fc58 0000")), "bad\n"},
      {"table of peers cut short", mrtRecord(13, 1, octets("0a000001 0000 0001 02 0a0000fe c0")),
       "bad\n"},
      {"unknown types and subtypes",
       mrtRecord(13, 99, "x") + mrtRecord(12, 9, "") + mrtRecord(11, 1, "x"), ""},
  });
}

TEST(Mrt, CutsMessages) {
  const Bytes nlri = octets("180a0102 20c0000201");
  const Bytes message = update(attributes, nlri);
  const Bytes reach = octets("800e0f 0002 01 04 20010db8 00 20 20010db8 00");
  const Bytes short4 = octets("fc58 fc59 0001 0001 c0000201 c0000202");
  const Bytes keepalive = Bytes(16, '\xff') + octets("0013 04");
  Bytes longer = message;
  longer[17] = char(longer[17] + 1);
  expectPaths({
      {"AS of 4 octets", messageRecord(message),
       "192.0.2.1 64600 10.1.2.0/24 192.0.2.1/32 40010100\n"},
      {"AS of 2 octets, sent by the collector", mrtRecord(16, 6, short4 + message),
       "192.0.2.1 64600 10.1.2.0/24 192.0.2.1/32 40010100\n"},
      {"microseconds", mrtRecord(17, 1, number(999999, 4) + short4 + message),
       "192.0.2.1 64600 us=999999 10.1.2.0/24 192.0.2.1/32 40010100\n"},
      {"ADD-PATH", messageRecord(update(attributes, octets("00000007 180a0102")), 9),
       "192.0.2.1 64600 10.1.2.0/24#7 40010100\n"},
      {"ADD-PATH under a subtype without",
       messageRecord(update(attributes, octets("00000002 18ac1100"))),
       "192.0.2.1 64600 172.17.0.0/24#2 40010100\n"},
      {"ADD-PATH that is none", messageRecord(update(attributes, octets("180a0102")), 9),
       "192.0.2.1 64600 10.1.2.0/24 40010100\n"},
      {"bits behind a prefix", messageRecord(update(attributes, octets("0d0b0d"))),
       "192.0.2.1 64600 11.8.0.0/13 40010100\n"},
      {"MP_REACH_NLRI", messageRecord(update(reach, "")),
       "192.0.2.1 64600 2001:db8::/32 ::/0 800e0f0002010420010db8002020010db800\n"},
      {"withdrawals only", messageRecord(update("", "", octets("180a0102"))), ""},
      {"another message, a change of state",
       messageRecord(keepalive) + messageRecord("", 5) + mrtRecord(16, 0, ""), ""},
      {"prefix cut short", messageRecord(update(attributes, octets("180a01"))),
       "192.0.2.1 64600 ? 40010100\n"},
      {"message longer than its record", messageRecord(longer), "bad\n"},
      {"message shorter than its header",
       messageRecord(Bytes(16, '\xff') + octets("0012 02 0000 0000")), "bad\n"},
      {"attributes longer than the message",
       messageRecord(Bytes(16, '\xff') + octets("0017 02 0000 0001")), "bad\n"},
      {"withdrawals longer than the message",
       messageRecord(Bytes(16, '\xff') + octets("0017 02 0001 0000")), "bad\n"},
      {"unknown family", mrtRecord(16, 4, Bytes(10, '\0') + octets("ffff") + message), "bad\n"},
      {"no room for microseconds", mrtRecord(17, 4, "abc"), "bad\n"},
  });
}

TEST(Mrt, TakesPrefixesOfEveryForm) {
  const struct {
    Family family;
    const char* prefix;
  } cases[] = {
      {{1, 1}, "00"},  // bits
      {{2, 2},
       "80"
       "20010db8000000000000000000000001"},
      {{1, 4}, "30 000641 0a0102"},
      {{1, 132}, "60 0000fde8 0002fde8 00000001"},
      {{1, 5}, "01 03 0a0102"},  // type, octets
      {{25, 70}, "03 00"},
      {{25, 65}, "0003 0a0102"},          // octets in two
      {{16388, 71}, "0001 0003 0a0102"},  // type in two, octets in two
      {{1, 85}, "01 0003 03 0a0102"},     // architecture, type in two, octets
      {{1, 133}, "03 0a0102"},            // octets in one
      {{2, 134}, "f003 0a0102"},          // or in two
  };
  for (const auto& [family, digits] : cases) {
    const Bytes prefix = octets(digits);
    for (std::size_t size = 0; size <= prefix.size() + 1; ++size) {
      const Bytes there = (prefix + "x").substr(0, size);
      Cursor in(view(there));
      const std::optional<Octets> taken = takeNlri(in, family);
      ASSERT_EQ(taken.has_value(), size >= prefix.size()) << digits << ' ' << size;
      EXPECT_EQ(hex(taken.value_or(view(prefix))), hex(view(prefix)));
    }
  }
}

TEST(Mrt, FaultsStopNothingButTheFilesEnd) {
  const Bytes good = messageRecord(update(attributes, ""));
  const std::string path = "192.0.2.1 64600 40010100\n";
  EXPECT_EQ(cutAll(good + mrtRecord(17, 4, "") + good), path + "bad\n" + path);
  EXPECT_EQ(cutAll(""), "");
  for (std::size_t left = 1; left < good.size(); ++left)
    EXPECT_EQ(cutAll(good + good.substr(0, left)), path + "truncated\n") << left;
  EXPECT_EQ(cutAll(good + octets("00000001 0010 0004 ffffffff 616263")), path + "truncated\n");
}

TEST(Mrt, PassesByRecordsThatAreTooLong) {
  const Bytes good = messageRecord(update(attributes, ""));
  const std::string path = "192.0.2.1 64600 40010100\n";
  const Bytes longest = mrtRecord(11, 1, Bytes(RecordReader::longestRecord - 12, '\0'));
  const Bytes longer = mrtRecord(11, 1, Bytes(RecordReader::longestRecord - 11, '\0'));
  EXPECT_EQ(cutAll(longest + good), path);
  EXPECT_EQ(cutAll(good + longer + good), path + "bad\n" + path);
  EXPECT_EQ(cutAll(good + longer.substr(0, longer.size() - 1)), path + "truncated\n");
}

TEST(Mrt, OutOfMemoryEndsAFile) {
  const Bytes good = messageRecord(update(attributes, ""));
  const TemporaryFile file(good + good + good);
  testing::internal::CaptureStderr();
  const ReadResult result =
      readFile(file.name(), [](const Path&, const CommunityValues&, Place place) {
        if (place.record == 2) throw std::bad_alloc();
      });
  // A record of 12 + 20 + 23 + 4 octets stands before.
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "bgpcomm: " + file.name() + ": out of memory (record 2, octet 59)\n");
  EXPECT_TRUE(result.failed);
  EXPECT_EQ(result.records, 2u);
}

}  // namespace
}  // namespace bgpcomm

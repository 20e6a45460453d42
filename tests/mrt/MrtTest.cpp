#include "mrt/Mrt.h"

#include <set>

#include "TestOctets.h"
#include "mrt/Nlri.h"
#include "mrt/PathKey.h"

namespace {

const Bytes origin = octets("40010100");

/// The octets of digits, and ones for the bits of those in parentheses.
std::pair<Bytes, Bytes> marked(const std::string& text) {
  std::string digits, marks;
  char mark = '0';
  for (const char c : text) {
    if (c == '(' || c == ')') mark = c == '(' ? 'f' : '0';
    if (std::isxdigit(c)) marks += mark;
    if (std::isxdigit(c)) digits += c;
  }
  return {octets(digits), octets(marks)};
}

/// `192.0.2.1 64600 as2 sent 10.1.2.0/24 multicast#7 -11.0.0.0/8|`: AS numbers of 2 octets, a
/// multicast prefix announced under identifier 7, another withdrawn. Time and attributes are shown
/// where they are not the record's and `origin`.
std::string pathText(const Path& path) {
  std::string text = addressText(path.peer.address) + ' ' + std::to_string(path.peer.asNumber);
  if (timeText(path) != "2023-11-14T22:13:20Z") text += ' ' + timeText(path).substr(17);
  if (!path.as4 && !path.stateChange) text += " as2";
  if (path.sent) text += " sent";
  if (path.stateChange)
    text += ' ' + std::to_string(path.stateChange->before) + '>' +
            std::to_string(path.stateChange->after);
  std::string before = " ";
  const auto add = [&](const Prefix& prefix) {
    text += before + nlriText(prefix.addressFamily, prefix.nlri);
    if (prefix.pathId) text += '#' + std::to_string(*prefix.pathId);
  };
  const bool announced = visitPrefixes(path, add);
  before = " -";
  if (!visitWithdrawn(path, add) || !announced) text += " ?";
  if (asText(path.attributes) != origin) text += ' ' + hex(path.attributes);
  return text + '|';
}

using Updates = PathReader::Updates;

/// The paths, or of updates only those with attributes, `bad` for a record that cannot be cut, and
/// how much of a record there is at the end.
Bytes cutAll(const Bytes& file, Updates updates = Updates::all, Updates shown = Updates::all) {
  const TemporaryFile stored(file);
  Input input(stored.name());
  PathReader reader(input, updates);
  std::string text;
  const Path* path = nullptr;
  U64 bad = 0;
  do {
    path = reader.next();
    for (; bad < reader.badRecords(); ++bad) text += "bad|";
    if (path && (shown == Updates::all || path->fromTable || !path->attributes.empty()))
      text += pathText(*path);
  } while (path);
  EXPECT_FALSE(reader.next());
  if (const auto& end = reader.truncation())
    text += std::to_string(end->there) + " of " + std::to_string(end->wanted) + '|';
  return text;
}

void expectPaths(std::initializer_list<std::array<std::string, 3>> cases) {
  for (const auto& [what, file, paths] : cases) {
    EXPECT_EQ(cutAll(file), paths) << what;
    const Bytes some = cutAll(file, Updates::all, Updates::withAttributes);
    EXPECT_EQ(cutAll(file, Updates::withAttributes), some) << what;
  }
}

TEST(Mrt, CutsTables) {
  const auto v2 = [](int subtype, const Bytes& body) {
    return mrtRecord(13, U16(subtype), octets(subtype == 1 ? "0a000001" : "00000001") + body);
  };
  const auto entries = [](std::initializer_list<U16> peers, const Bytes& id = "") {
    Bytes all = number(peers.size(), 2);
    for (const U16 peer : peers)
      all += number(peer, 2) + octets("6553f101") + id + counted(origin, 2);
    return all;
  };
  const std::tuple<int, const char*, const char*> forms[] = {
      // clang-format off
      {2, "18 0a0102", "10.1.2.0/24"}, {3, "18 0a0102", "10.1.2.0/24 multicast"},
      {4, "20 20010db8", "2001:db8::/32"}, {5, "20 20010db8", "2001:db8::/32 multicast"},
      {6, "0019 46 0203616263", "25/70:0203616263"}, {6, "0001 80 08ff", "1/128:08ff"}};
  // clang-format on
  for (const auto& [subtype, prefix, text] : forms) {
    const Bytes start = octets(prefix), path = "- 0 21Z " + Bytes(text);
    expectPaths(
        {{"a form of prefixes", v2(subtype, start + entries({0})), path + '|'},
         {"with ADD-PATH", v2(subtype + 6, start + entries({0}, number(7, 4))), path + "#7|"}});
  }
  const Bytes ip4 = octets("18 0a0102"), body = ip4 + entries({0});
  const Bytes peers = v2(1, octets("0003 616263 0003"
                                   "02 0a0000fe c0000209 0001fc58"  // AS of 4 octets
                                   "00 0a0000fe c000020a fde8"      // AS of 2 octets
                                   "03 0a0000fe 20010db8000000000000000000000001 0000fc59"));
  const Bytes onePeer = v2(1, octets("0000 0001 00 0a0000fe c000020b fde9"));
  const auto v1 = [](U16 subtype, const char* prefix, const char* peer) {
    return mrtRecord(12, subtype,
                     octets("0000 0001") + octets(prefix) + octets(peer) + counted(origin, 2));
  };
  const char* const peer4 = "6553f101 c0000209 fc58";
  const std::string route = " 21Z 10.1.2.0/24|", none = "- 0" + route;
  expectPaths({
      // clang-format off
      {"peers", peers + v2(2, ip4 + entries({0, 1, 2, 3})),
       "192.0.2.9 130136" + route + "192.0.2.10 65000" + route + "2001:db8::1 64601" + route + none},
      {"other peers", peers + onePeer + v2(2, ip4 + entries({0, 1})), "192.0.2.11 65001" + route + none},
      {"TABLE_DUMP", v1(1, "0a000001 20 01", peer4), "192.0.2.9 64600 21Z as2 10.0.0.1/32|"},
      {"of IPv6",
       v1(2, "20010db8000000000000000000000001 80 01", "6553f101 20010db8000000000000000000000001 fc58"),
       "2001:db8::1 64600 21Z as2 2001:db8::1/128|"},
      {"no attributes", v2(2, ip4 + octets("0001 0000 6553f101 0000")), "- 0 21Z 10.1.2.0/24 |"},
      {"fewer entries than said", v2(2, ip4 + number(3, 2) + entries({0}).substr(2)), none + "bad|"},
      {"no entries", v2(2, ip4), "bad|"},
      {"attributes cut short", v2(2, ip4 + octets("0001 0000 6553f100 0005 40010100")), "bad|"},
      {"prefix of 33 bits", v2(2, octets("21 0a01020304") + entries({0})), "bad|"},
      {"the same, old form", v1(1, "0a010200 21 01", peer4), "bad|"},
      {"cut short, old form", mrtRecord(12, 1, octets("0000 0001 0a010200 18 01 6553")), "bad|"},
      {"peers cut short", v2(1, octets("0000 0001 02 0a0000fe c0")), "bad|"},
      {"no peers", v2(1, octets("0000 00")), "bad|"},
      {"unknown types", v2(0, body) + v2(7, body) + v2(13, body) + v2(99, body), ""},
      {"and others", mrtRecord(12, 9, "") + mrtRecord(11, 1, "x"), ""},
      // clang-format on
  });
}

TEST(Mrt, CutsMessages) {
  const Bytes ip4 = octets("c0000201"), ip6 = octets("20010db8000000000000000000000001");
  // Both with and without ADD-PATH these octets are prefixes.
  const Bytes prefixes = octets("00000007 180a0102");
  const std::tuple<U16, U16, std::size_t, const char*> forms[] = {
      {1, 8, 2, " as2"}, {4, 9, 4, ""}, {6, 10, 2, " as2 sent"}, {7, 11, 4, " sent"}};
  for (const auto& [subtype, withIds, asSize, way] : forms)
    for (const Bytes& peer : {ip4, ip6}) {
      const Bytes body = session(peer, asSize) + update(origin, prefixes);
      const std::string by = addressText(view(peer)) + " 64600" + way;
      expectPaths({{"subtype " + std::to_string(subtype), mrtRecord(16, subtype, body),
                    by + " 0.0.0.0/0 0.0.0.0/0 0.0.0.0/0 24.0.0.0/7 1.0.0.0/10|"},
                   {"with ADD-PATH", mrtRecord(16, withIds, body), by + " 10.1.2.0/24#7|"}});
    }
  const auto sent = [](const char* nlri, U16 subtype = 4) {
    return messageRecord(update(origin, octets(nlri)), subtype);
  };
  const auto gone = [](const char* nlri, U16 subtype = 4, const char* attributes = "") {
    return messageRecord(update(octets(attributes), "", octets(nlri)), subtype);
  };
  const auto body = [](const char* rest) {
    return messageRecord(Bytes(16, '\xff') + octets(rest));
  };
  const Bytes message = update(origin, octets("180a0102"));
  const auto et = [](U32 microseconds, const Bytes& rest, U16 subtype = 1) {
    return mrtRecord(17, subtype, number(microseconds, 4) + session(octets("c0000201"), 2) + rest);
  };
  const Bytes good = messageRecord(update(origin, ""));
  const auto skipped = [](std::size_t size) { return mrtRecord(11, 1, Bytes(size - 12, '\0')); };
  const Bytes tooLong = skipped(RecordReader::longestRecord + 1);
  const std::string peer = "192.0.2.1 64600", path = peer + '|';
  expectPaths({
      // clang-format off
      {"microseconds", et(999999, message), peer + " 20.999999Z as2 10.1.2.0/24|"},
      {"more than a second of them", et(1000000, message), peer + " as2 10.1.2.0/24|"},
      {"ADD-PATH unannounced", sent("00000002 18ac1100"), peer + " 172.17.0.0/24#2|"},
      {"ADD-PATH that is none", sent("180a0102", 9), peer + " 10.1.2.0/24|"},
      {"bits behind a prefix", sent("0d0b0d"), peer + " 11.8.0.0/13|"},
      {"prefix cut short", sent("180a01"), peer + " ?|"},
      {"MP_REACH_NLRI", gone("", 4, "800e0f 0002 01 04 20010db8 00 20 20010db8 00"),
       peer + " 2001:db8::/32 ::/0 800e0f0002010420010db8002020010db800|"},
      {"in a long one, multicast", gone("", 4, "900e000a 0002 02 00 00 20 20010db8"),
       peer + " 2001:db8::/32 multicast 900e000a00020200002020010db8|"},
      {"withdrawals", gone("180a0102 00"), peer + " -10.1.2.0/24 -0.0.0.0/0 |"},
      {"with ADD-PATH", gone("00000007 180a0102", 9), peer + " -10.1.2.0/24#7 |"},
      {"MP_UNREACH_NLRI", gone("08 0a", 4, "800f08 0002 01 20 20010db8"),
       peer + " -10.0.0.0/8 -2001:db8::/32 800f080002012020010db8|"},
      {"of an attribute cut short", gone("", 4, "800f02 0002"), peer + " ? 800f020002|"},
      {"withdrawal cut short", gone("180a01"), peer + " ? |"}, {"end of the table", gone(""), peer + " |"},
      {"state", mrtRecord(16, 5, session() + octets("0005 0006")), peer + " 5>6 |"},
      {"down", et(7, octets("0006 0001"), 0), peer + " 20.000007Z 6>1 |"},
      {"of no address", mrtRecord(16, 0, octets("fc58 fc59 0001 0000 0005 0006")), ""},
      {"state cut short", mrtRecord(16, 5, session() + octets("0005 00")), ""},
      {"others", body("0013 04") + sent("", 2) + sent("", 3) + sent("", 12), ""},
      {"longer than its record", messageRecord(message.substr(0, message.size() - 1)), "bad|"},
      {"shorter than its header", body("0012 02 0000 0000"), "bad|"},
      {"attributes cut short", body("0017 02 0000 0001"), "bad|"},
      {"withdrawals cut short", body("0017 02 0001 0000"), "bad|"},
      {"unknown family", mrtRecord(16, 4, Bytes(10, '\0') + octets("ffff") + message), "bad|"},
      {"no room for microseconds", good + mrtRecord(17, 4, "abc") + good, path + "bad|" + path},
      {"much too long", good + octets("00000001 0010 0004 ffffffff 616263"), path + "15 of 4294967307|"},
      // clang-format on
  });
  const Bytes longest = skipped(RecordReader::longestRecord);
  EXPECT_EQ(cutAll(longest + good + tooLong + good), path + "bad|" + path);
  const std::string most = std::to_string(RecordReader::longestRecord);
  EXPECT_EQ(cutAll(good + tooLong.substr(0, tooLong.size() - 1)),
            path + most + " of " + std::to_string(tooLong.size()) + '|');
  for (std::size_t left = 1; left < good.size(); ++left) {
    const std::string end = std::to_string(left) + (left < 12 ? " of 12|" : " of 59|");
    EXPECT_EQ(cutAll(good + good.substr(0, left)), path + end);
  }
}

TEST(Mrt, CountsWhatIsPassedOver) {
  const auto message = [](const char* type) {
    return messageRecord(Bytes(16, '\xff') + octets("0013") + octets(type));
  };
  const auto bgp = [](U16 subtype) { return mrtRecord(16, subtype, session()); };
  const Bytes state = mrtRecord(16, 5, session() + octets("0005 0006"));
  const Bytes withdrawal = messageRecord(update("", "", octets("00")));
  const std::pair<std::optional<Skipped>, std::vector<Bytes>> cases[] = {
      {Skipped::ospf, {mrtRecord(11, 1, "x"), mrtRecord(48, 0, ""), mrtRecord(49, 0, "")}},
      {Skipped::isis, {mrtRecord(32, 0, ""), mrtRecord(33, 4, "x")}},
      {Skipped::deprecatedType,
       {mrtRecord(0, 0, ""), mrtRecord(5, 1, session()), mrtRecord(10, 4, "")}},
      {Skipped::otherType, {mrtRecord(14, 1, ""), mrtRecord(18, 4, ""), mrtRecord(50, 1, "x")}},
      {Skipped::geoPeerTable, {mrtRecord(13, 7, "x")}},
      {Skipped::deprecatedSubtype, {bgp(2), bgp(3), mrtRecord(17, 2, number(7, 4))}},
      {Skipped::otherSubtype,
       {bgp(12), mrtRecord(12, 3, ""), mrtRecord(13, 0, ""), mrtRecord(13, 13, "")}},
      {Skipped::stateChange, {state, mrtRecord(16, 0, octets("fc58 fc59 0001 0000 0005 0006"))}},
      {Skipped::open, {message("01")}},
      {Skipped::notification, {message("03")}},
      {Skipped::keepalive, {message("04")}},
      {Skipped::routeRefresh, {message("05")}},
      {Skipped::otherMessage, {message("00"), message("06")}},
      {Skipped::noAttributes, {withdrawal, messageRecord(update("", ""))}},
      // An index of peers, no room for microseconds.
      {{}, {mrtRecord(13, 1, octets("0a000001 0000 0000")), mrtRecord(17, 12, "abc")}},
  };
  const Bytes good = messageRecord(update(origin, ""));
  for (const auto& [what, records] : cases)
    for (const Bytes& record : records)
      for (const Updates updates : {Updates::withAttributes, Updates::all}) {
        const TemporaryFile file(record + good + record);
        Input input(file.name());
        PathReader reader(input, updates);
        SkippedCounts expected{};
        const bool isPath =
            updates == Updates::all && (record == state || what == Skipped::noAttributes);
        if (what && !isPath) expected[std::size_t(*what)] = 2;
        while (reader.next()) continue;
        EXPECT_EQ(reader.skipped(), expected) << hex(view(record));
      }
}

TEST(Mrt, KnowsWhereRecordsStand) {
  const Bytes good = messageRecord(update(origin, "")), bad = mrtRecord(17, 4, "");
  const TemporaryFile file(good + bad + good + bad + "x");
  Input input(file.name());
  PathReader reader(input);
  const auto at = [](Position position) { return std::pair(position.record, position.octet); };
  ASSERT_TRUE(reader.next() && reader.next());
  EXPECT_EQ(at(reader.position()), std::pair(U64{3}, U64{good.size() + 12}));
  EXPECT_FALSE(reader.next());
  EXPECT_EQ(at(*reader.firstBadRecord()), std::pair(U64{2}, U64{good.size()}));
  EXPECT_EQ(at(reader.position()), std::pair(U64{5}, U64{2 * good.size() + 24}));
  EXPECT_TRUE(reader.badRecords() == 2 && reader.records() == 4);
  EXPECT_EQ(reader.truncation()->offset, 2 * good.size() + 24);
}

TEST(Mrt, TakesPrefixesOfEveryForm) {
  const std::pair<AddressFamily, std::string> cases[] = {
      // clang-format off
      // Bits; type and octets; octets in two; type in two, octets in two.
      {{1, 1}, "00"}, {{2, 2}, "80 20010db8000000000000000000000001"},
      {{1, 132}, "60 0000fde8 0002fde8 00000001"}, {{1, 5}, "01 03 0a0102"}, {{25, 70}, "03 00"},
      {{25, 65}, "0003 0a0102"}, {{1, 65}, "10 0a01"},
      {{16388, 71}, "0001 0003 0a0102"}, {{16388, 72}, "0001 0003 0a0102"}, {{1, 71}, "10 0a01"},
      // clang-format on
      {{1, 85}, "01 0003 03 0a0102"},                     // architecture, type in two, octets
      {{1, 133}, "ef" + std::string(2 * 0xef, '0')},      // octets in one
      {{2, 134}, "f102" + std::string(2 * 0x102, '0')}};  // or in two
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

TEST(Mrt, TakesPrefixesApart) {
  const std::tuple<AddressFamily, const char*, const char*> cases[] = {
      // clang-format off
      {{1, 1}, "0d 0b0d", " 13 0b080000"},  // the last bits mean nothing
      {{2, 2}, "20 20010db8", " 32 20010db8"},
      {{1, 4}, "48 000640 000651 0a0102", "000640000651 24 0a010200"},  // two, the second the last
      {{1, 128}, "87 000640 000651 0002fde800000064 0a0103", "000640000651/0002fde800000064 23 0a010200"},
      // One label, not marked as the last: no distinguisher begins with 0x0003.
      {{1, 128}, "78 000640 0000010003fde800 64010203", "000640/0000010003fde800 32 64010203"},
      {{1, 129}, "48 0000fde800000065 0a", "/0000fde800000065 8 0a000000"},
      {{1, 128}, "57 000641 0000fde800000064", "none"},  // shorter than label and distinguisher
      {{1, 4}, "39 000641 0a01020304", "none"},          // 33 bits of IPv4
      {{2, 129}, "c1 0000fde800000065 20010db8000000000000000000000000 00", "none"},  // 129
      {{1, 132}, "00", "none"}, {{25, 128}, "00", "none"}};
  // clang-format on
  for (const auto& [family, digits, expected] : cases) {
    const Bytes nlri = octets(digits);
    std::string text = "none";
    if (const auto fields = ipPrefix({family, view(nlri), {}})) {
      text = hex(fields->labels);
      if (!fields->routeDistinguisher.empty()) text += '/' + hex(fields->routeDistinguisher);
      text += ' ' + std::to_string(fields->length) + ' ' + hex(Octets(fields->address).first(4));
    }
    EXPECT_EQ(text, expected) << digits;
  }
}

TEST(Mrt, APrefixIsKnownByItsKeyAlone) {
  const std::string rd = "0000fde800000064", rd1 = "0001c00002010001", tag = "00000005",
                    segment = "00010203040506070809", free = "(" + segment + ")";
  const struct {
    AddressFamily family;
    std::string prefix;  // digits in parentheses are no part of the key
    std::vector<std::string> same = {};
  } cases[] = {
      // clang-format off
      {{1, 1}, "14 0a010(3)"}, {{2, 2}, "24 20010db8f(f)"},
      {{1, 4}, "2c (000101) 0a010(2)", {"2c 800000 0a0103", "2c 000000 0a0102"}},
      {{2, 4}, "38 (000101) 20020cb8", {"50 000100 000201 20020cb8", "38 800000 20020cb8"}},
      {{1, 128}, "6c (000101)" + rd + "0a010(2)", {"84 000100 000201" + rd + "0a0103"}},
      {{1, 128}, "58 (000101)" + rd, {"58 800000" + rd}},
      {{1, 128}, "70 (000101)" + rd1 + "0a0103", {"88 000100 000201" + rd1 + "0a0103"}},
      {{2, 128}, "78 (000101)" + rd + "20010db8", {"78 000000" + rd + "20010db8"}},
      {{1, 129}, "54" + rd + "0a010(3)"}, {{25, 70}, "01 (19)" + rd + segment + tag + "(000101)"},
      {{25, 70}, "02 (21)" + rd + free + tag + "30 020000000001 00 (000101)"},
      {{25, 70}, "02 (28)" + rd + free + tag + "30 020000000001 20 0a010203 (000101 000201)"},
      {{25, 70}, "03 (11)" + rd + tag + "20 c0000201"}, {{25, 70}, "04 (17)" + rd + segment + "20 c0000201"},
      {{25, 70}, "05 (22)" + rd + free + tag + "14 0a010(303 c0000201 000101)"},
      {{25, 70}, "05 (3a)" + rd + free + tag + "24 20010db80(" + std::string(61, '1') + ")"},
      {{25, 70}, "06 (18)" + rd + tag + "00 20 e1000001 20 c0000201 (02)"},
      {{25, 70}, "07 (22)" + rd + segment + tag + "00 20 e1000001 20 c0000201 (02)"},
      {{25, 70}, "08 (27)" + rd + segment + tag + "00 20 e1000001 20 c0000201 (000000000a02)"},
      {{1, 132}, "44 0000fde8 0002fde8 8(0)"}, {{1, 133}, "03 0118 0a"}};
  // clang-format on
  for (const auto& [family, prefix, same] : cases) {
    SCOPED_TRACE(prefix);
    const auto [nlri, freeBits] = marked(prefix);
    const std::string key = nlriKey({family, view(nlri), {}});
    for (const std::string& digits : same) {
      const Bytes other = octets(digits);
      EXPECT_EQ(nlriKey({family, view(other), {}}), key) << digits;
    }
    for (std::size_t bit = 0; bit < 8 * nlri.size(); ++bit) {
      Bytes other = nlri;
      other[bit / 8] ^= 0x80 >> bit % 8;
      const bool free = freeBits[bit / 8] & 0x80 >> bit % 8;
      EXPECT_EQ(nlriKey({family, view(other), {}}) == key, free) << bit;
    }
  }
}

TEST(Mrt, PathsAreKnownByPeerTableFamilyAndIdentifierToo) {
  const Bytes nlri = octets("180a0102");
  std::set<std::string> keys;
  for (const Bytes& address : {octets("c0000201"), octets("c0000201 00"), Bytes()})
    for (const U32 asNumber : {64600u, 64600u << 16})
      for (const bool sent : {false, true})
        for (const AddressFamily family : {AddressFamily{1, 1}, {1, 2}, {2, 1}, {0x0101, 1}})
          for (const std::optional<U32> id : {std::optional<U32>(), {0}, {7}, {7u << 24}}) {
            Path path;
            path.peer = {asNumber, view(address)};
            path.sent = sent;
            const std::string key = pathKey(path, {family, view(nlri), id});
            EXPECT_TRUE(key.starts_with(peerKey(path.peer)));
            keys.insert(key);
          }
  EXPECT_EQ(keys.size(), 3u * 2 * 2 * 4 * 4);
}

}  // namespace

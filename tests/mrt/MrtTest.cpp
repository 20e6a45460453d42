#include "mrt/Mrt.h"

#include "TestOctets.h"
#include "mrt/Nlri.h"
#include "mrt/PathKey.h"

namespace Routing::Mrt {
namespace {

const Bytes origin = octets("40010100");

std::string pathText(const Path& path) {
  std::string text = addressText(path.peer.address) + ' ' + std::to_string(path.peer.asNumber);
  if (path.stateChange)
    text += ' ' + std::to_string(path.stateChange->before) + '>' +
            std::to_string(path.stateChange->after);
  if (path.microseconds) text += " us=" + std::to_string(*path.microseconds);
  const auto addTo = [&text](const char* before) {
    return [&text, before](const Prefix& prefix) {
      text += before + nlriText(prefix.addressFamily, prefix.nlri);
      if (prefix.pathId) text += '#' + std::to_string(*prefix.pathId);
    };
  };
  const bool announced = visitPrefixes(path, addTo(" "));
  const bool whole = visitWithdrawn(path, addTo(" -")) && announced;
  const std::string attributes = hex(path.attributes);
  return text + (whole ? "" : " ?") +
         (attributes == hex(view(origin)) ? "|" : ' ' + attributes + '|');
}

/// The paths, `bad` for a record that cannot be cut, and how the file ended. Attributes are shown
/// where they are others than `origin`.
std::string cutAll(const Bytes& file,
                   PathReader::Updates updates = PathReader::Updates::withAttributes) {
  const TemporaryFile stored(file);
  Input input(stored.name());
  PathReader reader(input, updates);
  std::string text;
  U64 bad = 0;
  const auto addBad = [&] {
    for (; bad < reader.badRecords(); ++bad) text += "bad|";
  };
  while (const Path* const path = reader.next()) {
    addBad();
    text += pathText(*path);
  }
  EXPECT_FALSE(reader.next());
  addBad();
  return text + (reader.truncation() ? "truncated|" : "");
}

struct Case {
  const char* what;
  Bytes file;
  const char* paths;
};

void expectPaths(std::initializer_list<Case> cases) {
  for (const Case& c : cases) EXPECT_EQ(cutAll(c.file), c.paths) << c.what;
}

TEST(Mrt, CutsTables) {
  const auto v2 = [](U16 subtype, const Bytes& body) { return mrtRecord(13, subtype, body); };
  const auto entries = [](std::initializer_list<U16> peers, const Bytes& id = "") {
    Bytes all = number(peers.size(), 2);
    for (const U16 peer : peers)
      all += number(peer, 2) + octets("6553f100") + id + counted(origin, 2);
    return all;
  };
  const Bytes peerTable =
      v2(1, octets("0a000001 0000 0003"
                   "02 0a0000fe c0000209 0000fc58"                             // AS of 4 octets
                   "00 0a0000fe c000020a fde8"                                 // AS of 2 octets
                   "03 0a0000fe 20010db8000000000000000000000001 0001fc59"));  // IPv6
  const Bytes ip4 = octets("00000001 18 0a0102"), ip6 = octets("00000001 20 20010db8");
  const Bytes evpn = octets("00000001 0019 46 0203616263"), vpn = octets("00000001 0001 80 08ff");
  const Bytes old = octets("6553f100 c0000209 fc58") + counted(origin, 2);
  expectPaths({
      // clang-format off
      {"IPv4 unicast", peerTable + v2(2, ip4 + entries({0, 1})),
       "192.0.2.9 64600 10.1.2.0/24|192.0.2.10 65000 10.1.2.0/24|"},
      {"IPv6 multicast", peerTable + v2(5, ip6 + entries({2})),
       "2001:db8::1 130137 2001:db8::/32|"},
      {"no such peer", v2(2, ip4 + entries({9})), "- 0 10.1.2.0/24|"},
      {"ADD-PATH", v2(8, ip4 + entries({0}, number(7, 4))), "- 0 10.1.2.0/24#7|"},
      {"generic, EVPN", v2(6, evpn + entries({0})), "- 0 25/70:0203616263|"},
      {"generic with ADD-PATH, VPN", v2(12, vpn + entries({0}, number(7, 4))), "- 0 1/128:08ff#7|"},
      {"TABLE_DUMP", mrtRecord(12, 1, octets("0000 0001 0a010200 18 01") + old),
       "192.0.2.9 64600 10.1.2.0/24|"},
      {"no attributes", v2(2, ip4 + octets("0001 0000 6553f100 0000")), "- 0 10.1.2.0/24 |"},
      {"fewer entries than said", v2(2, ip4 + number(3, 2) + entries({0}).substr(2)),
       "- 0 10.1.2.0/24|bad|"},
      {"attributes cut short", v2(2, ip4 + octets("0001 0000 6553f100 0005 40010100")), "bad|"},
      {"prefix of 33 bits", v2(2, octets("00000001 21 0a01020304") + entries({0})), "bad|"},
      {"the same, old form", mrtRecord(12, 1, octets("0000 0001 0a010200 21 01") + old), "bad|"},
      {"peers cut short", v2(1, octets("0a000001 0000 0001 02 0a0000fe c0")), "bad|"},
      {"unknown types", v2(99, "x") + mrtRecord(12, 9, "") + mrtRecord(11, 1, "x"), ""},
      // clang-format on
  });
}

TEST(Mrt, CutsMessages) {
  const auto sent = [](const char* nlri, U16 subtype = 4) {
    return messageRecord(update(origin, octets(nlri)), subtype);
  };
  const auto body = [](const char* rest) {
    return messageRecord(Bytes(16, '\xff') + octets(rest));
  };
  const Bytes message = update(origin, octets("180a0102 20c0000201"));
  const Bytes reach = octets("800e0f 0002 01 04 20010db8 00 20 20010db8 00");
  const Bytes short4 = octets("fc58 fc59 0001 0001 c0000201 c0000202");
  const Bytes noFamily = Bytes(10, '\0') + octets("ffff");
  expectPaths({
      // clang-format off
      {"AS of 4 octets", messageRecord(message), "192.0.2.1 64600 10.1.2.0/24 192.0.2.1/32|"},
      {"AS of 2", mrtRecord(16, 6, short4 + message), "192.0.2.1 64600 10.1.2.0/24 192.0.2.1/32|"},
      {"microseconds", mrtRecord(17, 1, number(999999, 4) + short4 + message),
       "192.0.2.1 64600 us=999999 10.1.2.0/24 192.0.2.1/32|"},
      {"more than a second of them", mrtRecord(17, 1, number(1000000, 4) + short4 + message),
       "192.0.2.1 64600 10.1.2.0/24 192.0.2.1/32|"},
      {"ADD-PATH", sent("00000007 180a0102", 9), "192.0.2.1 64600 10.1.2.0/24#7|"},
      {"ADD-PATH unannounced", sent("00000002 18ac1100"), "192.0.2.1 64600 172.17.0.0/24#2|"},
      {"ADD-PATH that is none", sent("180a0102", 9), "192.0.2.1 64600 10.1.2.0/24|"},
      {"bits behind a prefix", sent("0d0b0d"), "192.0.2.1 64600 11.8.0.0/13|"},
      {"prefix cut short", sent("180a01"), "192.0.2.1 64600 ?|"},
      {"MP_REACH_NLRI", messageRecord(update(reach, "")),
       "192.0.2.1 64600 2001:db8::/32 ::/0 800e0f0002010420010db8002020010db800|"},
      {"withdrawals only", messageRecord(update("", "", octets("180a0102"))), ""},
      {"others", body("0013 04") + messageRecord("", 5) + mrtRecord(16, 0, ""), ""},
      {"longer than its record", messageRecord(message.substr(0, message.size() - 1)), "bad|"},
      {"shorter than its header", body("0012 02 0000 0000"), "bad|"},
      {"attributes cut short", body("0017 02 0000 0001"), "bad|"},
      {"withdrawals cut short", body("0017 02 0001 0000"), "bad|"},
      {"unknown family", mrtRecord(16, 4, noFamily + message), "bad|"},
      {"no room for microseconds", mrtRecord(17, 4, "abc"), "bad|"},
      // clang-format on
  });
}

TEST(Mrt, DeliversChangesOfStateWhereAskedFor) {
  const Bytes ends = octets("0001 0001 c0000201 c0000202"), up = octets("0005 0006");
  const std::pair<Bytes, const char*> cases[] = {
      {mrtRecord(16, 5, octets("0000fc58 0000fc59") + ends + up), "192.0.2.1 64600 5>6 |"},
      {mrtRecord(17, 0, number(7, 4) + octets("fc58 fc59") + ends + octets("0006 0001")),
       "192.0.2.1 64600 6>1 us=7 |"},
      {mrtRecord(16, 0, octets("fc58 fc59 0001 0000") + up), ""},  // without addresses
      {mrtRecord(16, 0, octets("fc58 fc59") + ends + octets("0005 00")), ""}};
  for (const auto& [record, text] : cases) {
    EXPECT_EQ(cutAll(record, PathReader::Updates::all), text);
    EXPECT_EQ(cutAll(record), "");
  }
}

TEST(Mrt, VisitsWithdrawals) {
  const auto cut = [](const Bytes& message, U16 subtype = 4) {
    return cutAll(messageRecord(message, subtype), PathReader::Updates::all).substr(15);
  };
  EXPECT_EQ(cut(update("", "", octets("180a0102 00"))), " -10.1.2.0/24 -0.0.0.0/0 |");
  EXPECT_EQ(cut(update("", "", octets("00000007 180a0102")), 9), " -10.1.2.0/24#7 |");
  EXPECT_EQ(cut(update(octets("800f08 0002 01 20 20010db8"), octets("08 0b"), octets("08 0a"))),
            " 11.0.0.0/8 -10.0.0.0/8 -2001:db8::/32 800f080002012020010db8|");
  EXPECT_EQ(cut(update("", "", octets("180a01"))), " ? |");
  EXPECT_EQ(cut(update(octets("800f02 0002"), "")), " ? 800f020002|");
  EXPECT_EQ(cut(update("", "")), " |");
}

TEST(Mrt, TakesPrefixesOfEveryForm) {
  const std::pair<AddressFamily, const char*> cases[] = {
      {{1, 1}, "00"},  // bits
      {{2, 2}, "80 20010db8000000000000000000000001"},
      {{1, 132}, "60 0000fde8 0002fde8 00000001"},
      {{1, 5}, "01 03 0a0102"},  // type, octets
      {{25, 70}, "03 00"},
      {{25, 65}, "0003 0a0102"},          // octets in two
      {{16388, 71}, "0001 0003 0a0102"},  // type in two, octets in two
      {{1, 85}, "01 0003 03 0a0102"},     // architecture, type in two, octets
      {{1, 133}, "03 0a0102"},            // octets in one
      {{2, 134}, "f003 0a0102"}};         // or in two
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
  const struct {
    AddressFamily addressFamily;
    const char *nlri, *fields;
  } cases[] = {
      {{1, 1}, "0d 0b0d", " 13 0b080000"},  // the last bits mean nothing
      {{2, 2}, "20 20010db8", " 32 20010db8"},
      {{1, 1}, "00", " 0 00000000"},
      {{1, 4}, "30 000641 0a0102", "000641 24 0a010200"},
      {{1, 4}, "48 000640 000651 0a0102", "000640000651 24 0a010200"},  // two, the second the last
      {{1, 4}, "30 800000 0a0102", "800000 24 0a010200"},
      {{1, 4}, "30 000641 0a0103", "000641 24 0a010300"},
      {{1, 128}, "6f 000641 0000fde800000064 0a0103", "000641/0000fde800000064 23 0a010200"},
      {{1, 128},
       "88 000640 000651 0000fde800000064 0a0102",
       "000640000651/0000fde800000064 24 0a010200"},
      // One label that is not marked as the last: no distinguisher stands behind the 0xfd, or 0x01.
      {{1, 128}, "70 000640 0000fde800000064 0a0102", "000640/0000fde800000064 24 0a010200"},
      {{1, 128}, "70 000640 0001c00002010001 0a0103", "000640/0001c00002010001 24 0a010300"},
      {{1, 4}, "30 000000 0a0103", "000000 24 0a010300"},
      {{1, 128}, "60 800000 0000fde800000064 0a", "800000/0000fde800000064 8 0a000000"},
      {{1, 129}, "48 0000fde800000065 0a", "/0000fde800000065 8 0a000000"},
      {{1, 128}, "57 000641 0000fde800000064", "none"},  // shorter than label and distinguisher
      {{1, 4}, "40 000641 0a01020304", "none"},          // 40 bits of IPv4
      {{1, 132}, "00", "none"},
      {{25, 128}, "00", "none"}};
  for (const auto& c : cases) {
    const Bytes nlri = octets(c.nlri);
    const auto fields = ipPrefix({c.addressFamily, view(nlri), {}});
    std::string text = "none";
    if (fields) {
      text = hex(fields->labels);
      if (!fields->routeDistinguisher.empty()) text += '/' + hex(fields->routeDistinguisher);
      text += ' ' + std::to_string(fields->length) + ' ' + hex(Octets(fields->address).first(4));
    }
    EXPECT_EQ(text, c.fields) << c.nlri;
  }
}

TEST(Mrt, FaultsStopNothingButTheFilesEnd) {
  const auto skipped = [](std::size_t size) { return mrtRecord(11, 1, Bytes(size - 12, '\0')); };
  const Bytes good = messageRecord(update(origin, ""));
  const Bytes tooLong = skipped(RecordReader::longestRecord + 1);
  const std::string path = "192.0.2.1 64600|";
  EXPECT_EQ(cutAll(good + mrtRecord(17, 4, "") + good), path + "bad|" + path);
  EXPECT_EQ(cutAll(skipped(RecordReader::longestRecord) + good), path);
  EXPECT_EQ(cutAll(good + tooLong + good), path + "bad|" + path);
  EXPECT_EQ(cutAll(good + tooLong.substr(0, tooLong.size() - 1)), path + "truncated|");
  EXPECT_EQ(cutAll(good + octets("00000001 0010 0004 ffffffff 616263")), path + "truncated|");
  const TemporaryFile file(good + mrtRecord(17, 4, "") + good + mrtRecord(17, 4, "") + "x");
  Input input(file.name());
  PathReader reader(input);
  const auto at = [](Position position) { return std::pair(position.record, position.octet); };
  ASSERT_TRUE(reader.next() && reader.next());
  EXPECT_EQ(at(reader.position()), std::pair(U64{3}, U64{good.size() + 12}));
  EXPECT_FALSE(reader.next());
  EXPECT_EQ(at(*reader.firstBadRecord()), std::pair(U64{2}, U64{good.size()}));
  EXPECT_EQ(at(reader.position()), std::pair(U64{5}, U64{2 * good.size() + 24}));
  EXPECT_TRUE(reader.badRecords() == 2 && reader.records() == 4);
  for (std::size_t left = 1; left < good.size(); ++left)
    EXPECT_EQ(cutAll(good + good.substr(0, left)), path + "truncated|") << left;
}

}  // namespace
}  // namespace Routing::Mrt

// Questions: patterns of values and of paths against what their texts say, and matchers that
// remember.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <set>

#include "kinds/ZoBgpCommunityLists.h"
#include "query/ZoBgpPatternMatcher.h"
#include "tests/kinds/TextTables.h"

namespace {

// The path that carries these.
PathCommunities pathOf(const CommunityTables& tables, std::string_view texts) {
  return readCommunityLists(texts, tables).value.value();
}

TEST(ValuePattern, MatchesWhatItSays) {
  // Pattern, communities that it means, and such as it does not.
  for (const auto& row : rowsOf(R"(
65000:100                       | 65000:100                            | 65000:101 65000:100:0 RT:65000:100
No-Export                       | 65535:65281                          | 65535:65282
65000:*                         | 65000:0 65000:65535                  | 65001:1 65000:1:1 RT:65000:1
65535:*                         | no-export 65535:1                    | 65534:65281
*:*:3                           | 1:2:3 0:0:3                          | 1:3:2 3:3
65000:100..199                  | 65000:100 65000:150 65000:199        | 65000:99 65000:200 65001:150
65000:{1,5, 9..12}              | 65000:1 65000:5 65000:9 65000:12     | 65000:2 65000:8 65000:13
{64512..65534,65536}:1:*        | 64512:1:0 65536:1:9                  | 65535:1:0 64512:2:0
1.10:*:*                        | 65546:0:0                            | 65545:0:0
route-target-as2:65000:*        | RT:65000:100                         | route-target-as4:65000:100 SoO:65000:100
RT:65000:*                      | RT:65000:1 route-target-as4:65000:2  | SoO:65000:1 RT:65001:1
RT:0.65000:*                    | RT:65000:1                           | RT:65001:1
soo:*:*                         | SoO:65000:1 SoO:192.0.2.1:1 route-origin-ipv6:[::1]:1 | RT:65000:1
RT:192.0.2.1/32:*               | RT:192.0.2.1:1                       | RT:192.0.2.0:1 RT:192.0.2.2:1
RT:192.0.2.0/24:*               | RT:192.0.2.0:1 RT:192.0.2.255:9      | RT:192.0.3.0:1 RT:192.0.1.255:1
route-target-ipv4:0.0.0.0/0:7   | RT:255.255.255.255:7 RT:0.0.0.0:7    | RT:1.2.3.4:8
RT:{192.0.2.1,10.0.0.0/8}:1                | RT:192.0.2.1:1 RT:10.255.0.1:1 | RT:192.0.2.2:1 RT:11.0.0.0:1
route-target-ipv4:192.0.2.9..192.0.2.11:1  | RT:192.0.2.10:1 RT:192.0.2.11:1 | RT:192.0.2.12:1
route-target-ipv6:[2001:db8::]/32:*        | route-target-ipv6:[2001:db8:1::9]:1 | route-target-ipv6:[2001:db9::]:1
route-target-ipv6:[2001:db8::1]/128:5      | route-target-ipv6:[2001:db8::1]:5   | route-target-ipv6:[2001:db8::2]:5
route-target-ipv6               | route-target-ipv6:[2001:db8::1]:67   | route-origin-ipv6:[::1]:1 RT:1:1
mac-mobility                    | mac-mobility::5 mac-mobility:S:0 0x0600ff0000000005 | evpn-router-mac:00:11:22:33:44:55 65000:1
mac-mobility:*:5                | mac-mobility::5 mac-mobility:S:5     | mac-mobility:S:6 0x060000ff00000005
mac-mobility:S:1..9             | mac-mobility:S:9                     | mac-mobility::9 mac-mobility:S:10
mac-mobility::*                 | mac-mobility::9                      | mac-mobility:S:9
evpn-router-mac:00:11:22:33:44:55    | evpn-router-mac:00:11:22:33:44:55         | evpn-router-mac:00:11:22:33:44:56
ospf-route-type:*:as-external:* | ospf-route-type:0.0.0.2:as-external:TYPE-2-METRIC ospf-route-type:0.0.0.2:as-external: | ospf-route-type:0.0.0.2:12:0
ospf-route-type:*:4..5:*        | ospf-route-type:0.0.0.2:as-external: | ospf-route-type:0.0.0.2:12:0
ospf-route-type:*:{router,as-external}:* | ospf-route-type:0.0.0.2:as-external: | ospf-route-type:0.0.0.2:12:0
link-bandwidth-as2:65000:1..2000    | link-bandwidth-as2:65000:1.5 link-bandwidth-as2:65000:2000  | link-bandwidth-as2:65000:0.5 link-bandwidth-as2:65000:-1.5
link-bandwidth-as2:*:*              | link-bandwidth-as2:1:inf link-bandwidth-as2:1:-inf   | 0x000400017fc00000 0x00040001ffc00000
unknown                         | 0x0407000000000000 0x3f00000000000000 | mac-mobility::5 65000:1 1:2:3
"data-collection-as2:64500:*"   | data-collection-as2:64500:AS:NP data-collection-as2:64500:26471 | data-collection-as2:64501:AS:NP
)")) {
    std::string text = row[0];
    std::erase(text, '"');
    const auto pattern = ValuePattern::parse(text);
    ASSERT_TRUE(pattern) << text << ": " << pattern.error.text();
    for (const std::size_t cell : {1, 2}) {
      const auto communities = readAnyCommunities(row[cell]);
      ASSERT_TRUE(communities) << row[cell] << ": " << communities.error.text();
      for (const AnyCommunity& community : *communities)
        EXPECT_EQ(pattern->matches(community), cell == 1)
            << text << ' ' << canonicalText(community);
    }
  }
}

TEST(ValuePattern, SaysWhatIsWrong) {
  expectRefused(R"(
a range whose end is not below its begin    | 65000:^5..1^
a decimal number below 65536                | 65000:1..^65536^
a decimal number                            | 65000:{1,^^,2}
a set that ends                             | 65000:^{1,2^
two parts of a standard community, or three | ^65000:*:*:*^ | ^*^
did you mean "route-target-as2"             | ^rout-target-as2^:65000:*
did you mean "NO_EXPORT"                    | ^no-exprot^
route-target-as2:<global>:<local>           | ^route-target-as2^:65000
`route-target-as2:<global>:<local>`         | route-target-as2:*^^ | route-target-as2:65000:*:^*^
more parts                                  | RT:*^^
without bits behind its length              | RT:^192.0.2.1/24^:*
a prefix length up to 32                    | RT:192.0.2.0/^33^:*
without bits behind its length              | route-target-ipv6:^[2001:db8::1]/64^:1
`or` joins patterns                         | route-target-ipv6:^{[2001:db8::1]}^:1
is not ordered                              | mac-mobility:^S..S^:5
)",
                [](std::string_view text) { return ValuePattern::parse(text); });
  std::string set = "65000:{1";
  for (int i = 0; i < 5000; ++i) set += ",1";
  EXPECT_FALSE(ValuePattern::parse(set + "}"));
  EXPECT_FALSE(ValuePattern::parse("mac-mobility" + std::string(100'000, ':') + "*"));
}

// The field of a pattern, evaluated over the text of a community's.
struct FieldWish {
  std::string text;
  std::function<bool(const std::string&)> holds;
};
FieldWish wishFor(const KindFieldValue& value, std::mt19937& random) {
  const std::string text = value.text();
  const bool number = value.field().form == KindForm::integer ||
                      value.field().form == KindForm::as2 || value.field().form == KindForm::as4;
  const auto choice = random() % (number ? 4 : 2);
  if (choice == 0) return {"*", [](const std::string&) { return true; }};
  if (choice == 1) return {text, [text](const std::string& other) { return other == text; }};
  if (choice == 2)
    return {"{0," + text + "}",
            [text](const std::string& other) { return other == "0" || other == text; }};
  const U64 at = value.number(), low = at - std::min<U64>(at, random() % 3);
  return {std::to_string(low) + ".." + text, [=](const std::string& other) {
            return !other.empty() && std::stoull(other) >= low && std::stoull(other) <= at;
          }};
}

TEST(ValuePattern, AgreesWithTextsOfFields) {
  std::mt19937 random(11);
  int matched = 0, others = 0;
  for (const Kind* kind : KindTable::builtIn().rows()) {
    if (kind->value) continue;
    for (int round = 0; round < 60; ++round) {
      // Two communities of the kind that differ in a few bits.
      std::vector<U8> octets(kind->octets());
      for (U8& octet : octets) octet = random() % 2 ? U8(random() % 4) : U8(random());
      if (kind->isExtended()) octets[0] = *kind->type, octets[1] = *kind->subtype;
      const U32 first = kind->isExtended() ? 2 : 0;
      for (const KindField& field : kind->fields)
        for (U32 bit = field.bit; field.form == KindForm::reserved && bit < field.end(); ++bit)
          octets[first + bit / 8] &= U8(~(0x80 >> bit % 8));
      std::vector<U8> near = octets;
      if (random() % 4) near[first + random() % (near.size() - first)] ^= U8(1 << random() % 8);
      const auto community = communityOf(kind->attribute, octets);
      const auto other = communityOf(kind->attribute, near);
      if (isMalformed(community, *kind)) continue;

      std::string text(kind->identifier);
      bool holds = !isMalformed(other, *kind);
      for (std::size_t i = 0; i < kind->fields.size(); ++i) {
        const auto value = *kindField(community, i), its = *kindField(other, i);
        if (value.isReserved()) continue;
        if (value.field().optional && value.text().empty()) {
          holds &= its.text().empty();  // left out of the pattern too
          continue;
        }
        const FieldWish wish = wishFor(value, random);
        text += (text.empty() ? "" : ":") + wish.text;
        holds = holds && wish.holds(its.text());
      }
      if (text == kind->identifier) holds = true;  // the kind, malformed or not
      const auto pattern = ValuePattern::parse(text);
      ASSERT_TRUE(pattern) << text << ": " << pattern.error.text();
      EXPECT_TRUE(pattern->matches(community)) << text << ' ' << canonicalText(community);
      EXPECT_EQ(pattern->matches(other), holds) << text << ' ' << canonicalText(other);
      ++(holds ? matched : others);
    }
  }
  EXPECT_GT(std::min(matched, others), 1000);
}

// --- Questions.

TEST(CommunityPattern, AnswersQuestions) {
  const CommunityTables tables;
  const auto names = std::make_shared<CommunityDescriptions>();
  EXPECT_TRUE(names->add("65000:666,Blackhole in $0\n65000:7xx,Peers of region $0").empty());
  const std::vector<PathCommunities> paths = {
      pathOf(tables, "65000:1 65000:2 no-export"), pathOf(tables, "RT:65000:1 65000:1:2"),
      pathOf(tables, "65000:720 0x0407000000000000"), pathOf(tables, "")};
  // Question, and the paths of which it holds.
  for (const auto& row : rowsOf(R"(
no-export                                    | 0
65000:1 or 65000:1:2                         | 01
65000:* and not no-export                    | 2
65000:1 and 65000:2 or RT:65000:*            | 01
65000:1 and (65000:2 or RT:65000:*)          | 0
(not(65000:1)) and NOT not has standard      | 2
has large                                    | 1
not has extended and not has ipv6-extended   | 03
count(standard) > 2                          | 0
count(standard) >= 1                         | 02
count(standard) < 1                          | 13
count(standard) < 70000                      | 0123
count(ipv6Extended) = 0 and has extended     | 12
count(65000:*) = 2 or 65000:720              | 02
count(standard) <= 1                         | 123
count ( 65000:* ) = 2                        | 0
count(65000:{1, 2}) != 0                     | 0
count(no-export) = 0 and count(large)=0      | 23
unknown                                      | 2
65000:9 or unknown                           | 2
(not color:CO(00):20)                        | 0123
"RT:65000:1" and 65000:1:2                   | 1
described                                    | 02
description ~ "peers of region 20"           | 2
description~EXPORT                           | 0
not described and not has large              | 3
65000:1 or 65000:9 or not has standard or has large or 65000:720 | 0123
)")) {
    const auto pattern = CommunityPattern::parse(row[0], KindTable::builtIn(), names);
    ASSERT_TRUE(pattern) << row[0] << ": " << pattern.error.text();
    PatternMatcher matcher(*pattern);
    std::string held;
    for (std::size_t i = 0; i < paths.size(); ++i) {
      if (pattern->matches(paths[i])) held += char('0' + i);
      EXPECT_EQ(matcher.matches(paths[i]), pattern->matches(paths[i])) << row[0];
      EXPECT_EQ(matcher.matches(paths[i]), pattern->matches(paths[i])) << row[0];
    }
    EXPECT_EQ(held, row.size() > 1 ? row[1] : "") << row[0];
  }
}

TEST(CommunityPattern, SaysWhatIsWrong) {
  expectRefused(R"(
a condition            | 65000:1 and^^ | ^and^ | not ^and^
and, or, or the end    | 65000:1 ^65000:2^ | 65000:1^)^
`)`                    | (65000:1^^
standard, extended     | has^^ | has ^larg^
<, <=                  | count(standard)^^
a number               | count(standard) > ^x^
one attribute          | count(^unknown^) > 1
`~`                    | description ^foo^
a text                 | description ~^^
a double quote         | ^"65000:1^
below 65536            | 65000:1 or 65000:^70000^
)",
                [](std::string_view text) { return CommunityPattern::parse(text); });
  const auto times = [](int count, std::string text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
  };
  EXPECT_FALSE(CommunityPattern::parse(""));
  EXPECT_FALSE(CommunityPattern::parse(times(100'000, "(")));
  EXPECT_FALSE(CommunityPattern::parse(times(100'000, "not ")));
  EXPECT_TRUE(CommunityPattern::parse(times(63, "1:1 and ") + "1:1"));
  EXPECT_FALSE(CommunityPattern::parse(times(64, "1:1 and ") + "1:1"));
  EXPECT_TRUE(CommunityPattern::parse(times(1000, "1:1 or ") + "1:1"));
  EXPECT_TRUE(CommunityPattern::parse(times(98, "(") + "1:1" + times(98, ")")));
}

// A random question, and what it means for a set of texts.
struct Question {
  std::string text;
  std::function<bool(const std::set<std::string>&)> holds;
};
Question randomQuestion(std::mt19937& random, const Cells& values, int depth) {
  const auto choice = depth ? random() % 4 : 3;
  if (choice == 3) {
    const std::string value = values[random() % values.size()];
    return {value, [value](const auto& path) { return path.contains(value); }};
  }
  const Question a = randomQuestion(random, values, depth - 1);
  if (choice == 2)
    return {"not (" + a.text + ')', [a](const auto& path) { return !a.holds(path); }};
  const Question b = randomQuestion(random, values, depth - 1);
  if (choice == 1)
    return {'(' + a.text + ") and (" + b.text + ')',
            [a, b](const auto& path) { return a.holds(path) && b.holds(path); }};
  return {'(' + a.text + " or " + b.text + ')',
          [a, b](const auto& path) { return a.holds(path) || b.holds(path); }};
}

TEST(CommunityPattern, AgreesWithASlowEvaluation) {
  const Cells values = cellsOf(
      "65000:1 | 65000:2 | 65000:1:1 | 65000:1:2 | route-target-as2:65000:1 | mac-mobility:S:1 | "
      "unknown-transitive:07:00:00:00:00:00:00:01");
  const CommunityTables tables;
  std::mt19937 random(12);
  int held = 0;
  for (int round = 0; round < 2000; ++round) {
    const Question question = randomQuestion(random, values, 5);
    const auto pattern = CommunityPattern::parse(question.text);
    if (!pattern) continue;  // more conditions than fit
    PatternMatcher matcher(*pattern);
    for (int path = 0; path < 6; ++path) {
      std::set<std::string> texts;
      std::string list;
      for (const std::string& value : values)
        if (random() % 3 == 0) texts.insert(value), list += value + ' ';
      const PathCommunities communities = pathOf(tables, list);
      const bool holds = question.holds(texts);
      ASSERT_EQ(pattern->matches(communities), holds) << question.text << " of " << list;
      ASSERT_EQ(matcher.matches(communities), holds) << question.text << " of " << list;
      held += holds;
    }
  }
  EXPECT_GT(held, 2000);
}

TEST(PatternMatcher, HoldsTheListsWhoseAnswersItKnows) {
  const CommunityTables tables;
  const auto& lists = *tables.of<CommList>().lists()->dedupHashTable();
  PatternMatcher matcher(*CommunityPattern::parse("65000:*"));
  // An address that comes again would have the answer of another list.
  for (U32 i = 0; i < 500; ++i) {
    EXPECT_EQ(matcher.matches(pathOf(
                  tables, std::to_string(65000 + i % 2) + ":" + std::to_string(i) + " no-export")),
              i % 2 == 0);
    EXPECT_EQ(lists.members(), i + 1);
  }
  EXPECT_EQ(matcher.lists(), 500u);
  const PathCommunities kept = pathOf(tables, "65000:0 no-export");
  matcher.forgetUnused();
  EXPECT_TRUE(matcher.lists() == 1 && lists.members() == 1);
  EXPECT_TRUE(matcher.matches(kept));
  EXPECT_FALSE(matcher.matches(pathOf(tables, "65001:1 no-export"))) << "may be where one was";
  EXPECT_FALSE(matcher.matches(pathOf(tables, "RT:1:1"))) << "not asked for";
  EXPECT_EQ(matcher.lists(), 2u);
}

TEST(Descriptions, AreFoundAsOperatorsWriteThem) {
  CommunityDescriptions names;
  const auto faults = names.add(R"(# AS64500
64500:100,Customer, paid
64500:20x,Region $0
64500:200-299,Learned in $0
64500:208,Exact
64500:30x,Prepend $0 times to $1 for $
6450x:1,AS $0
64500:6:nnn,Do not announce to AS$0

64500:1xx1x:2,$0 and $1
64500
64500:70000,too large
64500:5-2,backwards
64500:1:2:3,four
64500:y,letter
NNN:9,Anybody's
65535:666,overridden
)");
  std::string lines;
  for (const auto& fault : faults) lines += std::to_string(fault.line) + ' ';
  EXPECT_EQ(lines, "11 12 13 14 15 ");
  EXPECT_EQ(names.size(), 10u);
  const std::string mark = "\xEF\xBB\xBF";
  EXPECT_TRUE(names.add(mark + "64500:9,Behind a mark\r\n").empty());
  for (const auto& row : rowsOf(R"(
64500:9          | Behind a mark
64500:100        | Customer, paid
64500:207        | Region 7
64500:208        | Exact
64500:250        | Learned in 250
64500:300        | Prepend 0 times to $1 for $
64500:30         | -
64500:3000       | -
64507:1          | AS 7
64500:6:4200000000 | Do not announce to AS4200000000
64500:12413:2    | 24 and 3
64500:12423:2    | -
1:9              | Anybody's
65535:666        | BLACKHOLE
RT:64500:100     | -
)"))
    EXPECT_EQ(names.find(*readCommunity(row[0])).value_or("-"), row[1]) << row[0];
}

// Entries, and which one the rules choose among them, by their texts alone.
TEST(Descriptions, AgreeWithALookAtEachEntry) {
  std::mt19937 random(5);
  const auto below = [&random](U32 end) { return U32(random() % end); };
  const auto isPlain = [](const std::string& part) {
    return part.find_first_of("-xn") == part.npos;
  };
  const auto means = [](const std::string& part, const std::string& number) {
    if (part == "nnn") return true;
    if (const auto dash = part.find('-'); dash != part.npos)
      return std::stoul(part) <= std::stoul(number) &&
             std::stoul(number) <= std::stoul(part.substr(dash + 1));
    return std::ranges::equal(part, number,
                              [](char c, char digit) { return c == 'x' || c == digit; });
  };
  int found = 0;
  for (int round = 0; round < 300; ++round) {
    CommunityDescriptions names;
    std::vector<std::array<std::string, 3>> entries;
    for (U32 files = 1 + below(3); files > 0; --files) {
      std::string text;
      for (U32 left = below(40); left > 0; --left) {
        auto& entry = entries.emplace_back();
        for (std::string& part : entry) {
          const U32 number = below(30), other = number + below(12);
          const std::string texts[] = {std::to_string(number),
                                       std::to_string(number),
                                       std::to_string(number) + '-' + std::to_string(other),
                                       "nnn",
                                       std::to_string(number / 10) + 'x',
                                       "x",
                                       "x1"};
          part = texts[below(7)];
        }
        text += entry[0] + ':' + entry[1] + ':' + entry[2] + ',' + std::to_string(entries.size()) +
                '\n';
      }
      EXPECT_TRUE(names.add(text).empty());
    }
    for (int i = 0; i < 60; ++i) {
      std::array<std::string, 3> numbers;
      for (std::string& number : numbers) number = std::to_string(below(32));
      std::pair<int, std::size_t> best{3, 0};  // by what goes before what
      for (std::size_t at = 0; at < entries.size(); ++at) {
        const auto& entry = entries[at];
        const int rank = std::ranges::all_of(entry, isPlain) ? 0 : isPlain(entry[0]) ? 1 : 2;
        if (std::ranges::equal(entry, numbers, means)) best = std::min(best, {rank, at});
      }
      const auto text =
          names.find(*readCommunity(numbers[0] + ':' + numbers[1] + ':' + numbers[2]));
      ASSERT_EQ(text.value_or("none"), best.first == 3 ? "none" : std::to_string(best.second + 1));
      found += text.has_value();
    }
  }
  EXPECT_GT(found, 3000);
}

}  // namespace

#include "mrt/AsPath.h"

#include <random>
#include <sstream>

#include "TestOctets.h"

namespace Routing::Mrt {
namespace {

Bytes attribute(int type, const Bytes& value) {
  return octets("50") + number(U64(type), 1) + counted(value, 2);
}

/// Segments as `AsPath::text` writes them, `/` between two sequences. Of 2 octets, greater AS
/// numbers are 23456 (RFC 6793, section 4.2.2).
Bytes encoded(const std::string& text, std::size_t width) {
  Bytes out;
  std::size_t count = 0;  // where the segment has it; 0: another begins
  const std::string signs = "{/([";
  std::istringstream in(text);
  const auto begin = [&](std::size_t type) {
    out += number(type, 1) + '\0';
    count = out.size() - 1;
  };
  for (char c; in >> c;) {
    if (std::isdigit(c)) {
      U32 as = 0;
      in.putback(c);
      in >> as;
      if (count == 0) begin(2);
      out += number(width == 2 && as > 0xffff ? 23456 : as, width);
      ++out[count];
    } else if (signs.find(c) != std::string::npos) {
      begin(signs.find(c) + 1);
    } else if (c != ',') {
      count = 0;
    }
  }
  return out;
}

/// `64500 {64501}; origin 64500, length 2`, or `malformed`.
std::string pathText(Octets attributes, bool as4) {
  Path path;
  path.attributes = attributes;
  path.as4 = as4;
  const AsPath asPath(path);
  const std::string text = asPath.text();
  std::string visited, plain = text;
  asPath.visit([&](U32 as) { visited += std::to_string(as) + ' '; });
  std::erase_if(plain, [](char c) { return std::string("{}()[]").find(c) != std::string::npos; });
  std::replace(plain.begin(), plain.end(), ',', ' ');
  EXPECT_EQ(visited, plain.empty() ? "" : plain + ' ');
  EXPECT_EQ(asPath.empty(), text.empty());
  if (asPath.malformed()) return "malformed" + text;
  const auto origin = asPath.origin();
  return text + "; origin " + (origin ? std::to_string(*origin) : "none") + ", length " +
         std::to_string(asPath.length());
}
std::string pathText(const Bytes& attributes, bool as4) { return pathText(view(attributes), as4); }

TEST(AsPath, IsReadFromItsOctets) {
  const struct {
    bool as4;
    std::string attributes, path;
  } cases[] = {
      // clang-format off
      {true, "40010100 40020a 0202 0000fbf4 fa56ea00", "64500 4200000000; origin 4200000000, length 2"},
      {false, "40010100 400206 0202 fbf4 fbf5", "64500 64501; origin 64501, length 2"},
      {false, "5002000c 0201 fbf4 0102 fbf5 fbf6 0200", "malformed"},  // a segment without numbers
      {false, "4002 0a 0201 fbf4 0102 fbf5 fbf6", "64500 {64501,64502}; origin none, length 2"},
      {false, "4002 0a 0402 fc00 fc01 0201 fbf4", "[64512,64513] 64500; origin 64500, length 1"},
      {false, "4002 0a 0302 fc00 fc01 0101 fbf4", "(64512 64513) {64500}; origin none, length 1"},
      {false, "4002 0a 0201 fbf4 0302 fc00 fc01", "64500 (64512 64513); origin 64500, length 1"},
      {false, "4002 08 0201 fbf4 0201 fbf5", "64500 64501; origin 64501, length 2"},
      {false, "4002 04 0301 fc00", "(64512); origin none, length 0"},
      {false, "4002 00", "; origin none, length 0"},
      {false, "40010100", "; origin none, length 0"},
      {false, "4002 04 0001 fbf4", "malformed"},
      {false, "4002 04 0501 fbf4", "malformed"},
      {false, "4002 05 0201 fbf4 02", "malformed"},
      {false, "4002 05 0202 fbf4 fb", "malformed"},
      {true, "4002 06 0202 fbf4 fbf5", "malformed"},          // numbers of 2 octets
      {false, "4002 06 0201 0000fbf4", "malformed"},          // and of 4
      {false, "4002 04 0202 fbf4 400206 0201 fbf5", "malformed"},  // beyond the attribute
      {false, "4002 04 0201 fbf4 4002 04 0201 fbf5", "64500; origin 64500, length 1"},
      {false, "4002 04 0201 fbf4 4003 04 c0", "64500; origin 64500, length 1"},
      {false, "4003 04 c0", "malformed"},  // AS_PATH may stand behind
      // clang-format on
  };
  for (const auto& [as4, attributes, path] : cases)
    EXPECT_EQ(pathText(octets(attributes), as4), path) << attributes;

  const Bytes whole = octets("4002 04 0201 fbf4");
  for (std::size_t size = 1; size < whole.size(); ++size)
    EXPECT_EQ(pathText(whole.substr(0, size), false), "malformed") << size;
}

TEST(AsPath, IsRestoredFromAs4Path) {
  const struct {
    std::string path, as4Path, restored, others = {};
  } cases[] = {
      {"64500 23456 23456", "100000 100001", "64500 100000 100001; origin 100001, length 3"},
      {"23456 23456", "100000 100001", "100000 100001; origin 100001, length 2"},
      {"64500", "64500 100000", "64500; origin 64500, length 1"},
      // A set counts one.
      {"64500 23456 {23456,23456}", "100000 {100001,100002}",
       "64500 100000 {100001,100002}; origin none, length 3"},
      {"{64500,64501} 23456", "100000", "{64500,64501} 100000; origin 100000, length 2"},
      {"{64500,64501} 23456", "{100001,2,3} 100000",
       "{100001,2,3} 100000; origin 100000, length 2"},
      // Confederations: in front, beside a whole segment, beside one that is replaced.
      {"(64512) [64513] 64500 23456", "64500 100000",
       "(64512) [64513] 64500 100000; origin 100000, length 2"},
      {"64500 (64512) 23456", "100000", "64500 (64512) 100000; origin 100000, length 2"},
      {"64500 23456 (64512) 23456", "100000 100001",
       "64500 100000 100001; origin 100001, length 3"},
      {"64500 / 23456 (64512) 23456", "100000 100001",
       "64500 100000 100001; origin 100001, length 3"},
      {"23456 (64512) 23456", "100000 100001", "100000 100001; origin 100001, length 2"},
      // They are no part of AS4_PATH.
      {"64500 23456", "(64512) 100000 [64513]", "64500 100000; origin 100000, length 2"},
      {"23456", "(64512)", "23456; origin 23456, length 1"},
      // A router that knows 2 octets only aggregated the route, or may have not.
      {"64500 23456", "100000", "64500 23456; origin 23456, length 2",
       "c00706 fbf4 c0000201 c01208 000186a0 c0000202"},
      {"64500 23456", "100000", "64500 100000; origin 100000, length 2",
       "c00706 5ba0 c0000201 c01208 000186a0 c0000202"},
      {"64500 23456", "100000", "64500 100000; origin 100000, length 2", "c00706 fbf4 c0000201"},
      {"64500 23456", "100000", "64500 100000; origin 100000, length 2",
       "c00706 fbf4 c0000201 c01207 000186a0 c00002"},
      {"64500 23456", "100000", "64500 100000; origin 100000, length 2",
       "c00705 fbf4 c00002 c01208 000186a0 c0000202"},
  };
  for (const auto& [path, as4Path, restored, others] : cases) {
    SCOPED_TRACE(testing::Message() << path << ", " << as4Path);
    const Bytes as4 = attribute(17, encoded(as4Path, 4));
    EXPECT_EQ(pathText(attribute(2, encoded(path, 2)) + as4 + octets(others), false), restored);
    // Malformed, and from a peer that needs none.
    const Bytes malformed = attribute(17, encoded(as4Path, 4) + '\x02');
    EXPECT_EQ(pathText(attribute(2, encoded(path, 2)) + malformed, false),
              pathText(attribute(2, encoded(path, 4)) + as4, true));
  }
}

/// A path is sent to a router that knows 2 octets only; it and those behind it prepend theirs.
TEST(AsPath, IsTheSameBehindOldRouters) {
  std::mt19937 random(6793);
  const auto below = [&](U32 end) { return random() % end; };
  for (int round = 0; round < 3000; ++round) {
    const auto numbers = [&](U32 first, U32 end, const char* between) {
      std::string text = std::to_string(first + below(end));
      for (U32 more = below(4); more > 0; --more)
        text += between + std::to_string(first + below(end));
      return text;
    };
    std::string prepended, path;
    while (below(2)) prepended += numbers(64512, 100, " ") + (below(2) ? " / " : " ");
    if (below(2)) prepended.insert(0, '(' + numbers(64512, 100, " ") + ") ");
    do {
      path += below(4) ? numbers(60000, 9000, " ") + (below(2) ? " / " : " ")
                       : '{' + numbers(60000, 9000, ",") + "} ";
    } while (below(3));
    const Bytes attributes =
        attribute(2, encoded(prepended + path, 2)) + attribute(17, encoded(path, 4));
    EXPECT_EQ(pathText(attributes, false),
              pathText(attribute(2, encoded(prepended + path, 4)), true));
  }
}

/// The attributes around an AS path change nothing.
TEST(AsPath, NothingIsReadBeyondTheAttributes) {
  std::mt19937 random(4271);
  std::size_t paths = 0;
  for (int round = 0; round < 20000; ++round) {
    Bytes attributes;
    for (const int type : {2, 17}) {
      Bytes path;
      for (auto left = random() % 8; left > 0; --left)
        path += number(1 + random() % 4, 1) + number(random() % 3, 1) +
                number(random(), 2 * (random() % 3));
      attributes += attribute(type, path);
    }
    attributes.resize(attributes.size() - random() % 3);
    const Bytes zeros = Bytes(4, '\0') + attributes + Bytes(600, '\0');
    const Bytes ones = Bytes(4, '\1') + attributes + Bytes(600, '\1');
    for (const bool as4 : {false, true}) {
      const std::string text = pathText(view(zeros).subspan(4, attributes.size()), as4);
      EXPECT_EQ(text, pathText(view(ones).subspan(4, attributes.size()), as4));
      paths += text != "malformed";
    }
  }
  EXPECT_GT(paths, 1000u);
}

TEST(AsPath, NumbersHaveTheSizeThatTheRecordSays) {
  const auto as4 = [](const Bytes& file) {
    const TemporaryFile stored(file);
    Input input(stored.name());
    PathReader reader(input);
    const Path* const path = reader.next();
    EXPECT_TRUE(path) << hex(view(file));
    return path && path->as4;
  };
  const Bytes none = octets("40010100"), prefix = octets("08 0a");
  const Bytes table = octets("00000001 08 0a 0001 0000 6553f101") + counted(none, 2);
  EXPECT_TRUE(as4(mrtRecord(13, 2, table)));
  EXPECT_FALSE(as4(mrtRecord(
      12, 1, octets("0000 0001 0a000000 08 01 6553f101 c0000209 fc58") + counted(none, 2))));
  for (const U16 subtype : {1, 4, 6, 7, 8, 9, 10, 11}) {
    const bool four = subtype == 4 || subtype == 7 || subtype == 9 || subtype == 11;
    const Bytes body = session(octets("c0000201"), four ? 4 : 2) + update(none, prefix);
    EXPECT_EQ(as4(mrtRecord(16, subtype, body)), four) << subtype;
  }
}

}  // namespace
}  // namespace Routing::Mrt

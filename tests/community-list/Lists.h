// All list types under one set of words. Contents are written as octets of the wire, so that order
// and layout are checked against something that the library did not make.
#pragma once

#include <gmock/gmock.h>

#include <random>
#include <set>
#include <thread>

#include "MoxStash/FileStore.h"
#include "MoxStash/StoreWriter.h"
#include "path/ZoBgpCommunityTables.h"
#include "tests/AllocationCounter.h"
#include "tests/HexOctets.h"
#include "tests/Texts.h"

namespace Routing::Bgp {

using Octets = std::vector<U8>;
using Contents = std::vector<Octets>;

inline Octets number(U64 value, std::size_t size) {
  Octets octets(size);
  for (std::size_t i = size; i-- > 0; value >>= 8) octets[i] = U8(value);
  return octets;
}
inline Octets operator+(Octets a, const Octets& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}
inline Octets joined(const Contents& contents) {
  Octets all;
  for (const Octets& octets : contents) all.insert(all.end(), octets.begin(), octets.end());
  return all;
}
inline U32 word(const Octets& octets, std::size_t at = 0) {
  return U32(octets[at] << 24 | octets[at + 1] << 16 | octets[at + 2] << 8 | octets[at + 3]);
}

// A list type: the octets of its values, its attribute, and `some(n)`, another value for each `n`
// below `values`.

template <class L, U32 octets, U32 type, U32 count>
struct ListType {
  using List = L;
  static constexpr U32 size = octets, attribute = type, values = count;
};
struct Standard : ListType<CommList, 4, 8, 65535> {
  static constexpr const char* name = "Community";
  static Octets some(U32 n) { return number(n * 0x9E3779B1, 4); }
  static U32 content(const Octets& octets) { return word(octets); }
};
struct Large : ListType<LargeCommList, 12, 32, 65535> {
  static constexpr const char* name = "Large Community";
  // Many differ in one word only.
  static Octets some(U32 n) {
    return number(n % 4 * 0x3FFFFFFF, 4) + number(n / 4 % 5 * 0x3FFFFFFF, 4) +
           number(n / 20 * 0x9E3779B1, 4);
  }
  static Acl::CommunityValue content(const Octets& octets) {
    return {word(octets), word(octets, 4), word(octets, 8)};
  }
};
/// None is a link bandwidth.
struct EightOctets : ListType<ExtCommList, 8, 16, 400> {
  static constexpr const char* name = "Extended Community";
  static Octets some(U32 n) {
    static constexpr U16 types[] = {0x0002, 0x0102, 0x0202, 0x0003, 0x030b,
                                    0x030c, 0x4300, 0x0603, 0x4104, 0xff00};
    return number(types[n % 10], 2) + number(n / 10 % 40, 6);
  }
  static ExtCommContent content(const Octets& octets) {
    return ExtCommContent(U64{word(octets)} << 32 | word(octets, 4));
  }
};
struct TwentyOctets : ListType<ExtCommIp6List, 20, 25, 210> {
  static constexpr const char* name = "IPv6 Address Specific Extended Community";
  static Octets some(U32 n) {
    static constexpr U16 types[] = {0x0002, 0x4002, 0x000b, 0x0004, 0x0602};
    const Octets half = number(n / 5 % 7, 8);
    return number(types[n % 5], 2) + half + half + number(0x0100 + n / 35 % 6, 2);
  }
  static ExtCommIp6Content content(const Octets& octets) {
    Zonet::Ip6Addr::Octets address;
    std::copy_n(octets.begin() + 2, 16, address.begin());
    return {octets[0], octets[1], Zonet::Ip6Addr(address), U16(octets[18] << 8 | octets[19])};
  }
};

/// Tables of all list types, of which nothing is left when a test is over: no member, no octet.
struct ListTest : testing::Test {
  ~ListTest() override {
    EXPECT_EQ(tables ? members() : 0, 0u);
    tables.reset();
    EXPECT_EQ(alive(), before);
  }

  U64 groups() const {
    const auto& eight = *tables->of<ExtCommList>().lists();
    return eight.extCommClassificationListDedupTable()->members() +
           eight.rtExtCommClassificationListDedupTable()->members() +
           tables->of<ExtCommIp6List>().lists()->extCommClassificationListDedupTable()->members();
  }
  U64 members() const {
    U64 members = groups();
    tables->forEachKind([&](const auto& kind) {
      members += kind.lists()->dedupHashTable()->members();
      if constexpr (requires { kind.values(); })
        members += kind.values()->dedupHashTable()->members();
    });
    return members;
  }
  static std::map<Mox::String, std::size_t> alive() {
    std::map<Mox::String, std::size_t> octets;
    for (const auto& count : Mox::allocationCounts())
      if (count.octets || count.objects) octets[count.type] = count.octets;
    return octets;
  }

  const std::map<Mox::String, std::size_t> before = alive();
  std::optional<CommunityTables> tables{std::in_place};
};

/// The words for one list type.
template <class T>
struct ListsOf : ListTest {
  using List = typename T::List;

  const auto& kind() const { return tables->of<List>(); }
  const auto& table() const { return kind().lists(); }
  auto value(const Octets& octets) const {
    if constexpr (InternsValues<List>)
      return kind().values()->dedupContent(T::content(octets));
    else
      return T::content(octets);
  }
  auto built(const Contents& contents) const {
    auto list = Mox::makeNew<List>();
    for (const Octets& octets : contents) list->commIs(value(octets));
    return list;
  }
  auto interned(const Contents& contents) const { return built(contents)->dedup(table()); }
  auto fromWire(std::span<const U8> octets) const {
    if constexpr (InternsValues<List>)
      return List::fromWire(kind().values(), octets);
    else
      return List::fromWire(octets);
  }
};

/// Each act ends the process with this message.
inline void expectDeaths(const char* message, const std::vector<std::function<void()>>& acts) {
  for (const auto& act : acts) EXPECT_DEATH(act(), message);
}

/// On a stream whose width, base and fill are for its numbers, not for our text.
inline Mox::String streamed(const auto& object, std::ios::fmtflags flags = {}) {
  std::ostringstream out;
  out.setf(flags);
  out << std::hex << std::setfill('*') << std::setw(40) << object;
  return out.str();
}

/// The contents of a list in its order, as octets.
inline Contents contentsOf(const auto& list) {
  Contents contents;
  list.forEachValue([&](const auto& content) {
    const auto octets = wireOctets(content);
    contents.emplace_back(octets.begin(), octets.end());
  });
  return contents;
}

}  // namespace Routing::Bgp

// Both families of extended lists under one set of words. Contents are written as octets of the
// wire, so that order and layout are checked against something that the library did not make.
#pragma once

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "community-list/ZoBgpCommunityList.h"
#include "ip6/ExtCommIp6ListDedupTable.h"
#include "parse/BgpParseExtComm.h"

namespace Routing::Bgp {

using Octets = std::vector<U8>;

inline Octets operator+(Octets a, const Octets& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

inline Octets number(U64 value, std::size_t size) {
  Octets octets(size);
  for (std::size_t i = size; i-- > 0; value >>= 8) octets[i] = U8(value);
  return octets;
}

/// Container, value table and list table of the 8-octet family.
struct EightOctets {
  using List = ExtCommList;
  using Value = ExtComm;
  static constexpr std::size_t size = 8;
  static constexpr U8 attribute = 16;
  static constexpr const char* name = "Routing::Bgp::ExtCommList";

  BgpParseExtCommContainerSm::Ptr container = bgpParseExtCommContainerSmFactory();
  ExtCommDedupTable::Ptr values = extCommDedupTableFactory(container->extCommParser());
  ExtCommListDedupTable::Ptr table = extCommListDedupTableFactory();

  static ExtCommContent content(const Octets& octets) {
    U64 value = 0;
    for (const U8 octet : octets) value = value << 8 | octet;
    return ExtCommContent(value);
  }
  /// A content of one of ten types and subtypes. None is a link bandwidth.
  static Octets some(U32 random) {
    static constexpr U16 types[] = {0x0002, 0x0102, 0x0202, 0x0003, 0x030b,
                                    0x030c, 0x4300, 0x0603, 0x4104, 0xff00};
    return number(types[random % 10], 2) + number(random / 10 % 40, 6);
  }
  static List::Ptr make() { return ExtCommList::ExtCommListIs(); }
  U64 groups() const {
    return table->extCommClassificationListDedupTable()->members() +
           table->rtExtCommClassificationListDedupTable()->members();
  }
};

/// The same of the 20-octet family.
struct TwentyOctets {
  using List = ExtCommIp6List;
  using Value = ExtCommIp6;
  static constexpr std::size_t size = 20;
  static constexpr U8 attribute = 25;
  static constexpr const char* name = "Routing::Bgp::ExtCommIp6List";

  BgpParseExtCommContainerSm::Ptr container = bgpParseExtCommContainerSmFactory();
  ExtCommIp6DedupTable::Ptr values = extCommIp6DedupTableFactory(container->extCommParser());
  ExtCommIp6ListDedupTable::Ptr table = extCommIp6ListDedupTableFactory();

  static ExtCommIp6Content content(const Octets& octets) {
    Zonet::Ip6Addr::Octets address;
    std::copy_n(octets.begin() + 2, 16, address.begin());
    return {octets[0], octets[1], Zonet::Ip6Addr(address), U16(octets[18] << 8 | octets[19])};
  }
  static Octets some(U32 random) {
    static constexpr U16 types[] = {0x0002, 0x4002, 0x000b, 0x0004, 0x0602};
    return number(types[random % 5], 2) + number(random / 5 % 7, 8) + number(0, 8) +
           number(0x0100 + random / 35 % 6, 2);
  }
  static List::Ptr make() { return extCommIp6ListFactory(); }
  U64 groups() const { return table->extCommClassificationListDedupTable()->members(); }
};

/// Both, with nothing left when a test is over: no member of any table, no octet.
template <class Family>
class ExtCommLists : public testing::Test {
 protected:
  using List = typename Family::List;
  using ConstList = Mox::Ptr<const List>;

  ExtCommLists() : before_(alive()), family_(std::in_place) {}
  ~ExtCommLists() override {
    EXPECT_EQ(members(), 0u);
    family_.reset();
    EXPECT_EQ(alive(), before_);
  }

  Family& family() { return *family_; }
  U64 members() {
    return family().values->dedupHashTable()->members() +
           family().table->dedupHashTable()->members() + family().groups();
  }
  Mox::Ptr<const typename Family::Value> value(const Octets& octets) {
    return family().values->dedupContent(Family::content(octets));
  }
  typename List::Ptr built(const std::vector<Octets>& contents) {
    auto list = Family::make();
    for (const Octets& octets : contents) list->commIs(value(octets));
    return list;
  }
  ConstList interned(const std::vector<Octets>& contents) {
    return built(contents)->dedup(family().table);
  }

 private:
  static std::map<Mox::String, std::size_t> alive() {
    std::map<Mox::String, std::size_t> octets;
    for (const auto& count : Mox::allocationCounts())
      if (count.octets || count.objects) octets[count.type] = count.octets;
    return octets;
  }

  std::map<Mox::String, std::size_t> before_;
  std::optional<Family> family_;
};

}  // namespace Routing::Bgp

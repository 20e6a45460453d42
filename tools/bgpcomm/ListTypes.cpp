#include "ListTypes.h"

#include "Descriptions.h"
#include "HeldListsOf.h"
#include "TextStyle.h"
#include "kinds/ZoBgpKindPack.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

struct Words {
  std::string_view key, title;
};
template <class List>
constexpr Words words;
template <>
constexpr Words words<CommList> = {"standard", "standard"};
template <>
constexpr Words words<ExtCommList> = {"extended", "extended"};
template <>
constexpr Words words<ExtCommIp6List> = {"ipv6Extended", "IPv6 extended"};
template <>
constexpr Words words<LargeCommList> = {"large", "large"};

/// Interns the list of an attribute's value. `fill` gets it, and the text.
template <class List>
ListText read(const CommunityTables& tables, Octets value, auto fill) {
  const auto interned = tables.of<List>().dedupWire(value);
  if (!interned) return {faultOf(*interned.fault), interned.fault->toStrep(), {}};
  ListText text;
  fill(*interned.list, text);
  return text;
}

template <class List>
ListText text(const CommunityTables& tables, Octets value) {
  return read<List>(tables, value, [](const List& list, ListText& text) {
    forEachCommunity(list, [&](const auto& one) {
      const std::string its = textOf(one);
      (text.text += text.text.empty() ? "" : " ") +=
          explains()
              ? explained(its, its, descriptionOf(communityOf(List::pathAttribute, octetsOf(one))))
              : its;
    });
  });
}

template <class List>
ListText values(const CommunityTables& tables, Octets value) {
  return read<List>(tables, value, [](const List& list, ListText& text) {
    forEachCommunity(list, [&](const auto& one) {
      text.values.push_back({textOf(one), hex(octetsOf(one)),
                             descriptionOf(communityOf(List::pathAttribute, octetsOf(one)))});
    });
  });
}

template <class List>
ListText serialized(const CommunityTables& tables, Octets value) {
  return read<List>(tables, value, [](const List& list, ListText& text) {
    if constexpr (requires { list.serialize(true); })
      text.text = list.serialize(true);
    else
      text.text = list.serialize();
  });
}

template <class List>
std::unique_ptr<HeldLists> makeHeld(const CommunityTables& tables) {
  return std::make_unique<HeldListsOf<List>>(tables);
}

template <class... Lists>
constexpr auto makeRows(const PathCommunitiesOf<Lists...>*) {
  return std::array{ListType{words<Lists>.key, words<Lists>.title, U8(Lists::pathAttribute),
                             valueSizeOf<Lists>, &text<Lists>, &values<Lists>, &serialized<Lists>,
                             &makeHeld<Lists>}...};
}
constexpr auto rows = makeRows(static_cast<const PathCommunities*>(nullptr));

constexpr std::array<U8, 256> typeByAttribute = [] {
  std::array<U8, 256> types{};
  for (U8& type : types) type = U8(listTypeCount);
  for (std::size_t type = 0; type < listTypeCount; ++type) types[rows[type].attribute] = U8(type);
  return types;
}();

}  // namespace

const std::array<ListType, listTypeCount> listTypes = rows;

std::size_t listTypeOf(U8 attribute) { return typeByAttribute[attribute]; }

const CommunityTables::Parser& sharedParser() {
  static const CommunityTables::Parser parser = [] {
    auto container = bgpParseExtCommContainerSmFactory();
    // Objects of described kinds print canonical texts in every form.
    if (textStyle().form() == TextForm::canonical) installKinds(*container, *textStyle().kinds);
    return container;
  }();
  return parser;
}

Fault faultOf(const WireFault& fault) {
  return fault.reason == WireFault::Reason::linkBandwidth ? Fault::linkBandwidth
                                                          : Fault::attrLength;
}

std::array<std::unique_ptr<HeldLists>, listTypeCount> FileLists::makeHeld() const {
  std::array<std::unique_ptr<HeldLists>, listTypeCount> held;
  for (std::size_t type = 0; type < listTypeCount; ++type)
    held[type] = listTypes[type].makeHeld(tables_);
  return held;
}

}  // namespace bgpcomm

// Octets from a peer: as a list, as single communities of both families; then every text and every
// way back to the wire.

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>

#include "Mox/Exception.h"
#include "community-list/ZoBgpCommunityList.h"
#include "community/ZoBgpCommunityDedupTable.h"
#include "ip6/ExtCommIp6DedupTable.h"
#include "parse/BgpParseExtComm.h"

using namespace Routing::Bgp;
using namespace Mox::Words;

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void standard(std::span<const U8> octets) {
  static const CommListDedupTable::Ptr table = commListDedupTableFactory();
  const auto read = CommList::dedupWire(table, octets);
  require(bool(read) != read.fault.has_value());
  if (!read) return require(!read.fault->toStrep().empty());
  require(octets.size() == 4 * (read.list->comms() + read.repeats));
  require(CommList::fromWire(octets).list->dedup(table) == read.list);
  // The canonical attribute, computed in the simplest way there is.
  std::set<std::string> values;
  for (; !octets.empty(); octets = octets.subspan(4))
    values.emplace(octets.begin(), octets.begin() + 4);
  std::string wire;
  for (const std::string& value : values) wire += value;
  require(read.list->serialize().ends_with(wire) && values.size() == read.list->comms());
  for (const std::string& text :
       {read.list->commsStringForm(), read.list->commsWellKnownStringForm()})
    require(std::size_t(std::count(text.begin(), text.end(), ' ')) + 1 == values.size());
  read.list->hash();
}

template <class Table, class Content>
void single(const Table& table, const Content& content) {
  const auto object = table->dedupContent(content);
  require(object->getContent() == content && object == table->dedupContent(content));
  using Format = typename std::remove_cvref_t<decltype(*object)>::StrepFormat;
  for (U32 flags = 0; flags <= Format::max; ++flags) object->toStrepForPolicy(Format(flags));
  std::ostringstream stream;
  stream << object << object->getContent();
  object->formatSubtype(stream);
  Content again{};
  sequenceToValue(valueToStrep(content), again);
  require(again == content);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  static const auto container = bgpParseExtCommContainerSmFactory();
  static const auto table = extCommDedupTableFactory(container->extCommParser());
  static const auto ip6Table = extCommIp6DedupTableFactory(container->extCommParser());
  const std::span<const U8> octets(data, size);
  standard(octets);
  for (auto left = octets; left.size() >= 8; left = left.subspan(8))
    single(table, ExtCommContent(Zonet::loadNetworkOrder<U64>(left.data())));
  for (auto left = octets; left.size() >= 20; left = left.subspan(20)) {
    Zonet::Ip6Addr::Octets address;
    std::copy_n(left.begin() + 2, address.size(), address.begin());
    single(ip6Table, ExtCommIp6Content{left[0], left[1], Zonet::Ip6Addr(address),
                                       Zonet::loadNetworkOrder<U16>(&left[18])});
  }
  return 0;
}

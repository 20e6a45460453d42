// Octets from a peer: as a list, as single communities of both families; then every text and every
// way back to the wire.

#include <algorithm>
#include <numeric>
#include <set>
#include <sstream>

#include "Fuzzing.h"

static void standard(const CommListDedupTable::Ptr& table, std::span<const U8> octets) {
  const auto read = CommList::dedupWire(table, octets);
  require(bool(read) != read.fault.has_value());
  if (!read) return require(!read.fault->toStrep().empty());
  require(octets.size() == 4 * (read.list->comms() + read.repeats));
  require(CommList::fromWire(octets).list->dedup(table) == read.list);
  // The canonical attribute, computed in the simplest way there is.
  std::set<std::string> values;
  for (; !octets.empty(); octets = octets.subspan(4))
    values.emplace(octets.begin(), octets.begin() + 4);
  const std::string wire = std::accumulate(values.begin(), values.end(), std::string());
  require(read.list->serialize().ends_with(wire) && values.size() == read.list->comms());
  for (const std::string& text :
       {read.list->commsStringForm(), read.list->commsWellKnownStringForm()})
    require(std::size_t(std::count(text.begin(), text.end(), ' ')) + 1 == values.size());
  read.list->hash();
}

template <class Content, std::size_t size>
static void singles(const auto& table, std::span<const U8> octets) {
  for (; octets.size() >= size; octets = octets.subspan(size)) {
    const auto content = Content::fromOctets(octets.first<size>());
    require(std::ranges::equal(content.octets(), octets.first(size)));
    const auto object = table->dedupContent(content);
    require(object->getContent() == content && object == table->dedupContent(content));
    using Format = typename std::remove_cvref_t<decltype(*object)>::StrepFormat;
    for (U32 flags = 0; flags <= Format::max; ++flags) object->toStrepForPolicy(Format(flags));
    std::ostringstream stream;
    object->formatSubtype(stream << object << content);
    Content again{};
    sequenceToValue(valueToStrep(content), again);
    require(again == content);
  }
}

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  static const CommunityTables tables;
  const std::span<const U8> octets(data, size);
  standard(tables.of<CommList>().lists(), octets);
  singles<ExtCommContent, 8>(tables.of<ExtCommList>().values(), octets);
  singles<ExtCommIp6Content, 20>(tables.of<ExtCommIp6List>().values(), octets);
  return 0;
}

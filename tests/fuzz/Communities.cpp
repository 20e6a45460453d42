// Octets from a peer as single communities of both families; then every text and the way back.

#include <algorithm>
#include <sstream>

#include "Fuzzing.h"

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
  singles<ExtCommContent, 8>(tables.of<ExtCommList>().values(), octets);
  singles<ExtCommIp6Content, 20>(tables.of<ExtCommIp6List>().values(), octets);
  return 0;
}

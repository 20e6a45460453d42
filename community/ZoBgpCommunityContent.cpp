#include "community/ZoBgpCommunityContent.h"

#include "Mox/Type.h"
#include "community/ZoBgpCommunityText.h"

namespace Routing::Bgp {

static const Mox::Type extCommContentType{"Routing::Bgp::ExtCommContent",
                                          nullptr,
                                          {Mox::attribute<&ExtCommContent::value>("value"),
                                           Mox::attribute<&ExtCommContent::hash>("hash")}};

std::ostream& operator<<(std::ostream& stream, const ExtCommContent& content) {
  CommText text;
  text.content(content, stream);
  return text.writeTo(stream);
}

void sequenceToValue(std::string_view text, ExtCommContent& content) {
  U64 value = 0;
  Mox::sequenceToValue(text, value);
  content = ExtCommContent(value);
}

}  // namespace Routing::Bgp

// Texts of the communities of a list or group, one after the other.
#pragma once

#include "community-list/ZoBgpCommunityListFamilyGroup.h"
#include "community/ZoBgpCommunityStrepFormat.h"
#include "community/ZoBgpCommunityText.h"

namespace Routing::Bgp {

/// The show texts with single spaces between them.
template <class Comms>
std::ostream& writeSeparated(std::ostream& stream, const Comms& comms) {
  std::string_view separator;
  for (const auto& comm : comms) {
    Mox::writeText(stream, separator) << *comm;
    separator = " ";
  }
  return stream;
}

/// The text that `write` writes into a stream.
template <class Write>
Mox::String streamText(Write write) {
  CommTextSink sink;
  std::ostream stream(&sink);
  write(stream);
  return sink.str();
}

/// The policy texts, each with a space behind it.
template <class Value>
Mox::String policyTexts(const ExtCommVector<Value>& comms, StrepFormatFlag flag) {
  Mox::String text;
  for (const auto& comm : comms)
    (text += comm->toStrepForPolicy(typename Value::StrepFormat(flag))) += ' ';
  return text;
}

}  // namespace Routing::Bgp

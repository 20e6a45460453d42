// Bodies of extended lists: their texts.
#pragma once

#include "community-list/ZoBgpCommunityListFamilyList.h"
#include "community-list/internal/ZoBgpCommunityListCommTexts.h"

namespace Routing::Bgp {

template <class F>
Mox::String ExtCommListOf<F>::commsStringForm() const {
  return policyTexts(comm_, strepFormatClassification);
}

template <class F>
Mox::String ExtCommListOf<F>::toStrep() const {
  return streamText([this](std::ostream& stream) { writeTo(stream); });
}

/// The communities are held for themselves, so that the list may go while its text is written.
template <class F>
std::ostream& ExtCommListOf<F>::writeTo(std::ostream& stream) const {
  const std::vector<ConstValue> held(comm_.begin(), comm_.end());
  Mox::writeText(stream, "[ ");
  writeSeparated(stream, held);
  return Mox::writeText(stream, " ]");
}

template <class F>
Mox::String ExtCommListOf<F>::groupsText() const {
  Mox::String text;
  for (const ConstGroup& group : groups_.present())
    text += (text.empty() ? "" : "; ") + group->toStrep();
  return text;
}

}  // namespace Routing::Bgp

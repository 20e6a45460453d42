// Bodies of extended communities. REQUIRES: only the source that defines a family includes this and
// instantiates them; everybody else links that.
#pragma once

#include "community/ZoBgpCommunityFamilyValue.h"

namespace Routing::Bgp {

template <class F>
Mox::Ptr<typename F::Object> ExtCommValue<F>::destash(MoxStash::StoreReference stored,
                                                      const MoxStash::StoreManager& manager) {
  const auto& record = manager.record<typename F::Stored>(stored);
  if (record.classification >= extCommClassificationOneBeyondLast)
    manager.fail("stored community has no such classification: " +
                 std::to_string(record.classification));
  auto object = Mox::makeNew<typename F::Object>(ExtCommClassification(record.classification),
                                                 record.content());
  manager.restored();
  return object;
}

template <class F>
MoxStash::StoreReference ExtCommValue<F>::store(MoxStash::StoreWriter& writer) const {
  return writer.once(*this,
                     [&] { return writer.append(F::Stored::of(classification_, content_)); });
}

template <class F>
Mox::String ExtCommValue<F>::toStrep() const {
  CommTextSink sink;
  std::ostream stream(&sink);
  formatDerivedType(stream);
  return sink.str();
}

template <class F>
void ExtCommValue<F>::formatSubtype(std::ostream& stream) const {
  CommText text;
  appendSubtype(text);
  text.writeTo(stream);
}

template <class F>
void ExtCommValue<F>::appendTypeAndSubtype(CommText& text) const {
  text << pktType();
  if (!pktSubtype().isUnspecified()) appendSubtype(text << ' ');
}

template <class F>
void ExtCommValue<F>::appendSubtype(CommText& text) const {
  const BgpExtCommPktSubtype subtype = pktSubtype();
  if (subtype.isUnspecified()) {
    text << "unspecified";
    return;
  }
  for (const ExtCommSubtypeNames& names : F::subtypeNames) {
    if (names.pktType != pktType()) continue;
    const std::string_view name = names.nameOf(U8(U64(subtype)));
    name.empty() ? text << "subtype=" << U64(subtype) : text << name;
    return;
  }
  text << "none";
}

template <class F>
Mox::String ExtCommValue<F>::subtypeString(PktType type) const {
  // The condition as operators know it: the enumerator's name with an underscore.
  MOX_ASSERT(pktType() == type, (stringValue(type) + "_ == pktType()").c_str());
  MOX_ASSERT(!pktSubtype().isUnspecified(), "!pktSubtype().isUnspecified()");
  CommText text;
  appendSubtype(text);
  return text.str();
}

}  // namespace Routing::Bgp

// An extended community, in both families, that of 8 and that of 20 octets: an interned object of a
// classification and a raw content, and the texts made from them.
//
// A family is what differs, and nothing else:
//   Content          the raw content: `type()`, `subtype()`, `transitive()`, `==`, `hash()`
//   PktType          the enumeration of its types; its `Unknown` is `unknownType`
//   Object           the class of an object that nobody knows more about
//   Stored           the record of one in the store: `classification`, `content()`, and
//                    `of(classification, content)`, which makes it
//   attribute        the path attribute that carries them
//   subtypeNames     the types whose subtypes have names, a range of ExtCommSubtypeNames
//   strepFormatName  see StrepFormatOf
//
// 1. Objects are immutable; their identity is the content alone: neither hash nor equality looks at
//    the classification.
// 2. No content makes a text fail or be cut.
//
// Threads: read from any.
#pragma once

#include "Mox/Entity.h"
#include "MoxStash/DedupHandle.h"
#include "MoxStash/StoreManager.h"
#include "MoxStash/StoreWriter.h"
#include "attr/BgpPathAttributeEnums.h"
#include "attr/ZoBgpMiscTypes.h"
#include "community/ZoBgpCommunityEnums.h"
#include "community/ZoBgpCommunityStrepFormat.h"
#include "community/ZoBgpCommunitySubtypes.h"
#include "community/ZoBgpCommunityText.h"

namespace Routing::Bgp {

/// A type and the names of its subtypes.
struct ExtCommSubtypeNames {
  U32 pktType;
  std::string_view (*nameOf)(U8 subtype);  ///< empty for an octet that is no member
};

template <class F>
class ExtCommValue : public MoxStash::DedupHandle {
 public:
  using Family = F;
  using Content = typename F::Content;
  using PktType = typename F::PktType;
  using StrepFormat = StrepFormatOf<F>;

  /// Private and plain, until it is interned.
  ExtCommValue(ExtCommClassification classification, const Content& content)
      : classification_(classification), content_(content) {}

  /// A private object as it lies in the store, to be interned by the caller. It is of the plain
  /// class, whatever class was stored; the manager is told. StoreException when the record is
  /// damaged.
  static Mox::Ptr<typename F::Object> destash(MoxStash::StoreReference stored,
                                              const MoxStash::StoreManager& manager);
  /// The record type of this family's communities in a store.
  static constexpr MoxStash::RecordType recordType = MoxStash::RecordType(F::attribute);
  /// Appends the record that `destash` reads; see StoreWriter.
  MoxStash::StoreReference store(MoxStash::StoreWriter& writer) const;

  /// The group that the parser assigned.
  ExtCommClassification classification() const { return classification_; }
  /// The octets of the wire.
  Content getContent() const { return content_; }
  /// The type octet, or `Unknown` when it is no member.
  PktType pktType() const {
    const auto known = PktType(content_.type());
    return bgpIsValidEnumMember(known) ? known : F::unknownType;
  }
  /// Whether it crosses the borders of autonomous systems: bit 0x40 of the type is zero.
  bool transitive() const { return content_.transitive(); }

  U32 hash() const override { return content_.hash(); }
  bool compare(const Orv::DedupHandle* other) const override {
    return content_ == static_cast<const ExtCommValue*>(other)->content_;
  }
  /// `content` refers to a `Content`, `sizeof(Content)` octets at any alignment.
  bool compareByContent(const Orv::DedupContentHandle& content) const override {
    return content.size == sizeof content_ &&
           std::memcmp(content.octets, &content_, sizeof content_) == 0;
  }

  // Virtual slots, in this order after those of the handle. Derived classes append theirs.

  /// The subtype octet; unspecified for a class of types that have none.
  virtual BgpExtCommPktSubtype pktSubtype() const { return {}; }
  /// The text of show commands, in angle brackets.
  virtual void formatDerivedType(std::ostream& stream) const = 0;
  /// The text of policy and configuration; `format` says how much of it.
  virtual Mox::String toStrepForPolicy(StrepFormat format) const = 0;
  /// Does nothing: the subtype is part of the content, which never changes.
  virtual void pktSubtypeIs(const BgpExtCommPktSubtype&) {}

  /// The text that `formatDerivedType` writes.
  Mox::String toStrep() const;
  /// Writes the name of the subtype, or `subtype=` and its number. Writes `none` for a type whose
  /// subtypes have no names at all, `unspecified` for an object without subtype.
  void formatSubtype(std::ostream& stream) const;

  /// The show text; `NULL` for a null pointer.
  friend std::ostream& operator<<(std::ostream& stream, const ExtCommValue* value) {
    return value ? stream << *value : Mox::writeText(stream, "NULL");
  }
  friend std::ostream& operator<<(std::ostream& stream, const ExtCommValue& value) {
    value.formatDerivedType(stream);
    return stream;
  }

 protected:
  /// The same without a copy.
  const Content& content() const { return content_; }
  /// The name of the subtype or its number. REQUIRES: the object is of `type` and has a subtype.
  /// Asserts "<type>_ == pktType()" and "!pktSubtype().isUnspecified()".
  Mox::String subtypeString(PktType type) const;
  /// Appends the type and, when there is one, a space and the subtype.
  void appendTypeAndSubtype(CommText& text) const;

 private:
  static_assert(std::has_unique_object_representations_v<Content>);

  void appendSubtype(CommText& text) const;

  const ExtCommClassification classification_;
  const Content content_;
};

}  // namespace Routing::Bgp

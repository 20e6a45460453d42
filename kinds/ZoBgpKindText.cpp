#include "kinds/ZoBgpKindText.h"

#include <algorithm>

#include "kinds/ZoBgpKindCheck.h"
#include "kinds/internal/ZoBgpKindForms.h"
#include "kinds/internal/ZoBgpNearestWord.h"

namespace Routing::Bgp {
namespace {

using Parsed = ParsedCommunity<AnyCommunity>;

// --- Writing.

/// The octets of the administrator, which a malformed value shows in front.
U32 administratorOctets(const Kind& kind) {
  U32 end = 0;
  for (const KindField& field : kind.fields)
    if (field.globalAdministrator) end = field.end();
  return end / 8;
}

void writeKind(CommText& text, const Kind& kind, const AnyCommunity& community) {
  const CommunityOctets octets(community);
  const bool malformed = isMalformed(community, kind);
  text << kind.identifier;
  for (const KindField& field : kind.fields) {
    if (malformed && !field.globalAdministrator) break;
    if (isLeftOut(field, octets.value())) continue;
    writeField(text << ':', field, octets.value());
  }
  if (!malformed) return;
  text << ':' << malformedWord << ':';
  writeOctets(text, octets.value().subspan(administratorOctets(kind)));
}

/// A community of 20 octets whose kind has no row: an address and a number, if its type says so.
bool hasAddress(const ExtCommIp6Content& content) { return !(content.type() & ~0x40); }

constexpr KindField unknownIp6Fields[] = {{"subtype", 8, 8, KindForm::hex},
                                          {"address", 16, 128, KindForm::ipv6},
                                          {"local", 144, 16, KindForm::integer}};

void writeUnknown(CommText& text, const AnyCommunity& community) {
  const CommunityOctets octets(community);
  text << (octets.all()[0] & 0x40 ? unknownNonTransitive : unknownTransitive);
  const auto* const ip6 = std::get_if<ExtCommIp6Content>(&community);
  if (ip6 && hasAddress(*ip6))
    for (const KindField& field : unknownIp6Fields) writeField(text << ':', field, octets.all());
  else
    writeOctets(text << ':', octets.all());
}

template <class... Arguments>
Mox::String textOf(const Arguments&... arguments) {
  CommText text;
  appendCanonicalText(text, arguments...);
  return text.str();
}

// --- Reading.

class Reader {
 public:
  Reader(std::string_view text, const KindTable& table, std::optional<BgpPathAttrType> attribute)
      : text_(text), table_(table), attribute_(attribute), parts_(text) {}

  Parsed read() {
    const std::string_view first = parts_[0];
    const Kind* const kind = table_.find(first);
    if (kind && kind->isExtended() && isWanted(kind->attribute)) return readKind(*kind);
    if (equalIgnoringCase(first, unknownTransitive)) return readUnknown(false);
    if (equalIgnoringCase(first, unknownNonTransitive)) return readUnknown(true);
    if (equalIgnoringCase(first, malformedWord)) return readOctetsOnly({});
    return readPlain();
  }

 private:
  using Attribute = BgpPathAttrType;

  bool isWanted(Attribute attribute) const { return !attribute_ || *attribute_ == attribute; }
  Parsed fault() const { return {{}, parts_.error()}; }
  Parsed fail(std::string_view expected) {
    parts_.fail(expected);
    return fault();
  }

  Parsed readKind(const Kind& kind) {
    parts_.take();
    std::array<U8, 20> octets{*kind.type, *kind.subtype};
    const auto whole = std::span(octets).first(kind.octets());
    return readFields(kind, whole.subspan(2)) ? Parsed{communityOf(kind.attribute, whole)}
                                              : fault();
  }

  bool readFields(const Kind& kind, std::span<U8> value) {
    std::size_t least = 0, administrators = 0;
    for (const KindField& field : kind.fields) {
      least += partsOf(field).least;
      if (field.globalAdministrator) administrators += partsOf(field).least;
    }
    const bool malformed = parts_.left() > administrators &&
                           equalIgnoringCase(parts_[1 + administrators], malformedWord);
    const std::size_t rest = value.size() - administratorOctets(kind);
    // One field at most takes more parts than its least: all that are left over.
    std::size_t over = parts_.left() - least;
    if (malformed ? parts_.left() != administrators + 1 + rest : parts_.left() < least) {
      parts_.fail(malformed ? "as many octets as the value has" : canonicalForm(kind));
      return false;
    }
    for (const KindField& field : kind.fields) {
      if (malformed && !field.globalAdministrator) break;
      const KindParts takes = partsOf(field);
      const std::size_t count =
          takes.least + (malformed ? 0 : std::min(over, takes.most - takes.least));
      over -= malformed ? 0 : count - takes.least;
      if (!readField(parts_, field, count, value)) return false;
    }
    if (malformed) {
      parts_.take();
      return readOctets(parts_, value.last(rest));
    }
    if (over) parts_.fail(parts_.peek(), "nothing more: " + canonicalForm(kind));
    return !over;
  }

  Parsed readUnknown(bool nonTransitive) {
    if (parts_.count() != 4 || !isWanted(Attribute::extCommunityIp6))
      return readOctetsOnly(nonTransitive);
    parts_.take();
    std::array<U8, 20> octets{U8(nonTransitive ? 0x40 : 0)};
    for (const KindField& field : unknownIp6Fields)
      if (!readField(parts_, field, 1, octets)) return fault();
    return {communityOf(Attribute::extCommunityIp6, octets)};
  }

  /// All octets of an extended community; bit 0x40 of the first must fit, if that is said.
  Parsed readOctetsOnly(std::optional<bool> nonTransitive) {
    const std::size_t count = parts_.count() - 1;
    const bool ip6 = count == 20;
    if ((count != 8 && !ip6) ||
        !isWanted(ip6 ? Attribute::extCommunityIp6 : Attribute::extCommunity))
      return fail("the octets of an extended community: 8, or 20 in the IPv6 attribute");
    parts_.take();
    std::array<U8, 20> octets{};
    const auto whole = std::span(octets).first(count);
    if (!readOctets(parts_, whole)) return fault();
    if (nonTransitive && *nonTransitive != bool(octets[0] & 0x40)) {
      parts_.fail(parts_[1], *nonTransitive ? "a type with bit 0x40, which says non-transitive"
                                            : "a type without bit 0x40: it says non-transitive");
      return fault();
    }
    return {communityOf(ip6 ? Attribute::extCommunityIp6 : Attribute::extCommunity, whole)};
  }

  /// A standard or large community; otherwise the identifier is not known.
  Parsed readPlain() {
    const bool large = attribute_ ? *attribute_ == Attribute::largeCommunity : parts_.count() == 3;
    const bool standard = attribute_ ? *attribute_ == Attribute::community : !large;
    const auto parsed =
        large ? any(parseCanonicalLarge(text_)) : any(parseCanonicalStandard(text_));
    const bool numeric = !text_.empty() && text_[0] >= '0' && text_[0] <= '9';
    if ((large || standard) && (parsed || attribute_ || numeric)) return parsed;
    if (attribute_ && table_.find(parts_[0]))
      return fail("a community of attribute " + std::to_string(U32(*attribute_)));
    CommunityTextError error{0, Mox::String(parts_[0]),
                             "a community: the identifier of a kind, a "
                             "well-known name, or two or three decimal numbers",
                             nearest()};
    return {{}, std::move(error)};
  }

  static Parsed any(const auto& parsed) {
    return parsed ? Parsed{AnyCommunity(*parsed)} : Parsed{{}, parsed.error};
  }

  /// The identifier that is closest to the first part, if it is close.
  Mox::String nearest() const {
    NearestWord nearest(parts_[0]);
    for (const Kind* kind : table_.rows())
      if (!kind->identifier.empty() && isWanted(kind->attribute)) nearest.offer(kind->identifier);
    return Mox::String(nearest.word());
  }

  std::string_view text_;
  const KindTable& table_;
  const std::optional<BgpPathAttrType> attribute_;
  CommunityTextParts parts_;
};

}  // namespace

void appendCanonicalText(CommText& text, const AnyCommunity& community, const KindTable& table) {
  if (const auto* value = std::get_if<BgpCommunityValue>(&community))
    text << canonicalText(*value);
  else if (const auto* large = std::get_if<Acl::CommunityValue>(&community))
    text << canonicalText(*large);
  else if (const Kind* const kind = table.find(community))
    writeKind(text, *kind, community);
  else
    writeUnknown(text, community);
}

Mox::String canonicalText(const ExtCommContent& content, const KindTable& table) {
  return textOf(AnyCommunity(content), table);
}
Mox::String canonicalText(const ExtCommIp6Content& content, const KindTable& table) {
  return textOf(AnyCommunity(content), table);
}
Mox::String canonicalText(const AnyCommunity& community, const KindTable& table) {
  return textOf(community, table);
}

Mox::String canonicalForm(const Kind& kind) {
  Mox::String form(kind.identifier);
  if (kind.value) return form;  // the name is all
  for (const KindField& field : kind.fields) {
    if (field.form == KindForm::reserved) continue;
    const KindParts parts = partsOf(field);
    const char* const colon = form.empty() ? "" : ":";
    const Mox::String part =
        colon + ('<' + Mox::String(field.name)) + (parts.most > 1 ? ":...>" : ">");
    form += parts.least ? part : '[' + part + ']';
  }
  return form;
}

ParsedCommunity<AnyCommunity> parseCanonical(std::string_view text, const KindTable& table,
                                             std::optional<BgpPathAttrType> attribute) {
  return Reader(text, table, attribute).read();
}

}  // namespace Routing::Bgp

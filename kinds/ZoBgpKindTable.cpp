#include "kinds/ZoBgpKindTable.h"

#include <algorithm>

#include "Mox/Exception.h"
#include "Zonet/NetworkOrder.h"
#include "community/ZoBgpCommunityCanonicalText.h"
#include "kinds/ZoBgpKindCheck.h"
#include "kinds/internal/ZoBgpKindRows.h"

namespace Routing::Bgp {
namespace {

constexpr KindField wholeValue[] = {{"value", 0, 32, KindForm::hex}};
constexpr KindField standardFields[] = {{"as", 0, 16, KindForm::as2}, {"value", 16, 16}};
constexpr KindField largeFields[] = {
    {"global", 0, 32, KindForm::as4}, {"local1", 32, 32}, {"local2", 64, 32}};

// Rows without an identifier: any standard or large community that has no row of its own.
constexpr Kind plainKinds[] = {{.attribute = BgpPathAttrType::community,
                                .name = "(any other)",
                                .reference = "RFC1997; RFC8642",
                                .fields = standardFields,
                                .source = KindSource::draft,
                                .example = "fde81a6f"},
                               {.attribute = BgpPathAttrType::largeCommunity,
                                .name = "Large Community",
                                .reference = "RFC8092 3, 5",
                                .fields = largeFields,
                                .source = KindSource::draft,
                                .example = "000100040000000100000002"}};
static_assert(!checkKinds(plainKinds));

// The rows of well-known communities, made of their registry.
struct WellKnownKinds {
  WellKnownKinds() {
    for (const RegisteredCommunity& row : registeredCommunities()) {
      Kind kind{.attribute = BgpPathAttrType::community,
                .value = row.value,
                .name = row.name,
                .reference = row.reference,
                .identifier = row.text,
                .fields = wholeValue,
                .source = row.name == row.text ? KindSource::registry : KindSource::draft};
      kinds.push_back(kind);
    }
    for (Kind& kind : kinds) {
      const auto octets = CommunityOctets(BgpCommunityValue(*kind.value));
      Mox::String& text = examples.emplace_back();
      for (const U8 octet : octets.all())
        for (const U32 digit : {octet >> 4, octet & 15}) text += "0123456789abcdef"[digit];
    }
    for (std::size_t i = 0; i < kinds.size(); ++i) {
      kinds[i].example = examples[i];
      if (kinds[i].name != kinds[i].identifier) kinds[i].aliases = {&kinds[i].name, 1};
    }
  }

  std::vector<Kind> kinds;
  std::vector<Mox::String> examples;
};

// Rows are sought by one number: attribute, then type and subtype, or the value of a standard one.
constexpr U64 keyOf(BgpPathAttrType attribute, U32 rest) { return U64(attribute) << 33 | rest; }
constexpr U64 keyOfUnnamed(BgpPathAttrType attribute) { return U64(attribute) << 33 | 1ULL << 32; }
constexpr U64 keyOf(const Kind& kind) {
  if (kind.isExtended()) return keyOf(kind.attribute, U32(*kind.type) << 8 | *kind.subtype);
  return kind.value ? keyOf(kind.attribute, *kind.value) : keyOfUnnamed(kind.attribute);
}

Mox::String inLowerCase(std::string_view text) {
  Mox::String lower(text);
  std::ranges::transform(lower, lower.begin(), lowerCase);
  return lower;
}

template <std::size_t n>
std::span<const U8, n> exactly(std::span<const U8> octets) {
  return octets.subspan<0, n>();
}

}  // namespace

BgpPathAttrType attributeOf(const AnyCommunity& community) {
  constexpr BgpPathAttrType attributes[] = {
      BgpPathAttrType::community, BgpPathAttrType::extCommunity, BgpPathAttrType::extCommunityIp6,
      BgpPathAttrType::largeCommunity};
  return attributes[community.index()];
}

CommunityOctets::CommunityOctets(const AnyCommunity& community) : octets_{} {
  const auto words = [this](std::initializer_list<U32> values) {
    for (const U32 value : values) {
      Zonet::storeNetworkOrder(octets_.data() + size_, value);
      size_ += sizeof value;
    }
  };
  const auto extended = [this](const auto& octets) {
    std::ranges::copy(octets, octets_.begin());
    size_ = U32(octets.size());
    prefix_ = 2;
  };
  switch (community.index()) {
    case 0:
      words({U32(std::get<0>(community))});
      break;
    case 1:
      extended(std::get<1>(community).octets());
      break;
    case 2:
      extended(std::get<2>(community).octets());
      break;
    default: {
      const auto& value = std::get<3>(community);
      words({value.globalAdmin(), value.localData1(), value.localData2()});
    }
  }
}

AnyCommunity communityOf(BgpPathAttrType attribute, std::span<const U8> octets) {
  const auto word = [&](std::size_t index) {
    return Zonet::loadNetworkOrder<U32>(octets.data() + 4 * index);
  };
  switch (attribute) {
    case BgpPathAttrType::extCommunity:
      return ExtCommContent::fromOctets(exactly<8>(octets));
    case BgpPathAttrType::extCommunityIp6:
      return ExtCommIp6Content::fromOctets(exactly<20>(octets));
    case BgpPathAttrType::largeCommunity:
      return Acl::CommunityValue(word(0), word(1), word(2));
    default:
      return BgpCommunityValue(word(0));
  }
}

const KindTable& KindTable::builtIn() {
  static const KindTable table = [] {
    const auto wellKnown = std::make_shared<const WellKnownKinds>();
    return KindTable(std::make_shared<const State>())
        .added(wellKnown->kinds, wellKnown)
        .added(assignedKinds(), nullptr)
        .added(plainKinds, nullptr);
  }();
  return table;
}

KindTable KindTable::with(std::span<const Kind> rows, std::shared_ptr<const void> owner) const {
  for (const Kind& kind : rows)
    if (!kind.isExtended())
      throw Mox::RangeException(
          KindFault{&kind, nullptr, "is no extended community: others have no further kinds"}
              .text());
  return added(rows, std::move(owner));
}

KindTable KindTable::added(std::span<const Kind> rows, std::shared_ptr<const void> owner) const {
  if (const auto fault = checkKinds(rows, this->rows())) throw Mox::RangeException(fault->text());
  auto state = std::make_shared<State>(*state_);
  state->owners.push_back(std::move(owner));
  for (const Kind& kind : rows) {
    state->rows.push_back(&kind);
    state->byKey.emplace_back(keyOf(kind), &kind);
    if (!kind.identifier.empty()) state->words.push_back({inLowerCase(kind.identifier), &kind});
    for (const auto alias : kind.aliases) state->words.push_back({inLowerCase(alias), &kind});
  }
  std::ranges::sort(state->byKey, {}, &std::pair<U64, const Kind*>::first);
  std::ranges::sort(state->words, {}, &Word::text);
  return KindTable(std::move(state));
}

const Kind* KindTable::findKey(U64 key) const {
  const auto at =
      std::ranges::lower_bound(state_->byKey, key, {}, &std::pair<U64, const Kind*>::first);
  return at != state_->byKey.end() && at->first == key ? at->second : nullptr;
}

const Kind* KindTable::find(const ExtCommContent& content) const {
  return findKey(
      keyOf(BgpPathAttrType::extCommunity, U32(content.type()) << 8 | content.subtype()));
}

const Kind* KindTable::find(const ExtCommIp6Content& content) const {
  return findKey(
      keyOf(BgpPathAttrType::extCommunityIp6, U32(content.type()) << 8 | content.subtype()));
}

const Kind* KindTable::find(const AnyCommunity& community) const {
  if (const auto* content = std::get_if<ExtCommContent>(&community)) return find(*content);
  if (const auto* content = std::get_if<ExtCommIp6Content>(&community)) return find(*content);
  if (const auto* value = std::get_if<BgpCommunityValue>(&community))
    if (const Kind* kind = findKey(keyOf(BgpPathAttrType::community, U32(*value)))) return kind;
  return findKey(keyOfUnnamed(attributeOf(community)));
}

const Kind* KindTable::find(std::string_view identifier) const {
  const Mox::String lower = inLowerCase(identifier);
  const auto at = std::ranges::lower_bound(state_->words, lower, {}, &Word::text);
  return at != state_->words.end() && at->text == lower ? at->kind : nullptr;
}

Mox::String KindFault::text() const {
  Mox::String text;
  const auto quoted = [&](std::string_view word) { text += '"' + Mox::String(word) + '"'; };
  text += "kind ";
  quoted(kind->identifier.empty() ? kind->name : kind->identifier);
  if (field) {
    text += ", field ";
    quoted(field->name);
  }
  text += ": " + Mox::String(reason);
  if (other) {
    text += ' ';
    quoted(other->identifier.empty() ? other->name : other->identifier);
  }
  return text;
}

}  // namespace Routing::Bgp

#include "kinds/ZoBgpKindPack.h"

#include <atomic>
#include <mutex>

#include "kinds/ZoBgpKindText.h"

namespace Routing::Bgp {
namespace {

/// The tables that were installed in this process, in that order. Nodes are added behind the last
/// and never freed, so readers need no lock.
class InstalledTables {
 public:
  /// The first table that describes the content, else the built-in one.
  const KindTable& of(const auto& content) const {
    for (const Node* node = first_.load(std::memory_order_acquire); node;
         node = node->next.load(std::memory_order_acquire))
      if (node->table.find(content)) return node->table;
    return KindTable::builtIn();
  }
  /// A table that is there changes nothing.
  void add(const KindTable& table) {
    const std::lock_guard guard(adding_);
    std::atomic<Node*>* next = &first_;
    while (Node* const node = next->load(std::memory_order_relaxed)) {
      if (std::ranges::equal(node->table.rows(), table.rows())) return;
      next = &node->next;
    }
    next->store(new Node{table}, std::memory_order_release);
  }

 private:
  struct Node {
    const KindTable table;
    std::atomic<Node*> next = nullptr;
  };
  std::atomic<Node*> first_ = nullptr;
  std::mutex adding_;
};
constinit InstalledTables installed;

template <class Base>
constexpr std::string_view describedName = {};
template <>
constexpr std::string_view describedName<ExtCommSubtyped> = "Routing::Bgp::ExtCommDescribed";
template <>
constexpr std::string_view describedName<ExtCommAsNumber> =
    "Routing::Bgp::ExtCommDescribedAsNumber";
template <>
constexpr std::string_view describedName<ExtCommIpv4Address> =
    "Routing::Bgp::ExtCommDescribedIpv4Address";
template <>
constexpr std::string_view describedName<ExtCommIp6Subtyped> = "Routing::Bgp::ExtCommIp6Described";

ExtCommClassification classificationOf(const Kind& kind) {
  return kind.attribute == BgpPathAttrType::extCommunity && kind.type == extCommPktTypeTransEvpn
             ? extCommClassificationEvpn
             : extCommClassificationUnSpecified;
}

/// Makes the objects of a row whose type the library has a rule for.
template <class K>
class DescribedRule final : public Mox::Entity<DescribedRule<K>, typename K::SubRule> {
 public:
  static const Mox::Type type;
  using DescribedRule::Entity::Entity;

  Mox::Ptr<typename K::Family::Object> inhale(
      const typename K::Family::Content& content) const override {
    return K::template make<ExtCommDescribedAs<typename K::Fallback>>(
        extCommClassificationUnSpecified, content);
  }
};
/// `Routing::Bgp::BgpParseExtComSubTypeTransOpaqueDescribedRule`
template <class K>
const Mox::Type DescribedRule<K>::type{
    Mox::String(K::subRuleName.substr(0, K::subRuleName.find("RuleBase"))) + "DescribedRule",
    &K::SubRule::type,
    {}};

/// Makes the objects of a row whose type it has none for.
class OpenDescribedRule final
    : public Mox::Entity<OpenDescribedRule, BgpParseExtCommOpenSubTypeRuleBase> {
 public:
  static const Mox::Type type;

  OpenDescribedRule(const BgpParseExtCommControl& control, const Kind& kind)
      : Entity(control, BgpExtCommPktType(*kind.type), *kind.subtype),
        classification_(classificationOf(kind)) {}
  Mox::Ptr<ExtComm> inhale(const ExtCommContent& content) const override {
    return Mox::makeNew<ExtCommDescribed>(classification_, content);
  }

 private:
  const ExtCommClassification classification_;
};
const Mox::Type OpenDescribedRule::type{"Routing::Bgp::BgpParseExtCommOpenSubTypeDescribedRule",
                                        &BgpParseExtCommOpenSubTypeRuleBase::type,
                                        {}};

}  // namespace

template <class Base>
const Mox::Type ExtCommDescribedAs<Base>::type{describedName<Base>, &Base::type, {}};

template <class Base>
const Kind* ExtCommDescribedAs<Base>::kind() const {
  return installed.of(this->content()).find(this->content());
}
template <class Base>
std::optional<KindFieldValue> ExtCommDescribedAs<Base>::field(std::string_view name) const {
  return kindField(this->content(), name, installed.of(this->content()));
}
template <class Base>
std::optional<KindFieldValue> ExtCommDescribedAs<Base>::field(std::size_t index) const {
  return kindField(this->content(), index, installed.of(this->content()));
}

template <class Base>
void ExtCommDescribedAs<Base>::formatDerivedType(std::ostream& stream) const {
  CommText text;
  appendCanonicalText(text << '<', this->content(), installed.of(this->content()));
  if constexpr (std::derived_from<Base, ExtComm>)
    this->writeShowText(text, stream);
  else
    (text << '>').writeTo(stream);
}

template <class Base>
Mox::String ExtCommDescribedAs<Base>::toStrepForPolicy(StrepFormat) const {
  return canonicalText(this->content(), installed.of(this->content()));
}

template class ExtCommDescribedAs<ExtCommSubtyped>;
template class ExtCommDescribedAs<ExtCommAsNumber>;
template class ExtCommDescribedAs<ExtCommIpv4Address>;
template class ExtCommDescribedAs<ExtCommIp6Subtyped>;

// They cost what their bases do.
static_assert(sizeof(ExtCommDescribed) == sizeof(ExtCommSubtyped));
static_assert(sizeof(ExtCommDescribedAsNumber) == sizeof(ExtCommAsNumber));
static_assert(sizeof(ExtCommDescribedIpv4Address) == sizeof(ExtCommIpv4Address));
static_assert(sizeof(ExtCommIp6Described) == sizeof(ExtCommIp6Subtyped));

const Mox::Type KindPackSm::type{
    "Routing::Bgp::KindPackSm", &BgpParseExtCommPluginBaseSm::type, {}};

KindPackSm::KindPackSm(const RuleCollections& registry, const KindTable& table)
    : Entity(registry), table_(table) {
  installed.add(table_);
  handleStartup();
}

void KindPackSm::install(BgpParseExtendedCommunityRule& parser) const {
  for (const Kind* const kind : table_.rows()) {
    if (kind->attribute != BgpPathAttrType::extCommunity) continue;
    const auto pktType = BgpExtCommPktType(*kind->type);
    if (kind::has(pktType)) continue;
    const auto open = bgpParseExtCommOpenTypeRuleIs(parser, pktType);
    if (open && !open->subTypeRule(*kind->subtype))
      open->subTypeRuleIs(Mox::makeNew<OpenDescribedRule>(parser.parseControl(), *kind));
  }
}

template <class K>
void KindPackSm::install(BgpParseExtCommTypeRule<K>& rule) const {
  for (const Kind* const kind : table_.rows()) {
    if (kind->attribute != K::Family::attribute || *kind->type != K::pktType) continue;
    const auto subtype = typename K::Subtype(*kind->subtype);
    if (bgpIsValidEnumMember(subtype) && !rule.subTypeRule(subtype))
      rule.subTypeRuleIs(Mox::makeNew<DescribedRule<K>>(rule.parseControl(), subtype));
  }
}

#define ZOBGP_KIND(Kind, ...) template void KindPackSm::install(kind::Kind::Rule&) const;
#include "parse/BgpParseExtCommKindList.h"

U32 installKinds(BgpParseExtCommContainerSm& container, const KindTable& table) {
  return container.extCommParserSmsEnq(
      Mox::makeNew<KindPackSm>(container.parseExtCommRuleCollectionsIs(), table));
}

}  // namespace Routing::Bgp

// The plug-in pack: parsers make objects of described kinds, which print canonical texts and know
// their fields. An agent adds one call:
//
//   installKinds(*container);
//   auto comm = container->extCommParser()->parseExtendedCommunity(
//       ExtCommContent(0x0600010000000005));
//   comm->fwkType().name()        // "Routing::Bgp::ExtCommDescribed"
//   comm->toStrepForPolicy({})    // "mac-mobility:S:5"
//   comm->classification()        // extCommClassificationEvpn
//
//   installKinds(*container, KindTable::builtIn().with(rows, owner));   // the agent's own kinds
//
// 1. Kinds that have a rule of the library's, or of a plug-in that came earlier, keep rule, class
//    and classification. A plug-in that comes later replaces the pack's rules, as it does others.
// 2. Objects are made where the parser asks for a rule: for the subtypes that the library's
//    enumerations have, of a type that it has a rule for, and for all subtypes of a type that it
//    has none for, such as Ethernet VPN. Text, fields and JSON are found by content, so they know
//    the other kinds too.
// 3. An object derives from the class that the library makes without the pack, where that knows
//    more than the type, and is as large. Rows of Ethernet VPN (type 0x06) are classified so, all
//    others not at all.
// 4. Of several tables with a row for a content, the one that was installed first describes it, in
//    the whole process. An object has no room for its table: tables that have been installed stay
//    until the process ends, with all that they hold.
// 5. A content that is interned keeps the class that it was interned with. Install kinds before.
//
// Threads: install on the registry's thread; print and ask from any, also meanwhile.
#pragma once

#include "kinds/ZoBgpKindFields.h"
#include "parse/BgpParseExtCommContainer.h"

namespace Routing::Bgp {

/// A community of a kind that a table describes. `Base` is the class of such a community without
/// the pack. One whose content no installed table describes prints as the built-in table says.
template <class Base>
class ExtCommDescribedAs final : public Mox::Entity<ExtCommDescribedAs<Base>, Base> {
 public:
  static const Mox::Type type;
  using typename Base::StrepFormat;

  using ExtCommDescribedAs::Entity::Entity;

  /// The row of the content. Null for an object that no parser made and no table describes.
  const Kind* kind() const;
  // A field by name, or by index in the row; nothing when there is none.
  std::optional<KindFieldValue> field(std::string_view name) const;
  std::optional<KindFieldValue> field(std::size_t index) const;

  /// The canonical text in angle brackets; behind it, of eight octets, the content.
  void formatDerivedType(std::ostream& stream) const override;
  /// The canonical text, whatever the format.
  Mox::String toStrepForPolicy(StrepFormat format) const override;
};

extern template class ExtCommDescribedAs<ExtCommSubtyped>;
extern template class ExtCommDescribedAs<ExtCommAsNumber>;
extern template class ExtCommDescribedAs<ExtCommIpv4Address>;
extern template class ExtCommDescribedAs<ExtCommIp6Subtyped>;

using ExtCommDescribed = ExtCommDescribedAs<ExtCommSubtyped>;
using ExtCommDescribedAsNumber = ExtCommDescribedAs<ExtCommAsNumber>;
using ExtCommDescribedIpv4Address = ExtCommDescribedAs<ExtCommIpv4Address>;
using ExtCommIp6Described = ExtCommDescribedAs<ExtCommIp6Subtyped>;

/// The plug-in: puts a rule for each row of a table into every parser of a registry, where no other
/// rule serves the row's type and subtype.
class KindPackSm final : public Mox::Entity<KindPackSm, BgpParseExtCommPluginBaseSm> {
 public:
  static const Mox::Type type;

  /// Installs the table for the whole process; see above.
  explicit KindPackSm(const RuleCollections& registry,
                      const KindTable& table = KindTable::builtIn());

#define ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, ...)        \
  void instantiate##Operation##SubRule(const Key& ruleKey, const BgpParseExtCommControl&) \
      const override {                                                                    \
    install(*ruleKey.rule());                                                             \
  }
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"

 private:
  // The rules of rows of types that have no rule in the library, and of those of one that has.
  void install(BgpParseExtendedCommunityRule& parser) const;
  template <class K>
  void install(BgpParseExtCommTypeRule<K>& rule) const;

  const KindTable table_;
};

/// Adds a plug-in with these kinds to the container, for the parser that is there and for later
/// ones. Returns its index among the container's plug-ins.
U32 installKinds(BgpParseExtCommContainerSm& container,
                 const KindTable& table = KindTable::builtIn());

}  // namespace Routing::Bgp

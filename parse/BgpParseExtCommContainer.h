// One complete parser of extended communities: registry, plug-ins, rules and the show cache.
//
//   BgpParseExtCommContainerSm::Ptr container = bgpParseExtCommContainerSmFactory();
//   container->extCommParser()->parseExtendedCommunity(content);
//   container->extCommParserSmsEnq(myPlugin);   // stays as long as the container
//
// 1. The library's own plug-ins are, in this order: route origin, route target, tunnel
//    encapsulation, default gateway, link bandwidth, color and, unless the host has switched the
//    feature toggle "RpkiToggle" off, origin validation state. The toggle is read when the process
//    makes its first container and holds for all.
// 2. Plug-ins exist before the parser does, so it is complete once it is there; one that comes
//    later fills what there is.
// 3. Who holds the parser longer than the container goes on parsing in the same way.
//
// Threads: container, registry and plug-ins belong to one thread; the parser is for all of them.
#pragma once

#include "Mox/IndexedQueue.h"
#include "parse/BgpParseExtCommCache.h"
#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtCommContainerSm final
    : public Mox::Entity<BgpParseExtCommContainerSm, Mox::PtrInterface> {
 public:
  static const Mox::Type type;
  using ParserSm = Mox::PtrConst<BgpParseExtCommPluginBaseSm>;
  using ExtCommParserSms = Mox::IndexedQueue<ParserSm>;
  using ExtCommParserSmsMetadata = ExtCommParserSms::Metadata;

  BgpParseExtCommContainerSm();
  ~BgpParseExtCommContainerSm() override;

  const BgpParseExtCommRuleCollections::Ptr& parseExtCommRuleCollections() const {
    return ruleCollections_;
  }
  /// The registry, made now if there is none.
  BgpParseExtCommRuleCollections::Ptr parseExtCommRuleCollectionsIs();
  /// Lets go of the registry and returns it.
  BgpParseExtCommRuleCollections::Ptr parseExtCommRuleCollectionsDel();

  const BgpParseExtendedCommunityRule::Ptr& extCommParser() const { return parser_; }
  /// The parser of this control: the one that is there, or else a new one in its place. The old one
  /// is withdrawn from the registry.
  BgpParseExtendedCommunityRule::Ptr extCommParserIs(const BgpParseExtCommControl& control);
  /// Withdraws the parser from the registry and returns it.
  BgpParseExtendedCommunityRule::Ptr extCommParserDel();

  // The plug-ins. `Enq` and `Is` raise RangeException for null, `Enq` also when the indices are
  // used up; `Del` and `Deq` return what they removed. See Mox/IndexedQueue.h.
  const ExtCommParserSms& extCommParserSms() const { return sms_; }
  ParserSm extCommParserSms(U32 index) const { return sms_.find(index); }
  const ExtCommParserSmsMetadata& extCommParserSmsMetadata() const { return sms_.metadata(); }
  U32 extCommParserSmsEnq(const ParserSm& sm);
  void extCommParserSmsIs(U32 index, const ParserSm& sm);
  ParserSm extCommParserSmsDel(U32 index) { return sms_.erase(index); }
  ParserSm extCommParserSmsDeq() { return sms_.dequeue(); }
  void extCommParserSmsDelAll();

  const BgpShowCli::ExtCommCache::Ptr& extCommCache() const { return cache_; }

  /// Makes everything, in the order above; the constructor calls it, once.
  void handleInitialized();

 private:
  BgpParseExtCommRuleCollections::Ptr ruleCollections_;
  BgpParseExtendedCommunityRule::Ptr parser_;
  ExtCommParserSms sms_;
  BgpShowCli::ExtCommCache::Ptr cache_;
};

BgpParseExtCommContainerSm::Ptr bgpParseExtCommContainerSmFactory();

}  // namespace Routing::Bgp

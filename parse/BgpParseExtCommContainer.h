// A complete parser of extended communities: registry, plug-ins, rules and the show cache.
//
//   BgpParseExtCommContainerSm::Ptr container = bgpParseExtCommContainerSmFactory();
//   container->extCommParser()->parseExtendedCommunity(content);
//   container->extCommParserSmsEnq(myPlugin);   // kept as long as the container
//
// 1. The library's own plug-ins are, in this order: route origin, route target, tunnel
//    encapsulation, default gateway, link bandwidth, color and, unless the host has switched the
//    feature toggle "RpkiToggle" off, origin validation state. The toggle is read when the process
//    makes its first container and holds for all.
// 2. Plug-ins are made before the parser, which is complete once it is there. A plug-in that comes
//    later fills the rules that are there.
// 3. A parser that is held longer than its container goes on parsing in the same way.
//
// Threads: container, registry and plug-ins belong to one thread. Any thread may parse, and drop
// the parser last once it was withdrawn; see BgpParseExtCommRules.h.
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

  /// The registry; null once somebody took it away.
  const BgpParseExtCommRuleCollections::Ptr& parseExtCommRuleCollections() const {
    return ruleCollections_;
  }
  /// The registry, made now if there is none.
  BgpParseExtCommRuleCollections::Ptr parseExtCommRuleCollectionsIs();
  /// Lets go of the registry and returns it.
  BgpParseExtCommRuleCollections::Ptr parseExtCommRuleCollectionsDel();

  /// Null once somebody took it away.
  const BgpParseExtendedCommunityRule::Ptr& extCommParser() const { return parser_; }
  /// The parser of this control: the one that is there, or else a new one, which takes its place
  /// and is returned. The old one is then withdrawn from the registry; an exception of a plug-in
  /// that is asked meanwhile reaches the caller, and the new parser stays.
  BgpParseExtendedCommunityRule::Ptr extCommParserIs(const BgpParseExtCommControl& control);
  /// Lets go of the parser, withdraws it from the registry and returns it; null when there is none.
  BgpParseExtendedCommunityRule::Ptr extCommParserDel();

  // The plug-ins. `Enq` adds one behind the last and returns its index, `Is` stores one at an
  // index. Both raise RangeException for null, `Enq` also when the indices are used up. `Del` and
  // `Deq` return what they removed, null for nothing. See Mox/IndexedQueue.h.
  const ExtCommParserSms& extCommParserSms() const { return sms_; }
  ParserSm extCommParserSms(U32 index) const { return sms_.find(index); }
  const ExtCommParserSmsMetadata& extCommParserSmsMetadata() const { return sms_.metadata(); }
  U32 extCommParserSmsEnq(const ParserSm& sm);
  void extCommParserSmsIs(U32 index, const ParserSm& sm);
  ParserSm extCommParserSmsDel(U32 index) { return sms_.erase(index); }
  ParserSm extCommParserSmsDeq() { return sms_.dequeue(); }
  void extCommParserSmsDelAll();

  /// The cache of show texts; never null.
  const BgpShowCli::ExtCommCache::Ptr& extCommCache() const { return cache_; }

  /// Makes registry, plug-ins, parser and cache. REQUIRES: called by the constructor only.
  void handleInitialized();

 private:
  BgpParseExtCommRuleCollections::Ptr ruleCollections_;
  BgpParseExtendedCommunityRule::Ptr parser_;
  ExtCommParserSms sms_;
  BgpShowCli::ExtCommCache::Ptr cache_;
};

/// A parser with the library's own plug-ins and its cache.
BgpParseExtCommContainerSm::Ptr bgpParseExtCommContainerSmFactory();

}  // namespace Routing::Bgp

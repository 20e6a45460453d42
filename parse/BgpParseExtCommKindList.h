// The kinds of rule that plug-ins see, in the order of the registry. A row holds the differences
// between the kinds and nothing else; a further kind is a further row.
//
// Code that is needed once per kind defines ZOBGP_KIND and includes this file, which undefines it:
//
//   ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, Traits...)
//
//   Kind          its name in namespace `kind`
//   Operation     as in `addExtCommSubTypeTransOpaqueSubRule`, between verb and noun
//   Collection    as in `extendedCommSubTypeTransOpaqueRuleInstance`, between `extended` and noun
//   RuleClass     class of the rule that is offered to plug-ins
//   SubRuleClass  base of the rules that plug-ins install in it
//   Key           class of its key in the registry
//   Traits        see BgpParseExtCommKinds.h: the family, the type octet, the enumeration of its
//                 subtypes, whether plug-ins are offered the rule, and the class of the object that
//                 is made when no sub-rule serves a content, with its constructor's further
//                 arguments
//
// The kind of the top rule comes as ZOBGP_TOP_KIND, where that is defined too, without traits.
#ifdef ZOBGP_KIND

#ifdef ZOBGP_TOP_KIND
ZOBGP_TOP_KIND(Top, ExtendedCommunityType, CommunityType, BgpParseExtendedCommunityRule,
               BgpParseExtendedCommunityTypeRuleBase, BgpParseExtendedCommunityRuleKey)
#undef ZOBGP_TOP_KIND
#endif

#define ZOBGP_EIGHT_OCTETS(Kind, ...)                                                             \
  ZOBGP_KIND(Kind, ExtCommSubType##Kind, CommSubType##Kind, BgpParseExtComm##Kind##Rule,          \
             BgpParseExtComSubType##Kind##RuleBase, BgpParseExtCommSubType##Kind##RuleKey,        \
             TypeTraits<ExtCommFamily, extCommPktType##Kind, BgpExtCommPktSubtype##Kind, offered, \
                        __VA_ARGS__>)
ZOBGP_EIGHT_OCTETS(TransTwoOctetAs, ExtCommAsNumber, false)
ZOBGP_EIGHT_OCTETS(TransIpv4Address, ExtCommIpv4Address)
ZOBGP_EIGHT_OCTETS(TransFourOctetAs, ExtCommAsNumber, true)
ZOBGP_EIGHT_OCTETS(TransOpaque, ExtCommSubtyped)
ZOBGP_EIGHT_OCTETS(TransGeneric, ExtCommSubtyped)
ZOBGP_EIGHT_OCTETS(TransGenericPart2, ExtCommSubtyped)
ZOBGP_EIGHT_OCTETS(TransGenericPart3, ExtCommSubtyped)
ZOBGP_EIGHT_OCTETS(NonTransTwoOctetAs, ExtCommAsNumber, false)
ZOBGP_EIGHT_OCTETS(NonTransIpv4Address, ExtCommIpv4Address)
ZOBGP_EIGHT_OCTETS(NonTransFourOctetAs, ExtCommAsNumber, true)
ZOBGP_EIGHT_OCTETS(NonTransOpaque, ExtCommSubtyped)
#undef ZOBGP_EIGHT_OCTETS

#define ZOBGP_TWENTY_OCTETS(Kind, offeredOrNot)                                                 \
  ZOBGP_KIND(                                                                                   \
      Ip6##Kind, ExtCommIp6SubType##Kind, CommIp6SubType##Kind, BgpParseExtCommIp6##Kind##Rule, \
      BgpParseExtCommIp6SubType##Kind##RuleBase, BgpParseExtCommIp6SubType##Kind##RuleKey,      \
      TypeTraits<ExtCommIp6Family, extCommIp6PktType##Kind##Ipv6Address,                        \
                 BgpExtCommIp6PktSubtype##Kind##Ipv6Address, offeredOrNot, ExtCommIp6Subtyped>)
ZOBGP_TWENTY_OCTETS(Trans, offered)
ZOBGP_TWENTY_OCTETS(NonTrans, withheld)
#undef ZOBGP_TWENTY_OCTETS

#undef ZOBGP_KIND
#endif

#pragma once

#include <gtest/gtest.h>

#include "ParseHelp.h"

namespace parsing {

using Registry = BgpParseExtCommRuleCollections;
/// What plug-ins and observers were told, in order.
inline std::string heard;

/// A plug-in that overrides every operation, each under its own name, and says which was called.
class EveryKindSm final : public Mox::Entity<EveryKindSm, BgpParseExtCommPluginBaseSm> {
 public:
  inline static const Mox::Type type{"Test::EveryKindSm", &BgpParseExtCommPluginBaseSm::type, {}};
  using Control = BgpParseExtCommControl;

  explicit EveryKindSm(const RuleCollections& registry, std::string name = "")
      : Entity(registry), name_(std::move(name)) {
    handleStartup();
  }
  ~EveryKindSm() override {
    if (atEnd) atEnd();
    if (!name_.empty()) heard += '~' + name_ + ' ';
  }

#define SAYS(Operation, Key, text)                                                              \
  void instantiate##Operation##SubRule(const Key& key, const Control& control) const override { \
    EXPECT_EQ(control, key.rule()->parseControl());                                             \
    heard += name_ + text " ";                                                                  \
    if (act) act();                                                                             \
  }
  SAYS(ExtendedCommunityType, BgpParseExtendedCommunityRuleKey, "top")
  SAYS(ExtCommSubTypeTransTwoOctetAs, BgpParseExtCommSubTypeTransTwoOctetAsRuleKey, "00")
  SAYS(ExtCommSubTypeTransIpv4Address, BgpParseExtCommSubTypeTransIpv4AddressRuleKey, "01")
  SAYS(ExtCommSubTypeTransFourOctetAs, BgpParseExtCommSubTypeTransFourOctetAsRuleKey, "02")
  SAYS(ExtCommSubTypeTransOpaque, BgpParseExtCommSubTypeTransOpaqueRuleKey, "03")
  SAYS(ExtCommSubTypeTransGeneric, BgpParseExtCommSubTypeTransGenericRuleKey, "80")
  SAYS(ExtCommSubTypeTransGenericPart2, BgpParseExtCommSubTypeTransGenericPart2RuleKey, "81")
  SAYS(ExtCommSubTypeTransGenericPart3, BgpParseExtCommSubTypeTransGenericPart3RuleKey, "82")
  SAYS(ExtCommSubTypeNonTransTwoOctetAs, BgpParseExtCommSubTypeNonTransTwoOctetAsRuleKey, "40")
  SAYS(ExtCommSubTypeNonTransIpv4Address, BgpParseExtCommSubTypeNonTransIpv4AddressRuleKey, "41")
  SAYS(ExtCommSubTypeNonTransFourOctetAs, BgpParseExtCommSubTypeNonTransFourOctetAsRuleKey, "42")
  SAYS(ExtCommSubTypeNonTransOpaque, BgpParseExtCommSubTypeNonTransOpaqueRuleKey, "43")
  SAYS(ExtCommIp6SubTypeTrans, BgpParseExtCommIp6SubTypeTransRuleKey, "ip6-00")
  SAYS(ExtCommIp6SubTypeNonTrans, BgpParseExtCommIp6SubTypeNonTransRuleKey, "ip6-40")
#undef SAYS

  std::function<void()> act, atEnd;

 private:
  const std::string name_;
};

/// What was heard since the last call.
inline std::string take() { return std::exchange(heard, {}); }

}  // namespace parsing

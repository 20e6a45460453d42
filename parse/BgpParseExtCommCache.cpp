#include "parse/BgpParseExtCommCache.h"

namespace BgpShowCli {

const Mox::Type ExtCommCache::type{
    "BgpShowCli::ExtCommCache",
    &Mox::PtrInterface::type,
    {Mox::collection<&ExtCommCache::extCommToStrings>("extCommToString"),
     Mox::collection<&ExtCommCache::extCommToAsdotStrings>("extCommToAsdotString"),
     Mox::operation("lookup"), Mox::operation("insert")}};

Mox::String ExtCommTexts::find(U64 content) const {
  const auto found = texts_.find(content);
  return found == texts_.end() ? Mox::String() : found->second;
}

Mox::String ExtCommTexts::erase(U64 content) {
  const auto node = texts_.extract(content);
  return node ? std::move(node.mapped()) : Mox::String();
}

Mox::String valueToStrep(const ExtCommTexts& texts) {
  Mox::String all;
  for (const auto& [content, text] : texts.texts_)
    all += (all.empty() ? "" : ", ") + std::to_string(content) + ": " + text;
  return all;
}

ExtCommCache::Ptr extCommCacheFactory() { return Mox::makeNew<ExtCommCache>(); }

}  // namespace BgpShowCli

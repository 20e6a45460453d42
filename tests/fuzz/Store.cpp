// A store file from anybody, with the length and the checksum that a writer would have given it:
// whatever can be restored is interned, written as text and for the wire, and saved again, from
// where it must come back the same.

#include <map>

#include "Fuzzing.h"
#include "MoxStash/StoreWriter.h"
#include "tests/community-list/Restored.h"

using namespace MoxStash;

static bool restoreInto(StoreWriter& writer, const CommunityTables& tables, const FileStore& store,
                        const StoredRoot& root, std::map<StoreReference, std::string>& texts) try {
  return tables.restore(root, store, [&](const auto& object) {
    texts[writer.add(object, root.figure)] = allTexts(object);
  });
} catch (const StoreException& error) {
  require(std::string_view(error.what()).starts_with("NAME: "));
  return false;
}

static void saveAndRestore(const CommunityTables& tables, const std::string& octets) try {
  const FileStore store("NAME", octets);
  store.note("a note");
  StoreWriter writer, rewriter;
  std::map<StoreReference, std::string> texts, again;
  for (const auto& root : store.roots()) restoreInto(writer, tables, store, root, texts);

  const FileStore saved("NAME", writer.octets());
  require(saved.roots().size() == texts.size());
  for (const auto& root : saved.roots()) require(restoreInto(rewriter, tables, saved, root, again));
  require(again == texts && rewriter.octets() == writer.octets());
} catch (const StoreException& error) {
  require(std::string_view(error.what()).starts_with("NAME: "));
}

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  static const CommunityTables tables;
  saveAndRestore(tables, sealed({data, data + size}));
  tables.forEachKind([](const auto& kind) {
    require(kind.lists()->dedupHashTable()->members() == 0);
    if constexpr (requires { kind.values(); })
      require(kind.values()->dedupHashTable()->members() == 0);
  });
  return 0;
}

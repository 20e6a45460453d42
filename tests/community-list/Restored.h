// Stores in memory and what is restored from them, for tests and fuzzing.
#pragma once

#include <cstring>

#include "MoxStash/FileStore.h"
#include "MoxStash/StoreWriter.h"
#include "path/ZoBgpCommunityTables.h"

namespace Routing::Bgp {

/// Everything that was written, from a manager that counts the objects that are restored.
struct HeardStore final : MoxStash::StoreManager {
  explicit HeardStore(const MoxStash::StoreWriter& writer) : store("NAME", writer.octets()) {}
  const void* translate(MoxStash::StoreReference at, U64 size, U32 alignment) const override {
    return store.translate(at, size, alignment);
  }
  void restored() const override { ++heard; }
  const MoxStash::FileStore store;
  mutable U32 heard = 0;
};

/// All that can be said of an object; it is serialized too if an attribute has room for it.
template <class Object>
std::string allTexts(const Mox::Ptr<Object>& object) {
  if constexpr (!requires { object->comms(); }) {
    return object->toStrep() + object->toStrepForPolicy({});
  } else {
    std::string texts = object->toStrep() + object->commsStringForm();
    const bool fits = object->comms() * Object::valueSize <= 0xFFFF;
    if constexpr (requires { object->groupsText(); })
      return texts + object->groupsText() + (fits ? object->serialize(true) : "");
    else
      return texts + (fits ? object->serialize() : "");
  }
}

/// The octets of a store with the length and the checksum that belong to them.
inline std::string sealed(std::string octets) {
  MoxStash::StoreHeader header;
  if (octets.size() < sizeof header) return octets;
  std::memcpy(&header, octets.data(), sizeof header);
  header.length = octets.size();
  header.checksum =
      MoxStash::storeChecksum(header, {std::string_view(octets).substr(sizeof header)});
  std::memcpy(octets.data(), &header, sizeof header);
  return octets;
}

}  // namespace Routing::Bgp

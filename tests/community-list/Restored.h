// Everything that a store holds, interned: what a program that restores does, for tests and
// fuzzing.
#pragma once

#include <cstring>

#include "MoxStash/FileStore.h"
#include "community-list/ZoBgpCommunityList.h"
#include "ip6/ExtCommIp6ListDedupTable.h"
#include "parse/BgpParseExtComm.h"

namespace Routing::Bgp {

/// The tables of all kinds.
struct StoreTables {
  BgpParseExtCommContainerSm::Ptr container = bgpParseExtCommContainerSmFactory();
  ExtCommDedupTable::Ptr values = extCommDedupTableFactory(container->extCommParser());
  ExtCommIp6DedupTable::Ptr ip6Values = extCommIp6DedupTableFactory(container->extCommParser());
  CommListDedupTable::Ptr standard = commListDedupTableFactory();
  LargeCommListDedupTable::Ptr large = largeCommListDedupTableFactory();
  ExtCommListDedupTable::Ptr extended = extCommListDedupTableFactory();
  ExtCommIp6ListDedupTable::Ptr ip6 = extCommIp6ListDedupTableFactory();

  U64 members() const {
    U64 members = values->dedupHashTable()->members() + ip6Values->dedupHashTable()->members();
    for (const CommListDedupTableBase* table :
         {(CommListDedupTableBase*)standard.get(), (CommListDedupTableBase*)large.get(),
          (CommListDedupTableBase*)extended.get(), (CommListDedupTableBase*)ip6.get()})
      members += table->dedupHashTable()->members();
    return members;
  }
};

/// Calls `use` with the interned object of a root, unless that is of no kind that is known.
template <class Use>
void restore(const StoreTables& tables, const MoxStash::FileStore& store,
             const MoxStash::StoredRoot& root, Use use) {
  const MoxStash::StoreReference at = root.reference;
  switch (root.type) {
    case CommList::recordType:
      return use(CommList::dedupStored(tables.standard, at, store));
    case LargeCommList::recordType:
      return use(LargeCommList::dedupStored(tables.large, at, store));
    case ExtCommList::recordType:
      return use(ExtCommList::dedupStored(tables.extended, tables.values, at, store));
    case ExtCommIp6List::recordType:
      return use(ExtCommIp6List::dedupStored(tables.ip6, tables.ip6Values, at, store));
    case ExtComm::recordType:
      return use(tables.values->dedupContent(ExtComm::destash(at, store)->getContent()));
    case ExtCommIp6::recordType:
      return use(tables.ip6Values->dedupContent(ExtCommIp6::destash(at, store)->getContent()));
  }
}

/// All that can be said of an object; it is serialized too if an attribute has room for it.
template <class Object>
std::string allTexts(const Mox::Ptr<Object>& object) {
  if constexpr (!requires { object->comms(); }) {
    return object->toStrep() + object->toStrepForPolicy({});
  } else if constexpr (requires { object->groupsText(); }) {
    if (object->comms() * Object::valueSize <= 0xFFFF) object->serialize(true);
    return object->toStrep() + object->commsStringForm() + object->groupsText();
  } else {
    if (object->comms() * Object::valueSize <= 0xFFFF) object->serialize();
    return object->toStrep() + object->commsStringForm();
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

// The path attributes of a hostile peer: read at once, and cut in two at any octet.

#include <cstdlib>

#include "path/ZoBgpCommunityTables.h"

using namespace Routing::Bgp;
using namespace Mox::Words;

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

/// Reads the octets, and checks the invariants that hold for any octets.
PathFaults readAll(const CommunityTables& tables, std::span<const U8> octets,
                   PathCommunities& path) {
  const PathFaults faults = tables.readAll(octets, path);
  require(faults.size() <= 3 * 4 + 1);
  require(bool(faults) == (faults.approach() != PathFaultApproach::none));
  std::size_t offset = 0;
  for (const PathFault& fault : faults) {
    require(fault.offset >= offset && fault.offset < octets.size());
    require(!fault.toStrep().empty() && fault.approach() <= faults.approach());
    offset = fault.offset;
  }
  path.forEachList([](const auto& list) { require(!list->empty() && !list->toStrep().empty()); });
  return faults;
}

/// The attributes that a speaker sends for the path.
std::vector<U8> serialized(const PathCommunities& path) {
  std::string octets;
  path.forEachList([&](const auto& list) {
    if constexpr (requires { list->serialize(true); })
      octets += list->serialize(true);
    else
      octets += list->serialize();
  });
  return {octets.begin(), octets.end()};
}

}  // namespace

// The first octet says where the others are cut.
extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  static const CommunityTables tables;
  if (size == 0) return 0;
  // In memory of their own, where reading beyond the end is seen.
  const std::vector<U8> octets(data + 1, data + size);
  PathCommunities whole, again, split;
  const PathFaults faults = readAll(tables, octets, whole);
  require(!readAll(tables, serialized(whole), again) && whole == again);

  // Cut between two attributes, the parts are as good as the whole.
  const std::size_t cut = octets.empty() ? 0 : data[0] % octets.size();
  const std::vector<U8> left(octets.begin(), octets.begin() + std::ptrdiff_t(cut));
  const std::vector<U8> right(octets.begin() + std::ptrdiff_t(cut), octets.end());
  if (faults || readAll(tables, left, split)) return 0;
  require(!readAll(tables, right, split) && split == whole);
  return 0;
}

#include "Attributes.h"

#include <utility>

#include "HeldListsOf.h"
#include "attr/ZoBgpAttributeReader.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

bool hasWrongFlags(const PathAttribute& attribute) {
  constexpr U32 expected = U32(BgpPathAttrFlag::optionalTransitive);
  return (U32(attribute.flags) & expected) != expected;
}

}  // namespace

CommunityValues findCommunities(Octets attributes) {
  CommunityValues values{};
  std::array<bool, listTypeCount> seen{};
  const auto isFirst = [&seen](BgpPathAttrType attribute, std::size_t& type) {
    type = listTypeOf(U8(attribute));
    return type < listTypeCount && !std::exchange(seen[type], true);
  };
  std::size_t type;
  PathAttributeReader in(attributes);
  while (const auto attribute = in.next()) {
    if (!isFirst(attribute->type, type)) continue;
    values.wrongFlags += hasWrongFlags(*attribute);
    const Octets value = attribute->value;
    if (value.empty() || value.size() % listTypes[type].valueSize != 0)
      values.faults.add(Fault::attrLength);
    else
      values[type] = value;
  }
  if (in.overrun()) values.faults.add(Fault::attrOverrun);
  return values;
}

std::optional<Fault> countedAs(const PathFault& fault) {
  if (fault.value) return faultOf(*fault.value);
  if (fault.overrun) return Fault::attrOverrun;
  return std::nullopt;
}

std::string faultText(const PathFault& fault, Octets attributes) {
  return fault.toStrep() + attributePlace(attributes, fault.offset);
}

std::string attributePlace(Octets attributes, std::size_t offset) {
  const auto header = readPathAttributeHeader(attributes.subspan(offset));
  std::string text = " (";
  if (header)
    text += "type " + std::to_string(U8(header->type)) + ", length " +
            std::to_string(header->attrSize) + ", ";
  return text + "octet " + std::to_string(offset) + " of the path's attributes)";
}

std::vector<ToldFault> faultsOf(Octets attributes, const CommunityTables& tables) {
  PathCommunities lists;
  std::vector<ToldFault> faults;
  for (const PathFault& fault : tables.readAll(attributes, lists))
    if (const auto its = countedAs(fault)) faults.push_back({*its, faultText(fault, attributes)});
  return faults;
}

ToldFault firstFaultOf(Octets attributes, const FaultCounts& counted) {
  const CommunityTables tables(sharedParser());
  for (ToldFault& told : faultsOf(attributes, tables))
    if (counted[told.fault] > 0) return std::move(told);
  return {counted.first(), ""};
}

}  // namespace bgpcomm

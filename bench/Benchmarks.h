// The benchmarks by theme. A name is "operation, workload/contender"; the report of ratios finds
// its figures by these names alone.
#pragma once

#include <string>
#include <string_view>

#include "Workload.h"

namespace bench {

inline std::string nameOf(std::string_view operation, std::string_view workload,
                          std::string_view contender) {
  return std::string(operation) + ", " + std::string(workload) + "/" + std::string(contender);
}

/// Octets to interned list, found and made; last release; memory.
void addInterning(const Workload& workload);
/// Single extended communities of 8 and of 20 octets: interned, parsed, printed.
void addValues();
const Workload& eightOctetValues();
const Workload& twentyOctetValues();
/// Many 8-octet contents of one hash, and as many that are spread.
void addFlood();
const Workload& floodOfOneHash();
const Workload& spreadContents();
/// Lists of the other list types.
void addLists();
const Workload& largeLists();  // 20,000 lists, as the two that follow
const Workload& extendedLists();
const Workload& ipv6ExtendedLists();
/// The same of another size: so many lists, and five times as many attributes drawn of them.
Workload makeLargeLists(U32 count);
Workload makeExtendedLists(U32 count);
Workload makeIpv6ExtendedLists(U32 count);
/// Contents of every kind: parsed with the pack of kinds and without, their texts both ways.
void addKinds();
/// A question asked of paths with a standard list of the workload and an extended one.
void addQuery(const Workload& standard);
/// The paths of twenty peers, announced, withdrawn and announced again.
void addDay(int repetitions);
/// Their numbers, for the reader of the results. Makes the paths if no benchmark did.
std::string dayDistribution();
/// The tool's summary of a file, decompressed first.
void addTool(const std::string& file);
/// List to text and to octets.
void addFormatting(const Workload& workload);
/// One and two threads, on the same lists and on different ones.
void addThreads(const MadeUpLists& lists);
/// Cost of a hit, a new list and a last release by members of the table.
void addMembers(U64 mostMembers);
/// Probes per insertion of consecutive 8-octet values, under many seeds.
void addPlacing();
/// Cost of the longest attributes, in the worst orders.
void addLongAttributes();

}  // namespace bench

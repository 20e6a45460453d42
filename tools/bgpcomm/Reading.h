// Reads a file to its end, or to its fault: what every command that takes files does.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Attributes.h"
#include "ReaderNames.h"
#include "mrt/Mrt.h"

namespace bgpcomm {

/// Where something stands: the record, counted from 1, and its first octet.
struct Place {
  U64 record;
  U64 octet;
};
/// ` (record N, octet M)`
std::string placeText(Place place);

struct ReadResult {
  U64 records = 0;
  U64 paths = 0;
  FaultCounts faults;
  struct FirstFault {
    Fault fault;
    Place place;
  };
  std::optional<FirstFault> firstFault;  ///< of those counted

  /// The file could not be opened, or not be read to its end.
  bool failed = false;
  /// Could not even be opened: there is nothing to report of it.
  bool unopened = false;
};

/// May add to the faults of the path.
using VisitPath = std::function<void(const Path&, CommunityValues&, Place)>;

struct ReadOptions {
  bool showProgress = true;
  PathCutter::Updates updates = PathCutter::Updates::withAttributes;
};

/// Calls `visit` for each path. What ends the reading early is printed as an error line; whatever
/// was read before it has been visited; running out of memory, also in `visit`, is such an end.
/// Malformed attributes and records are counted and passed.
ReadResult readFile(const std::string& file, const VisitPath& visit, ReadOptions options = {});

/// One error line of what was passed over, if anything was. What ended the file has had a line of
/// its own.
void reportMalformed(const std::string& file, const ReadResult& result);

}  // namespace bgpcomm

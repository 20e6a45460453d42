// The figures of a file, or of all files together, and how `summary` shows them.
#pragma once

#include <string>
#include <vector>

#include "Faults.h"
#include "Kinds.h"

namespace bgpcomm {

struct FileFigures {
  std::string file;
  U64 records = 0;
  U64 paths = 0;
  FaultCounts faults;
  std::string firstFault;  ///< where it stands; empty when nothing is malformed
  double seconds = 0;
  struct OfKind {
    const KindRow* row;
    KindFigures figures;
  };
  std::vector<OfKind> kinds;
};

/// For people, at most 80 columns wide as long as the file's name is not longer.
std::string summaryTable(const FileFigures& figures);
/// For programs: one object with `files` and `total`.
std::string summaryJson(const std::vector<FileFigures>& files, const FileFigures& total);

}  // namespace bgpcomm

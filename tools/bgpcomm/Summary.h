// The figures of a file, or of all files together, and how `summary` shows them.
#pragma once

#include <string>
#include <vector>

#include "Faults.h"
#include "Kinds.h"
#include "Reading.h"

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

/// Reads a file's lists into the tables and counts what is no list. Until its figures of kinds are
/// taken, `kinds` is empty.
ReadResult readInto(const std::string& file, const KindTables& tables, FileFigures& figures);

/// Prints the figures of files one after the other, and of all together in the end.
class Summary {
 public:
  /// With `together`, the files' lists are also counted as one.
  Summary(bool together, bool json);

  /// A file whose lists are in the tables. False when memory does not suffice for its figures.
  bool add(FileFigures figures, const KindTables& tables);
  /// To be called once, after all files. As `add`.
  bool finish();

 private:
  const bool together_, json_;
  KindTables tables_;
  FileFigures total_;
  std::vector<FileFigures> files_;
};

/// For people, at most 80 columns wide as long as the file's name is not longer.
std::string summaryTable(const FileFigures& figures);
/// For programs: one object with `files` and `total`.
std::string summaryJson(const std::vector<FileFigures>& files, const FileFigures& total);

}  // namespace bgpcomm

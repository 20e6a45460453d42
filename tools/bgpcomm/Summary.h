// The figures of a file, or of all files together, and how `summary` shows them.
#pragma once

#include <string>
#include <vector>

#include "Faults.h"
#include "ListTypes.h"
#include "PeerUses.h"
#include "Reading.h"

namespace bgpcomm {

struct FileFigures {
  std::string file;
  U64 records = 0;
  U64 paths = 0;
  SkippedCounts skipped{};
  FaultCounts faults;
  /// ` (record N, octet M): what is wrong`; empty when nothing is malformed.
  std::string firstFault;
  /// Why the file was not read to its end; empty when it was.
  std::string failure;
  U64 wrongFlags = 0;
  double seconds = 0;
  struct OfType {
    const ListType* type;
    ListFigures figures;
  };
  std::vector<OfType> types;  ///< empty until they are taken

  /// Adds counts and seconds of another file.
  void add(const FileFigures& other);
  /// The first fault without parentheses: `record 4, octet 210: what is wrong`.
  std::string firstMalformed() const;
};

double pathsPerList(const ListFigures& figures);
/// How many times the octets would be, had each path lists of its own.
double timesSaved(U64 unsharedOctets, U64 internedOctets);

/// The name of all files together.
inline constexpr std::string_view totalName = "total";

/// Reads a file: holds its lists, and counts the rest; also by peers, if these are given.
ReadResult readInto(const std::string& file, const FileLists& lists, FileFigures& figures,
                    PeerUses* peers = nullptr);

/// Takes the figures of all lists, with at most so many of the most used values of each type; 0 are
/// all. Memory that does not suffice for a type is an error line, and the result false.
bool takeFigures(const FileLists& lists, U64 top, FileFigures& figures);

struct SummaryOptions {
  bool json = false;
  bool total = false;  ///< nothing of each file alone
  U64 top = 10;        ///< so many of the most used values; 0: all
};

/// Prints the figures of files one after the other, and of all together in the end. Memory that
/// does not suffice for figures is an error line; all others are printed.
class Summary {
 public:
  /// If `together`, the lists of all files are also held as if they were one file's.
  Summary(const SummaryOptions& options, bool together);

  /// For the lists of a file, which go before the next one's are made.
  FileLists makeLists() const;

  /// Adds a file and the lists that it holds. False when memory did not suffice.
  bool add(FileFigures figures, const FileLists& lists);
  /// Prints what is left, when all files are added. False when memory did not suffice.
  bool finish();

 private:
  const SummaryOptions options_;
  const std::unique_ptr<FileLists> together_;
  FileFigures total_;
  bool any_ = false;
  std::vector<FileFigures> files_;
};

/// For people: lines that fit into a terminal of 62 or more columns, or into 80 where the output is
/// none. Names of files may be longer; so may values where it is none.
std::string summaryTable(const FileFigures& figures);
/// For programs: one object with `files` and `total`.
std::string summaryJson(const std::vector<FileFigures>& files, const FileFigures& total);

}  // namespace bgpcomm

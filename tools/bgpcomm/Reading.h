// Reads a file to its end, or to its fault: what every command that takes files does.
#pragma once

#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "Attributes.h"
#include "ReaderNames.h"
#include "mrt/Mrt.h"

namespace bgpcomm {

/// ` (record N, octet M)`
std::string positionText(Position position);

struct ReadResult {
  U64 records = 0;
  U64 paths = 0;
  U64 stateChanges = 0;  ///< among the paths
  SkippedCounts skipped{};
  bool foreign = false;  ///< no record is of any type of MRT's
  FaultCounts faults;
  U64 wrongFlags = 0;
  struct FirstFault {
    Fault fault;
    Position position;
    std::string text;  ///< for people; empty where the file's end has had a line of its own
  };
  std::optional<FirstFault> firstFault;  ///< of those counted

  /// The file could not be opened, or not be read to its end.
  bool failed = false;
  /// Could not even be opened: there is nothing to report of it.
  bool unopened = false;
  /// For people, as its error line says it: why it failed.
  std::string failure;
};

/// ` (record N, octet M): what is wrong`
std::string textOf(const ReadResult::FirstFault& first);

struct ReadOptions {
  /// Standard output gets lines of what is read, not only at the end; see Progress.h.
  bool printsLines = false;
  PathCutter::Updates updates = PathCutter::Updates::withAttributes;
  /// Gets the faults that are of no path, each where it stands, with a reason for people.
  std::function<void(Fault, Position, const std::string& reason)> onFault = {};
};

/// A file that is being read. An early end is printed as an error line, with its reason. Malformed
/// attributes and records are counted and passed.
class FileReading {
 public:
  FileReading(const std::string& file, ReadOptions options);
  ~FileReading();

  /// The next path, valid until the next call; null when there is none, or the file could not be
  /// opened. Counts the faults of the path before. Throws std::bad_alloc.
  const Path* next();
  /// The values of the path that `next` returned; more faults of it may be added.
  CommunityValues& values() { return values_; }
  Position position() const;
  /// Ends the reading: counts the faults of the path that `next` returned.
  void stop();
  /// Ends the reading: prints an error line of memory that did not suffice.
  void outOfMemory();
  const ReadResult& result() const { return result_; }

 private:
  struct Opened;

  void countPath();
  void countOutside(Fault fault, Position position, const std::string& reason, bool said);
  void countRecords();
  void reportEnd();

  const std::string& file_;
  const ReadOptions options_;
  std::unique_ptr<Opened> opened_;
  const Path* path_ = nullptr;  // that `next` returned
  CommunityValues values_{};
  ReadResult result_;
};

/// Calls `visit(path, values, position)` for each path, as long as that returns true. All paths
/// before the end have been visited; running out of memory, also in `visit`, is such an end.
template <class Visit>
ReadResult readFileWhile(const std::string& file, const Visit& visit,
                         const ReadOptions& options = {}) {
  FileReading reading(file, options);
  try {
    while (const Path* const path = reading.next())
      if (!visit(*path, reading.values(), reading.position())) {
        reading.stop();
        break;
      }
  } catch (const std::bad_alloc&) {
    reading.outOfMemory();
  }
  return reading.result();
}
/// The same for all paths.
template <class Visit>
ReadResult readFile(const std::string& file, const Visit& visit, const ReadOptions& options = {}) {
  const auto visitAll = [&](const Path& path, CommunityValues& values, Position position) {
    visit(path, values, position);
    return true;
  };
  return readFileWhile(file, visitAll, options);
}

/// One error line of what is malformed, if anything is, with the first in full; an early end of the
/// file has had a line of its own. Another of a file without paths, that says what it has instead.
void reportPassedOver(const std::string& file, const ReadResult& result);

/// Reads a file as `readFile` does, and reports. Whether it was read to its end.
template <class Visit>
bool readReporting(const std::string& file, const Visit& visit, const ReadOptions& options = {}) {
  const ReadResult result = readFile(file, visit, options);
  reportPassedOver(file, result);
  return !result.failed;
}

}  // namespace bgpcomm

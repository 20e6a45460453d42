#include "Reading.h"

#include <array>
#include <cstdio>
#include <new>
#include <system_error>

#include "Progress.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

/// As `positionText`, without allocating.
std::array<char, 64> positionCharacters(Position position) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), " (record %llu, octet %llu)",
                static_cast<unsigned long long>(position.record),
                static_cast<unsigned long long>(position.octet));
  return text;
}

}  // namespace

std::string positionText(Position position) { return positionCharacters(position).data(); }

struct FileReading::Opened {
  Opened(const std::string& file, ReadOptions options)
      : input(file), reader(input, options.updates), progress(file, input, options.showProgress) {}

  Input input;
  PathReader reader;
  Progress progress;
};

FileReading::FileReading(const std::string& file, ReadOptions options) : file_(file) {
  workingOn(file);
  try {
    opened_ = std::make_unique<Opened>(file, options);
  } catch (const std::system_error& error) {
    // Memory for a thread is missing, most often for its stack.
    if (error.code() == std::errc::resource_unavailable_try_again)
      printOutOfMemory(" for a thread");
    else
      printError(file, ": ", error.code().message());
    result_.failed = result_.unopened = true;
  }
}

FileReading::~FileReading() = default;

const Path* FileReading::next() {
  if (!opened_) return nullptr;
  if (result_.paths > 0) count(values_.faults, position());
  const Path* const path = opened_->reader.next();
  countBadRecords();
  if (path) {
    ++result_.paths;
    values_ = findCommunities(path->attributes);
    opened_->progress.update(result_.paths);
  } else {
    reportEnd();
  }
  result_.records = opened_->reader.records();
  return path;
}

Position FileReading::position() const { return opened_->reader.position(); }

void FileReading::outOfMemory() {
  printOutOfMemory(positionCharacters(position()).data());
  result_.records = opened_->reader.records();
  result_.failed = true;
}

/// Counts what was found at a position of the file.
void FileReading::count(const FaultCounts& faults, Position position) {
  if (faults.total() == 0) return;
  if (!result_.firstFault) result_.firstFault = {faults.first(), position};
  result_.faults.add(faults);
}

void FileReading::countBadRecords() {
  const U64 counted = result_.faults[Fault::badRecord], bad = opened_->reader.badRecords();
  if (bad == counted) return;
  if (!result_.firstFault)
    result_.firstFault = {Fault::badRecord, *opened_->reader.firstBadRecord()};
  result_.faults.add(Fault::badRecord, bad - counted);
}

/// Prints why the file ended before its end.
void FileReading::reportEnd() {
  const auto& truncation = opened_->reader.truncation();
  const auto& failure = opened_->input.failure();
  const std::string text = positionText(position());
  FaultCounts faults;
  if (truncation) faults.add(Fault::truncatedRecord);
  if (failure) {
    if (failure->compression) faults.add(Fault::compression);
    printError(file_ + ": " + failure->text + text);
  } else if (truncation) {
    printError(file_ + ": ends inside a record, " + std::to_string(truncation->there) + " of " +
               std::to_string(truncation->wanted) + " octets" + text);
  }
  count(faults, position());
  result_.failed = truncation || failure;
}

void reportMalformed(const std::string& file, const ReadResult& result) {
  const FaultCounts& faults = result.faults;
  const U64 passed = faults.total() - faults[Fault::truncatedRecord] - faults[Fault::compression];
  if (passed == 0) return;
  printError(file + ": " + grouped(passed) + " malformed, the first " +
             std::string(faultNames[std::size_t(result.firstFault->fault)]) +
             positionText(result.firstFault->position));
}

}  // namespace bgpcomm

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
  Opened(const std::string& file, const ReadOptions& options,
         std::function<void(Position)> onBadRecord)
      : input(file, flushOutput),
        reader(input, options.updates, std::move(onBadRecord)),
        progress(file, input, options.showProgress) {}

  Input input;
  PathReader reader;
  Progress progress;
};

FileReading::FileReading(const std::string& file, ReadOptions options)
    : file_(file), options_(std::move(options)) {
  workingOn(file);
  try {
    opened_ = std::make_unique<Opened>(file, options_, [this](Position position) {
      countOutside(Fault::badRecord, position, "fields that do not fit, or too long");
    });
  } catch (const std::system_error& error) {
    // Memory for a thread is missing, most often for its stack.
    if (error.code() == std::errc::resource_unavailable_try_again)
      printOutOfMemory(" for a thread");
    else
      printError(shownFile(file), ": ", error.code().message());
    result_.failed = result_.unopened = true;
  }
}

FileReading::~FileReading() = default;

const Path* FileReading::next() {
  if (!opened_) return nullptr;
  if (result_.paths > 0) count(values_.faults, position());
  const Path* const path = opened_->reader.next();
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

void FileReading::countOutside(Fault fault, Position position, const std::string& reason) {
  count(FaultCounts(fault), position);
  if (options_.onFault) options_.onFault(fault, position, reason);
}

/// Prints why the file ended before its end.
void FileReading::reportEnd() {
  const auto& truncation = opened_->reader.truncation();
  const auto& failure = opened_->input.failure();
  const std::string where = positionText(position());
  const std::string reason = truncation ? truncation->text() : "";
  if (failure)
    printError(shownFile(file_), ": ", failure->text, where);
  else if (truncation)
    printError(shownFile(file_), ": ", reason, where);
  // In the order of their numbers: the first counts as the file's first.
  if (truncation) countOutside(Fault::truncatedRecord, position(), reason);
  if (failure && failure->compression) countOutside(Fault::compression, position(), failure->text);
  result_.failed = truncation || failure;
}

void reportMalformed(const std::string& file, const ReadResult& result) {
  const FaultCounts& faults = result.faults;
  const U64 passed = faults.total() - faults[Fault::truncatedRecord] - faults[Fault::compression];
  if (passed == 0) return;
  printError(shownFile(file), ": ", grouped(passed), " malformed, the first ",
             faultNames[std::size_t(result.firstFault->fault)],
             positionText(result.firstFault->position));
}

}  // namespace bgpcomm

#include "Reading.h"

#include <array>
#include <cstdio>
#include <new>
#include <system_error>

#include "Progress.h"
#include "Terminal.h"
#include "Wrapped.h"

namespace bgpcomm {
namespace {

/// Short enough that a string of it allocates nothing.
constexpr char outOfMemoryText[] = "out of memory";

/// As `positionText`, without allocating.
std::array<char, 64> positionCharacters(Position position) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), " (record %llu, octet %llu)",
                static_cast<unsigned long long>(position.record),
                static_cast<unsigned long long>(position.octet));
  return text;
}

/// An error line of a file that has no paths: what its records are instead.
void reportNoPaths(const std::string& file, const ReadResult& result) {
  if (result.records == 0) return printError(shownFile(file), ": no records");
  SkippedCounts skipped = result.skipped;
  skipped[std::size_t(Skipped::stateChange)] += result.stateChanges;
  const U64 good = result.records - result.faults[Fault::badRecord];
  if (good == 0 || result.paths > result.stateChanges) return;
  std::string text;
  const auto add = [&text](std::string_view words, U64 count) {
    if (count == 0) return;
    text.append(text.empty() ? "" : ", ").append(words).append(" ").append(grouped(count));
  };
  for (std::size_t i = 0; i < skippedSorts; ++i) add(skippedNames[i].words, skipped[i]);
  add("announcing nothing", good - total(skipped));
  printError(shownFile(file), ": no paths in ", counted(result.records, "record"), ": ", text,
             result.foreign ? "; not an MRT file?" : "");
}

std::string badRecordText(const Record& record) {
  return (record.tooLong ? "too long" : "fields that do not fit") + std::string(" (type ") +
         std::to_string(record.type) + ", subtype " + std::to_string(record.subtype) + ", length " +
         std::to_string(record.length) + ')';
}

}  // namespace

std::string positionText(Position position) { return positionCharacters(position).data(); }

struct FileReading::Opened {
  Opened(const std::string& file, const ReadOptions& options,
         std::function<void(const Record&)> onBadRecord, std::function<void()> onRecord)
      : input(file, flushOutput),
        reader(input, options.updates, std::move(onBadRecord), std::move(onRecord)),
        progress(file, input, options.printsLines) {}

  Input input;
  PathReader reader;
  Progress progress;
};

FileReading::FileReading(const std::string& file, ReadOptions options)
    : file_(file), options_(std::move(options)) {
  workingOn(file);
  try {
    opened_ = std::make_unique<Opened>(
        file, options_,
        [this](const Record& record) {
          countOutside(Fault::badRecord, {record.number, record.offset}, badRecordText(record),
                       false);
        },
        [this] { opened_->progress.update(result_.paths); });
  } catch (const std::system_error& error) {
    // Memory for a thread is missing, most often for its stack.
    if (error.code() == std::errc::resource_unavailable_try_again) {
      result_.failure = outOfMemoryText;
      printOutOfMemory(" for a thread");
    } else {
      result_.failure = error.code().message();
      printError(shownFile(file), ": ", result_.failure);
    }
    result_.failed = result_.unopened = true;
  }
}

FileReading::~FileReading() = default;

const Path* FileReading::next() {
  if (!opened_) return nullptr;
  countPath();
  path_ = opened_->reader.next();
  if (path_) {
    ++result_.paths;
    result_.stateChanges += path_->stateChange.has_value();
    values_ = findCommunities(path_->attributes);
    opened_->progress.update(result_.paths);
  } else {
    countRecords();
    reportEnd();
  }
  return path_;
}

void FileReading::stop() {
  countPath();
  countRecords();
}

Position FileReading::position() const { return opened_->reader.position(); }

void FileReading::outOfMemory() {
  printOutOfMemory(positionCharacters(position()).data());
  countRecords();
  result_.failure = outOfMemoryText;
  result_.failed = true;
}

/// Counts what was found in the path that `next` returned.
void FileReading::countPath() {
  if (!path_) return;
  result_.wrongFlags += values_.wrongFlags;
  if (values_.faults.total() == 0) return;
  if (!result_.firstFault) {
    auto [fault, text] = firstFaultOf(path_->attributes, values_.faults);
    result_.firstFault = {fault, position(), std::move(text)};
  }
  result_.faults.add(values_.faults);
}

void FileReading::countRecords() {
  result_.records = opened_->reader.records();
  result_.skipped = opened_->reader.skipped();
  result_.foreign = opened_->reader.foreignType().has_value();
}

/// `said`: there has been an error line of it.
void FileReading::countOutside(Fault fault, Position position, const std::string& reason,
                               bool said) {
  if (!result_.firstFault) result_.firstFault = {fault, position, said ? "" : reason};
  result_.faults.add(fault);
  if (options_.onFault) options_.onFault(fault, position, reason);
}

/// Prints why the file ended before its end.
void FileReading::reportEnd() {
  const auto& truncation = opened_->reader.truncation();
  const auto& failure = opened_->input.failure();
  const std::string where = positionText(position());
  const std::string reason = truncation ? truncation->text() : "";
  if (truncation || failure) {
    result_.failure = (failure ? failure->text : reason) + where;
    printError(shownFile(file_), ": ", result_.failure);
  }
  // In the order of their numbers: the first counts as the file's first.
  if (truncation) countOutside(Fault::truncatedRecord, position(), reason, true);
  if (failure && failure->compression)
    countOutside(Fault::compression, position(), failure->text, true);
  result_.failed = truncation || failure;
}

std::string textOf(const ReadResult::FirstFault& first) {
  return positionText(first.position) + (first.text.empty() ? "" : ": ") + first.text;
}

void reportPassedOver(const std::string& file, const ReadResult& result) {
  const FaultCounts& faults = result.faults;
  const U64 passed = faults.total() - faults[Fault::truncatedRecord] - faults[Fault::compression];
  if (passed > 0)
    printError(shownFile(file), ": ", grouped(passed), " malformed, the first ",
               faultNames[std::size_t(result.firstFault->fault)], textOf(*result.firstFault));
  if (!result.failed) reportNoPaths(file, result);
}

}  // namespace bgpcomm

#include "Reading.h"

#include <array>
#include <cstdio>
#include <new>
#include <system_error>

#include "Progress.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

/// As `placeText`, without allocating.
std::array<char, 64> placeCharacters(Place place) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), " (record %llu, octet %llu)",
                static_cast<unsigned long long>(place.record),
                static_cast<unsigned long long>(place.octet));
  return text;
}

/// Counts what was found at a place.
void count(const FaultCounts& faults, Place place, ReadResult& result) {
  if (faults.total() == 0) return;
  if (!result.firstFault) result.firstFault = {faults.first(), place};
  result.faults.add(faults);
}

/// What ended the file before its end.
void reportEnd(const std::string& file, const Input& input, const RecordReader& reader,
               ReadResult& result) {
  const auto& truncation = reader.truncation();
  const Place end{reader.records() + 1, truncation ? truncation->offset : input.offset()};
  const std::string place = placeText(end);
  FaultCounts faults;
  if (truncation) faults.add(Fault::truncatedRecord);
  if (input.failure()) {
    if (input.failure()->compression) faults.add(Fault::compression);
    printError(file + ": " + input.failure()->text + place);
  } else if (truncation) {
    printError(file + ": ends inside a record, " + std::to_string(truncation->there) + " of " +
               std::to_string(truncation->wanted) + " octets" + place);
  }
  count(faults, end, result);
  result.failed = truncation || input.failure();
}

void readRecord(const Record& record, PathCutter& cutter, const VisitPath& visit,
                ReadResult& result) {
  const Place place{record.number, record.offset};
  const bool whole = cutter.cut(record, [&](const Path& path) {
    ++result.paths;
    CommunityValues values = findCommunities(path.attributes);
    visit(path, values, place);
    count(values.faults, place, result);
  });
  if (!whole) count(FaultCounts(Fault::badRecord), place, result);
}

}  // namespace

std::string placeText(Place place) { return placeCharacters(place).data(); }

ReadResult readFile(const std::string& file, const VisitPath& visit, ReadOptions options) {
  ReadResult result;
  std::optional<Input> input;
  workingOn(file);
  try {
    input.emplace(file);
  } catch (const std::system_error& error) {
    // What a thread needs is missing, most often its stack.
    if (error.code() == std::errc::resource_unavailable_try_again)
      printOutOfMemory(" for a thread");
    else
      printError(file, ": ", error.code().message());
    result.failed = result.unopened = true;
    return result;
  }
  RecordReader reader(*input);
  U64 record = 1;
  try {
    PathCutter cutter(options.updates);
    Progress progress(file, *input, options.showProgress);
    for (; const auto found = reader.next(); record = reader.records() + 1) {
      readRecord(*found, cutter, visit, result);
      progress.update(result.paths);
    }
    reportEnd(file, *input, reader, result);
  } catch (const std::bad_alloc&) {
    printOutOfMemory(placeCharacters({record, input->offset()}).data());
    result.failed = true;
  }
  result.records = reader.records();
  return result;
}

void reportMalformed(const std::string& file, const ReadResult& result) {
  const FaultCounts& faults = result.faults;
  const U64 passed = faults.total() - faults[Fault::truncatedRecord] - faults[Fault::compression];
  if (passed == 0) return;
  printError(file + ": " + grouped(passed) + " malformed, the first " +
             std::string(faultNames[std::size_t(result.firstFault->fault)]) +
             placeText(result.firstFault->place));
}

}  // namespace bgpcomm

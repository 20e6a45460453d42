#include "Reading.h"

#include <system_error>

#include "Terminal.h"

namespace bgpcomm {
namespace {

/// What ended the file before its end.
void reportEnd(const std::string& file, const Input& input, const RecordReader& reader,
               ReadResult& result) {
  const auto& truncation = reader.truncation();
  const Place end{reader.records() + 1, truncation ? truncation->offset : input.offset()};
  const std::string place = placeText(end);
  if (truncation) result.faults.add(Fault::truncatedRecord);
  if (input.failure()) {
    if (input.failure()->compression) result.faults.add(Fault::compression);
    printError(file + ": " + input.failure()->text + place);
  } else if (truncation) {
    printError(file + ": ends inside a record, " + std::to_string(truncation->there) + " of " +
               std::to_string(truncation->wanted) + " octets" + place);
  }
  result.failed = truncation || input.failure();
  if (result.failed && !result.firstFault) result.firstFault = end;
}

}  // namespace

std::string placeText(Place place) {
  return " (record " + std::to_string(place.record) + ", octet " + std::to_string(place.octet) +
         ')';
}

ReadResult readFile(const std::string& file, const VisitPath& visit, bool showProgress) {
  ReadResult result;
  std::optional<Input> input;
  try {
    input.emplace(file);
  } catch (const std::system_error& error) {
    printError(file + ": " + error.code().message());
    result.failed = result.unopened = true;
    return result;
  }
  RecordReader reader(*input);
  {
    PathCutter cutter;
    Progress progress(file, *input, showProgress);
    while (const std::optional<Record> record = reader.next()) {
      const Place place{record->number, record->offset};
      const bool whole = cutter.cut(*record, [&](const Path& path) {
        ++result.paths;
        visit(path, findCommunities(path.attributes, result.faults), place);
      });
      progress.update(result.paths);
      if (!whole) result.faults.add(Fault::badRecord);
      if (!result.firstFault && result.faults.total() > 0) result.firstFault = place;
    }
  }
  result.records = reader.records();
  reportEnd(file, *input, reader, result);
  return result;
}

}  // namespace bgpcomm

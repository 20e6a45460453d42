#include <algorithm>
#include <cstring>

#include "Commands.h"
#include "Hex.h"
#include "Reading.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

/// The attribute that a list must write: optional and transitive, the values sorted as octets,
/// without repeats. Made from the octets alone, by none of the library's code.
std::string canonical(const ListType& type, Octets value) {
  std::vector<std::string> values;
  for (Octets left = value; !left.empty(); left = left.subspan(type.valueSize))
    values.emplace_back(left.begin(), left.begin() + std::ptrdiff_t(type.valueSize));
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());

  const std::size_t length = values.size() * type.valueSize;
  std::string attribute = {char(length > 255 ? 0xd0 : 0xc0), char(type.attribute)};
  if (length > 255) attribute += char(length >> 8);
  attribute += char(length);
  for (const std::string& one : values) attribute += one;
  return attribute;
}

class Verifier {
 public:
  /// Compares the lists of a path; a list that is refused is one of its faults.
  void compare(const std::string& file, CommunityValues& values, Position position) {
    for (std::size_t type = 0; type < listTypeCount; ++type) {
      if (values[type].empty()) continue;
      const ListText written = listTypes[type].serialized(tables_, values[type]);
      if (written.fault) {
        values.faults.add(*written.fault);
        continue;
      }
      const std::string expected = canonical(listTypes[type], values[type]);
      ++compared_;
      if (written.text != expected && ++differing_ <= shownDifferences)
        show(visible(file) + ": " + std::string(listTypes[type].title) + positionText(position),
             expected, written.text);
    }
  }

  U64 compared() const { return compared_; }
  U64 differing() const { return differing_; }

 private:
  static constexpr U64 shownDifferences = 10;

  static void show(const std::string& what, const std::string& expected,
                   const std::string& written) {
    const auto at = std::mismatch(expected.begin(), expected.end(), written.begin(), written.end());
    print(what + ": differs from octet " + std::to_string(at.first - expected.begin()) + " on\n");
    print("  wire    " + hex(asOctets(expected)) + "\n  written " + hex(asOctets(written)) + '\n');
  }

  const CommunityTables tables_{sharedParser()};
  U64 compared_ = 0;
  U64 differing_ = 0;
};

int runVerify(const std::vector<std::string>& files) {
  bool good = true;
  for (const std::string& file : files) {
    Verifier verifier;
    const ReadResult result =
        readFile(file, [&](const Path&, CommunityValues& values, Position position) {
          verifier.compare(file, values, position);
        });
    good = good && !result.failed && verifier.differing() == 0;
    reportPassedOver(file, result);
    if (result.unopened) continue;
    print(visible(shownFile(file)) + ": " + grouped(verifier.compared()) + " lists compared, " +
          grouped(verifier.differing()) + " differ, " + grouped(result.faults.total()) +
          " malformed\n");
  }
  return good ? 0 : exitBadData;
}

}  // namespace

void addVerify(CLI::App& app, int& exitCode) {
  const auto [command, files] = addCommand(
      app,
      {"verify", "Write every list back and compare it with the wire",
       "What is written must equal, octet by octet, what was read, sorted and without\n"
       "repeats. Exit code 1 when a list does not, or a file cannot be read to its end;\n"
       "what is malformed is counted and not compared.\n\n"
       "Example: bgpcomm verify rib.bz2"},
      exitCode, runVerify);
  addFiles(command, files);
}

}  // namespace bgpcomm

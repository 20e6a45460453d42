// The whole tool on a decompressed file: read, cut into paths, interned, counted.
#include <unistd.h>

#include <fstream>

#include "Benchmarks.h"
#include "Measure.h"
#include "tools/bgpcomm/DumpDiff.h"
#include "tools/bgpcomm/Summary.h"

namespace bench {
namespace {

/// The decompressed octets of a dump, in a file of their own.
class Decompressed {
 public:
  explicit Decompressed(const std::string& file) {
    ::close(::mkstemp(name_.data()));
    std::ofstream plain(name_, std::ios::binary);
    bgpcomm::Input input(file);
    for (Octets octets = input.ahead(1); !octets.empty(); octets = input.ahead(1)) {
      plain.write(reinterpret_cast<const char*>(octets.data()), std::streamsize(octets.size()));
      input.take(octets.size());
    }
  }
  ~Decompressed() { ::unlink(name_.c_str()); }
  Decompressed(const Decompressed&) = delete;
  Decompressed& operator=(const Decompressed&) = delete;
  const std::string& name() const { return name_; }

 private:
  std::string name_ = "/tmp/zobgp-bench-XXXXXX";
};

U64 summarise(const std::string& file) {
  bgpcomm::FileFigures figures;
  const bgpcomm::FileLists lists;
  bgpcomm::readInto(file, lists, figures);
  for (std::size_t type = 0; type < bgpcomm::listTypeCount; ++type) {
    bgpcomm::ListFigures ofType;
    lists[type].figures(ofType, 10);
  }
  return figures.paths;
}

/// Two dumps, compared or summarised one after the other.
U64 diff(const std::string& file) {
  const Routing::Bgp::CommunityTables tables(bgpcomm::sharedParser());
  bgpcomm::PathFilter filter({});
  U64 pairs = 0;
  bgpcomm::diffDumps(file, file, tables, filter, [&](const bgpcomm::PathJoin::Pair&) { ++pairs; });
  return pairs;
}
void summariseTwice(const std::string& file) {
  bgpcomm::FileFigures figures;
  const bgpcomm::FileLists lists;
  for (int time = 0; time < 2; ++time) bgpcomm::readInto(file, lists, figures);
  for (std::size_t type = 0; type < bgpcomm::listTypeCount; ++type) {
    bgpcomm::ListFigures ofType;
    lists[type].figures(ofType, 10);
  }
}

}  // namespace

// On the wall's clock: reading has a thread of its own.
void addTool(const std::string& file) {
  const auto plain = std::make_shared<Decompressed>(file);
  const U64 paths = summarise(plain->name());
  if (paths == 0) return;
  const auto addOne = [&](const char* operation, const char* contender, auto run) {
    add(nameOf(operation, file, contender), 3, [plain, paths, run](benchmark::State& state) {
      Passes passes(state, paths);
      for (auto _ : state) {
        const double begin = wallSeconds();
        run(plain->name());
        passes.add(wallSeconds() - begin);
      }
    });
  };
  addOne("summary", "per path", summarise);
  addOne("two dumps", "diff", diff);
  addOne("two dumps", "summary", summariseTwice);
}

}  // namespace bench

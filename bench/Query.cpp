// A question asked of paths whose lists were seen before, and of the same without a memory.
#include "Benchmarks.h"
#include "Contenders.h"
#include "Measure.h"
#include "path/ZoBgpCommunityTables.h"
#include "query/ZoBgpPatternMatcher.h"

namespace bench {
namespace {

using namespace Routing::Bgp;

/// Paths with a standard list, as they are drawn, and an extended one of as many.
struct Paths {
  explicit Paths(const Workload& standard) {
    const Workload& extended = extendedLists();
    paths.resize(std::min(standard.drawn.size(), extended.drawn.size()));
    for (std::size_t i = 0; i < paths.size(); ++i) {
      tables.read(BgpPathAttrType::community, standard.drawn[i], paths[i]);
      tables.read(BgpPathAttrType::extCommunity, extended.drawn[i], paths[i]);
    }
  }

  const CommunityTables tables;
  std::vector<PathCommunities> paths;
};

constexpr const char* ofOneList = "no-export or 65000:* or count(standard) > 30";
constexpr const char* ofTwoLists =
    "RT:*:1..99 and not (no-export or 65000:* or count(standard) > 30)";

}  // namespace

void addQuery(const Workload& standard) {
  const auto paths = std::make_shared<Paths>(standard);
  const auto addOne = [&](const char* contender, auto ask) {
    add(nameOf("match", standard.name, contender), 5, [paths, ask](benchmark::State& state) {
      auto matches = ask();
      for (const PathCommunities& path : paths->paths) matches(path);  // each list is seen
      Passes passes(state, paths->paths.size());
      for (auto _ : state)
        passes.time([&] {
          std::size_t found = 0;
          for (const PathCommunities& path : paths->paths) found += matches(path);
          benchmark::DoNotOptimize(found);
        });
    });
  };
  for (const auto& [contender, question] :
       {std::pair("one remembered", ofOneList), {"remembered", ofTwoLists}})
    addOne(contender, [question = question] {
      return [matcher = PatternMatcher(*CommunityPattern::parse(question))](
                 const PathCommunities& path) mutable { return matcher.matches(path); };
    });
  addOne("anew", [] {
    return [pattern = *CommunityPattern::parse(ofTwoLists)](const PathCommunities& path) {
      return pattern.matches(path);
    };
  });
}

}  // namespace bench

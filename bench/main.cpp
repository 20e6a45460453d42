// zobgp_bench [--quick] [--members=N] [--benchmark_...] [FILE...]
//
// Interning, text and wire of communities beside comparators, in one process, repetitions
// interleaved at random: machines drift, ratios of one run do not. Each FILE is an MRT dump whose
// lists are measured too.
//
//   --quick        three repetitions instead of 25; one of the agent's day instead of five
//   --members=N    costs by the members of a table, up to N; 10000000 needs 2.5 GB (default
//   1000000)

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <latch>
#include <list>
#include <thread>

#include "Contenders.h"
#include "Report.h"
#include "attr/ZoBgpGlobals.h"

namespace {

struct Options {
  bool quick = false;
  bench::U64 members = 1'000'000;
  std::vector<std::string> files;
  std::vector<std::string> benchmark;  // for Google Benchmark

  Options(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
      const std::string argument = argv[i];
      if (argument == "--quick")
        quick = true;
      else if (argument.starts_with("--members="))
        members = std::strtoull(argv[i] + argument.find('=') + 1, nullptr, 10);
      else if (argument.starts_with("-"))
        benchmark.push_back(argument);
      else
        files.push_back(argument);
    }
  }
};

void initializeBenchmark(char* program, const Options& options) {
  std::vector<std::string> arguments = {
      program, "--benchmark_enable_random_interleaving=true",
      options.quick ? "--benchmark_repetitions=3" : "--benchmark_repetitions=25"};
  arguments.insert(arguments.end(), options.benchmark.begin(), options.benchmark.end());
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  int count = int(pointers.size());
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) std::exit(2);
}

// Like an agent that has run for a while: memory once got is kept, and there is another thread, so
// that counts and the allocator cannot take the short cuts of a process with one.
class LongRunning {
 public:
  LongRunning() {
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
  }
  ~LongRunning() {
    end_.count_down();
    other_.join();
  }

 private:
  std::latch end_{1};
  std::thread other_{[this] { end_.wait(); }};
};

void printConditions() {
  double load = 0;
  if (getloadavg(&load, 1) == 1)
    std::printf("%u processors, load %.2f before the run%s\n", std::thread::hardware_concurrency(),
                load, load > 0.5 ? ": others are at work, figures of two threads mean little" : "");
  std::printf("ours is %s\n\n", Routing::Bgp::ZoBgpGlobals::multiThreaded()
                                    ? "thread-safe, as it ships"
                                    : "for one thread (DISABLE_ZOBGP_MT)");
}

int run(int argc, char** argv) {
  const Options options(argc, argv);
  initializeBenchmark(argv[0], options);
  const LongRunning longRunning;
  printConditions();
  std::fflush(stdout);

  const bench::MadeUpLists lists(20'000);
  std::list<bench::Workload> workloads = {lists.workload()};
  for (const std::string& file : options.files) workloads.push_back(bench::fileWorkload(file));
  std::vector<const bench::Workload*> all;
  for (const bench::Workload& workload : workloads) {
    bench::addInterning(workload);
    bench::addFormatting(workload);
    all.push_back(&workload);
  }
  if (Routing::Bgp::ZoBgpGlobals::multiThreaded()) bench::addThreads(lists);
  bench::addValues();
  bench::addLists();
  bench::addKinds();
  bench::addQuery(workloads.front());
  bench::addMembers(options.quick ? 100'000 : options.members);
  bench::addLongAttributes();
  bench::addPlacing();
  bench::addFlood();
  bench::addDay(options.quick ? 1 : 5);
  for (const std::string& file : options.files) bench::addTool(file);

  bench::Report report;
  benchmark::RunSpecifiedBenchmarks(&report);
  report.printFigures();
  report.printRatios(all);
  report.printTool(options.files);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "zobgp_bench: %s\n", error.what());
    return 1;
  }
}

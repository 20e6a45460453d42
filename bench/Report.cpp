#include "Report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "Contenders.h"

namespace bench {

namespace {

/// The member of this meaning has another name since version 1.8 of the benchmarks' library.
bool isSkipped(const auto& run) {
  if constexpr (requires { run.error_occurred; })
    return run.error_occurred;
  else
    return bool(run.skipped);
}

}  // namespace

bool Report::ReportContext(const Context&) { return true; }

void Report::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration || isSkipped(run)) continue;
    Figure& figure = figures_[run.run_name.function_name];
    for (const auto& [unit, value] : run.counters) {
      figure.unit = unit;
      figure.samples.push_back(value);
    }
  }
}

double Report::Figure::quantile(double part) const {
  std::vector<double> sorted = samples;
  std::sort(sorted.begin(), sorted.end());
  const double at = part * double(sorted.size() - 1);
  const auto below = std::size_t(at);
  const auto above = std::min(below + 1, sorted.size() - 1);
  return sorted[below] + (at - std::floor(at)) * (sorted[above] - sorted[below]);
}

const Report::Figure* Report::find(const std::string& name) const {
  const auto found = figures_.find(name);
  return found == figures_.end() || found->second.samples.empty() ? nullptr : &found->second;
}

bool Report::has(const std::string& part) const {
  return std::ranges::any_of(figures_, [&](const auto& entry) {
    return entry.first.find(part) != std::string::npos && !entry.second.samples.empty();
  });
}

void Report::printFigures() const {
  std::printf("%-72s %9s   %s\n", "operation, lists/contender", "median", "quartiles");
  for (const auto& [name, figure] : figures_)
    if (!figure.samples.empty())
      std::printf("%-72s %9.1f   %.1f to %.1f %s\n", name.c_str(), figure.median(),
                  figure.quantile(0.25), figure.quantile(0.75), figure.unit.c_str());
}

/// A ratio of ours, its aim, and the same ratio of others.
struct Report::Row {
  const char* title;
  std::string ours, base;
  double aim = 0;  // 0: none is set
  bool atLeast = false;
  std::vector<std::string> others = {};
};

std::string Report::ratio(const std::string& name, const std::string& base) const {
  const Figure *a = find(name), *b = find(base);
  if (!a || !b) return {};
  char text[20];
  std::snprintf(text, sizeof text, "%.2f", a->median() / b->median());
  return text;
}

void Report::printRow(const Row& row) const {
  const Figure *ours = find(row.ours), *base = find(row.base);
  if (!ours || !base) return;
  const double ratio = ours->median() / base->median();
  char span[40], aim[40] = "";
  std::snprintf(span, sizeof span, "%.2f to %.2f", ours->quantile(.25) / base->quantile(.75),
                ours->quantile(.75) / base->quantile(.25));
  if (row.aim != 0)
    std::snprintf(aim, sizeof aim, "at %s %.2f  %s", row.atLeast ? "least" : "most", row.aim,
                  (row.atLeast ? ratio >= row.aim : ratio <= row.aim) ? "met" : "MISSED");
  std::printf("  %-26s %5.2f  %-14s  %-22s", row.title, ratio, span, aim);
  for (const std::string& other : row.others)
    std::printf("  %9s", other.empty() ? "-" : this->ratio(other, row.base).c_str());
  std::printf("\n");
}

void Report::printInterning(const Workload& workload) const {
  struct Aim {
    const char* operation;
    double most;
  };
  if (!has(", " + workload.name + '/')) return;
  std::printf("\n%s: %s\n", workload.name.c_str(), workload.distribution.c_str());
  std::printf("  %-26s %5s  %-14s  %-22s  %9s  %9s  %9s  %9s\n", "against flyweight", "ours",
              "quartiles", "aim", "one lock", "shared_p.", "fl.sorted", "fl.raw");
  for (const auto& [operation, most] :
       {Aim{"hit", workload.name == "made-up" ? 0.65 : 0.75}, Aim{"miss", 1.2},
        Aim{"last release", 1.5}, Aim{"octets per list", 1.1}}) {
    const auto of = [&, operation = operation](const char* contender) {
      return nameOf(operation, workload.name, contender);
    };
    printRow({operation,
              of(Ours::name),
              of(FlyweightUnlocked::name),
              most,
              false,
              {of(FlyweightLocked::name), of(SharedPointers::name), of(FloorSorted::name),
               of(FloorRaw::name)}});
  }
  const auto text = [&](const char* what) { return nameOf("text", workload.name, what); };
  const auto wire = [&](const char* what) { return nameOf("wire", workload.name, what); };
  printRow({"text appended / to_chars", text("appended"), text("to_chars"), 1.5});
  printRow({"text / to_chars", text("numbers"), text("to_chars"), 1.5});
  printRow({"text, names / to_chars", text("names"), text("to_chars"), 1.5});
  printRow({"serialize / swapped string", wire("serialize"), wire("swapped into a string"), 1.5});
  printRow({"serialize / memcpy", wire("serialize"), wire("memcpy")});
}

// Beside a flyweight with a lock, since values are shared by all threads.
void Report::printValues(const Workload& workload, bool withAims) const {
  if (!has(", " + workload.name + '/')) return;
  std::printf("\n%s: %s\n  %-26s %5s  %-14s  %-22s  %9s  %9s\n", workload.name.c_str(),
              workload.distribution.c_str(), "against flyweight, lock", "ours", "quartiles", "aim",
              "no lock", "floor");
  const std::pair<const char*, double> aims[] = {
      {"hit", 0.85}, {"miss", 0}, {"last release", 1.6}, {"octets per list", 0}};
  for (const auto& [operation, aim] : aims) {
    const auto of = [&, operation = operation](const char* contender) {
      return nameOf(operation, workload.name, contender);
    };
    printRow({operation,
              of(Ours::name),
              of(FlyweightLocked::name),
              withAims ? aim : 0,
              false,
              {of(FlyweightUnlocked::name), of(FloorRaw::name)}});
  }
  if (const Figure* octets = find(nameOf("octets per list", workload.name, Ours::name)))
    std::printf("  octets each, table included: %.1f%s\n", octets->median(),
                withAims ? "  (aim: at most 72)" : "");
  const auto one = [&](const char* what, const char* by) {
    return nameOf(what, workload.name, by);
  };
  printRow({"parse / make alone", one("parse", Ours::name), one("make", "factory alone")});
}

// `aims` at most: of a hit, a miss, a last release, octets per list; 0 for none.
void Report::printLists(const Workload& workload, const std::array<double, 4>& aims) const {
  if (!has(", " + workload.name + '/')) return;
  std::printf("\n%s: %s\n  %-26s %5s  %-14s  %-22s  %9s\n", workload.name.c_str(),
              workload.distribution.c_str(), "against flyweight", "ours", "quartiles", "aim",
              "one lock");
  const char* const operations[] = {"hit", "miss", "last release", "octets per list"};
  for (std::size_t i = 0; i < aims.size(); ++i) {
    const auto of = [&](const char* contender) {
      return nameOf(operations[i], workload.name, contender);
    };
    printRow({operations[i],
              of(Ours::name),
              of(FlyweightUnlocked::name),
              aims[i],
              false,
              {of(FlyweightLocked::name)}});
  }
}

void Report::printFlood() const {
  const Workload &flood = floodOfOneHash(), &spread = spreadContents();
  if (!has(", " + flood.name + '/')) return;
  std::printf("\n8-octet values of one hash against spread ones: %s hash, %s hashes\n",
              flood.distribution.c_str(), spread.distribution.c_str());
  for (const char* operation : {"hit", "miss", "last release"})
    printRow({operation, nameOf(operation, flood.name, Ours::name),
              nameOf(operation, spread.name, Ours::name), 1.3});
}

void Report::printKinds() const {
  const auto of = [](const char* operation, const char* contender) {
    return nameOf(operation, "all kinds", contender);
  };
  if (!has(", all kinds/")) return;
  std::printf("\n8-octet contents of all kinds\n");
  printRow(
      {"parse with the pack / without", of("parse", "with the pack"), of("parse", "without"), 1.3});
  printRow(
      {"canonical / policy text", of("canonical text", Ours::name), of("policy text", Ours::name)});
  printRow(
      {"read / written", of("canonical text read", Ours::name), of("canonical text", Ours::name)});
}

void Report::printQuery(const Workload& workload) const {
  const std::string remembered = nameOf("match", workload.name, "remembered");
  const Figure* const figure = find(remembered);
  const Figure* const one = find(nameOf("match", workload.name, "one remembered"));
  if (!figure || !one) return;
  std::printf(
      "\na question, by path: %.1f ns where a list was seen (aim: at most 5), %.1f where two "
      "were\n",
      one->median(), figure->median());
  printRow({"two remembered / anew", remembered, nameOf("match", workload.name, "anew")});
}

void Report::printDay() const {
  struct Line {
    const char *title, *operation, *workload, *other;
    bool perSecond;
  };
  const char *const unlocked = FlyweightUnlocked::name, *const locked = FlyweightLocked::name;
  const Line lines[] = {{"paths a second, one thread", "day", "one thread", unlocked, true},
                        {"paths a second, two threads", "day", "two threads", locked, true},
                        {"octets per path", "octets per path", "day", unlocked, false},
                        {"longest release, us", "longest release", "day", unlocked, false}};
  bool first = true;
  for (const Line& line : lines) {
    const Figure* const ours = find(nameOf(line.operation, line.workload, Ours::name));
    const Figure* const other = find(nameOf(line.operation, line.workload, line.other));
    if (!ours || !other) continue;
    if (std::exchange(first, false))
      std::printf("\nan agent's day: %s\n  %-28s %12s %12s  ratio\n", dayDistribution().c_str(), "",
                  "ours", "flyweight");
    const auto shown = [&](const Figure& figure) {
      return line.perSecond ? 1e9 / figure.median() : figure.median();
    };
    std::printf("  %-28s %12.*f %12.*f  %5.2f%s\n", line.title, !line.perSecond, shown(*ours),
                !line.perSecond, shown(*other), shown(*ours) / shown(*other),
                line.other == locked ? "  (flyweight with its lock)" : "");
  }
}

void Report::printRatios(const std::vector<const Workload*>& workloads) const {
  std::printf("\nRATIOS of medians; beside them what their quartiles allow\n");
  for (const Workload* workload : workloads) printInterning(*workload);

  printValues(eightOctetValues(), true);
  printValues(twentyOctetValues(), false);
  printLists(largeLists(), {0.75, 1.2, 1.5, 1.1});
  printLists(extendedLists(), {0.85, 3, 4.5, 2.4});
  printLists(ipv6ExtendedLists(), {0.9, 3, 4, 2.4});
  printKinds();
  printQuery(*workloads.front());

  printThreads();
  printFlood();
  printDay();
  printMembers();
  printLengths();
}

void Report::printThreads() const {
  if (!has("two threads, ")) return;
  std::printf("\ntwo threads / one: attributes per second, made-up lists\n");
  bool counts = true;
  const auto threads = [&](const char* title, const char* lists, const char* contender,
                           double aim) {
    printRow({title, nameOf("one thread", lists, contender),
              nameOf("two threads", lists, contender), counts ? aim : 0, true});
  };
  const char* const ownTables = "floor, own tables";
  threads("popular: floor, own tables", "popular lists", ownTables, 0);
  const Figure* const one = find(nameOf("one thread", "popular lists", ownTables));
  const Figure* const two = find(nameOf("two threads", "popular lists", ownTables));
  counts = !one || !two || one->median() >= 1.8 * two->median();
  if (!counts)
    std::printf(
        "  (threads that share nothing should reach 2: below 1.8 the machine has no two\n"
        "  processors now, and these rows have no aims)\n");
  threads("popular: ours", "popular lists", Ours::name, 1.3);
  threads("popular: flyweight, lock", "popular lists", FlyweightLocked::name, 0);
  threads("disjoint: ours", "disjoint lists", Ours::name, 1.6);
  threads("disjoint: flyweight, lock", "disjoint lists", FlyweightLocked::name, 0);
  threads("8-octet values: ours", "popular 8-octet values", Ours::name, 0);
  threads("8-octet values: fl., lock", "popular 8-octet values", FlyweightLocked::name, 0);
  threads("made, dropped: ours", "disjoint lists made and dropped", Ours::name, 0);
  threads("made, dropped: fl., lock", "disjoint lists made and dropped", FlyweightLocked::name, 0);
  threads("extended made, dropped", "extended lists made and dropped", Ours::name, 1.6);
  threads("the same, disjoint", "disjoint extended lists made and dropped", Ours::name, 1.6);
}

void Report::printMembers() const {
  if (!has(", members ")) return;
  std::printf(
      "\nby members of the table, drawn evenly, ascending attributes: ours against flyweight\n");
  for (const char* operation : {"hit", "miss", "last release"})
    for (U64 members = 1'000; members <= 10'000'000; members *= 10) {
      const std::string lists = "members " + std::to_string(members);
      const std::string title = operation + (", " + std::to_string(members));
      printRow({title.c_str(), nameOf(operation, lists, Ours::name),
                nameOf(operation, lists, FlyweightUnlocked::name)});
    }
}

void Report::printLengths() const {
  if (!has("per value, ")) return;
  std::printf(
      "\ncost of a value in an attribute of 16,383 against one of 1,024; log n / log n is 1.40\n");
  for (const char* order : {"ascending", "descending", "random", "up and down"})
    printRow({order, nameOf("per value, 16383 values", order, Ours::name),
              nameOf("per value, 1024 values", order, Ours::name)});
}

void Report::printTool(const std::vector<std::string>& files) const {
  if (!has("summary, ") && !has("two dumps, ")) return;
  std::printf("\nthe whole tool, summary of decompressed files: paths per second\n");
  for (const std::string& file : files)
    if (const Figure* perPath = find(nameOf("summary", file, "per path")))
      std::printf("  %-48s %12.0f\n", file.c_str(), 1e9 / perPath->median());
  for (const std::string& file : files)
    printRow({"diff / summary of both", nameOf("two dumps", file, "diff"),
              nameOf("two dumps", file, "summary"), 1.5});
}

}  // namespace bench

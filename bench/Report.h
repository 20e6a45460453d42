// Collects the figures of all repetitions, and prints them and the ratios that have an aim.
#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <map>
#include <string>
#include <vector>

#include "Benchmarks.h"

namespace bench {

class Report final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;

  /// Medians and the span from the first to the third quartile.
  void printFigures() const;
  void printRatios(const std::vector<const Workload*>& workloads) const;
  void printTool(const std::vector<std::string>& files) const;

 private:
  struct Row;
  struct Figure {
    std::string unit;
    std::vector<double> samples;
    double quantile(double part) const;
    double median() const { return quantile(0.5); }
  };

  const Figure* find(const std::string& name) const;
  /// Whether anything was measured with this in its name: a filter leaves whole sections out.
  bool has(const std::string& part) const;
  /// The ratio of two medians as text; empty when either was not measured.
  std::string ratio(const std::string& name, const std::string& base) const;
  void printRow(const Row& row) const;
  void printInterning(const Workload& workload) const;
  void printValues(const Workload& workload, bool withAims) const;
  void printLists(const Workload& workload, const std::array<double, 4>& aims) const;
  void printFlood() const;
  void printKinds() const;
  void printQuery(const Workload& workload) const;
  void printDay() const;
  void printThreads() const;
  void printMembers() const;
  void printLengths() const;

  std::map<std::string, Figure> figures_;
};

}  // namespace bench

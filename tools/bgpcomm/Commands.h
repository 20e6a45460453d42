// The subcommands. Each adds itself to the command line and, when chosen, runs as a callback that
// sets the process's exit code: 0, 1 for bad data, 2 for bad usage.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace bgpcomm {

inline constexpr int exitBadData = 1;
inline constexpr int exitBadUsage = 2;

void addSummary(CLI::App& app, int& exitCode);
void addPaths(CLI::App& app, int& exitCode);
void addVerify(CLI::App& app, int& exitCode);
void addDecode(CLI::App& app, int& exitCode);
void addDescribe(CLI::App& app, int& exitCode);

/// A value of the command line that is not understood: one error line, exit code 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A subcommand; the description is one line, and what is to be said more stands, with an example,
/// under its help.
CLI::App* addCommand(CLI::App& app, const std::string& name, const std::string& description,
                     const std::string& footer);
/// The files that it reads, at least one.
void addFiles(CLI::App& command, std::vector<std::string>& files);

}  // namespace bgpcomm

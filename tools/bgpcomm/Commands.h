// The subcommands. Each adds itself to the command line and, when chosen, runs as a callback that
// sets the process's exit code: 0, 1 for bad data, 2 for bad usage.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace bgpcomm {

inline constexpr int exitBadData = 1;
inline constexpr int exitBadUsage = 2;

void addSummary(CLI::App& app, int& exitCode);
void addPaths(CLI::App& app, int& exitCode);
void addVerify(CLI::App& app, int& exitCode);
void addDecode(CLI::App& app, int& exitCode);
void addSave(CLI::App& app, int& exitCode);
void addRestore(CLI::App& app, int& exitCode);
void addWatchRt(CLI::App& app, int& exitCode);
void addDescribe(CLI::App& app, int& exitCode);

/// A value of the command line that is not understood: one error line, exit code 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a subcommand's help says: the description in one line, and under its options what is to be
/// said more, with an example.
struct CommandText {
  std::string name, description, footer;
};
/// A subcommand, and where its arguments are to go; once they are there, `run` gets them and gives
/// the exit code.
template <class Arguments>
std::pair<CLI::App&, Arguments&> addCommand(CLI::App& app, const CommandText& text, int& exitCode,
                                            int (*run)(const Arguments&)) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App* const command = app.add_subcommand(text.name, text.description);
  command->footer(text.footer);
  command->callback([arguments, run, &exitCode] { exitCode = run(*arguments); });
  return {*command, *arguments};
}
/// How lists are printed.
struct TextOptions {
  bool names = false;
  bool numeric = false;
  bool json = false;
};
void addTextOptions(CLI::App& command, TextOptions& options);

/// The files that it reads, at least one.
void addFiles(CLI::App& command, std::vector<std::string>& files);

}  // namespace bgpcomm

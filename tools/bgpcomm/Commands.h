// The subcommands. Each adds itself to the command line and, when chosen, runs as a callback that
// sets the process's exit code, see Errors.h. Only files that declare arguments include this
// header: CLI11 takes long to compile.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Errors.h"
#include "Mox/Types.h"

namespace bgpcomm {

void addSummary(CLI::App& app, int& exitCode);
void addReport(CLI::App& app, int& exitCode);
void addPaths(CLI::App& app, int& exitCode);
void addValues(CLI::App& app, int& exitCode);
void addTop(CLI::App& app, int& exitCode);
void addFaults(CLI::App& app, int& exitCode);
void addSpread(CLI::App& app, int& exitCode);
void addLint(CLI::App& app, int& exitCode);
void addVerify(CLI::App& app, int& exitCode);
void addDecode(CLI::App& app, int& exitCode);
void addSave(CLI::App& app, int& exitCode);
void addRestore(CLI::App& app, int& exitCode);
void addMerge(CLI::App& app, int& exitCode);
void addWatchRt(CLI::App& app, int& exitCode);
void addDiff(CLI::App& app, int& exitCode);
void addDescribe(CLI::App& app, int& exitCode);
void addEncode(CLI::App& app, int& exitCode);
void addKinds(CLI::App& app, int& exitCode);
void addHelp(CLI::App& app, int& exitCode);
void addManual(CLI::App& app, int& exitCode);

/// Declares the options of all commands that say which kinds are known.
void addKindOptions(CLI::App& app);

/// Declares those that say what communities mean; see Descriptions.h.
void addDescriptionOptions(CLI::App& app);

/// A subcommand's help: the description in one line, and under its options the rest of the text,
/// with an example.
struct CommandText {
  std::string name, description, footer;
};
/// Makes texts what the options of a command ask for, once they are read.
void settleTexts(const CLI::App& command);
/// Adds a subcommand. Returns it for declaring its arguments, and the struct that they go to. When
/// the subcommand is chosen, `run` gets the struct and returns the exit code.
template <class Arguments>
std::pair<CLI::App&, Arguments&> addCommand(CLI::App& app, const CommandText& text, int& exitCode,
                                            int (*run)(const Arguments&)) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App* const command = app.add_subcommand(text.name, text.description);
  command->footer(text.footer);
  command->callback([command, arguments, run, &exitCode] {
    settleTexts(*command);
    exitCode = run(*arguments);
  });
  return {*command, *arguments};
}
/// Names the words that an option takes, for shells that complete them. Its reader checks the
/// value.
void takesOneOf(CLI::Option* option, const std::vector<std::string>& words);
std::vector<std::string> wordsOf(CLI::Option& option);

/// Declares how communities are printed; see TextStyle.h.
void addTextOptions(CLI::App& command);
/// Declares `--json`, for commands that print objects by lines.
void addJsonLines(CLI::App& command, bool& json);

/// Declares what a summary shows; see Summary.h.
struct SummaryOptions;
void addSummaryOptions(CLI::App& command, SummaryOptions& options);
/// Declares how many of the most used values of each list type are shown.
void addMostUsedOption(CLI::App& command, Mox::Words::U64& top);

/// Declares how the program uses the terminal; see Terminal.h.
void addTerminalOptions(CLI::App& app);

/// Declares the files that a command reads, at least one.
void addFiles(CLI::App& command, std::vector<std::string>& files);

}  // namespace bgpcomm

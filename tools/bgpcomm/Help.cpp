#include "Help.h"

#include <sstream>

#include "JsonHelp.h"
#include "Meant.h"
#include "Terminal.h"
#include "Wrapped.h"

namespace bgpcomm {
namespace {

using Options = std::vector<const CLI::Option*>;

/// "pathz is unknown; did you mean paths?", "--json stands behind the command: bgpcomm paths
/// --json".
std::string unknown(const CLI::App& program, const CLI::App* command, const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  if (command && name.starts_with("--") && command->get_option_no_throw(name))
    return name + " stands behind the command: bgpcomm " + command->get_name() + ' ' + name;
  std::vector<std::string> known;
  if (word.starts_with('-'))
    for (const CLI::App* const one : {&program, command})
      for (const CLI::Option* const option : one ? one->get_options() : Options())
        for (const std::string& name : option->get_lnames()) known.push_back("--" + name);
  else if (!command)
    for (const CLI::App* const one : program.get_subcommands({})) known.push_back(one->get_name());
  return name + " is unknown" + meantAmong(known, name);
}

/// The first line of the parser's text; how often an option is given, and with what, in our words.
std::string textOf(const CLI::ParseError& error) {
  const std::string text = error.what(), option = text.substr(0, text.find(": ") + 2);
  if (error.get_name() == "ArgumentMismatch" && option.starts_with("--"))
    return option + (text.ends_with("missing") ? "its value is missing" : "given more than once");
  return text.substr(0, text.find('\n'));
}

struct HelpOptions {
  const CLI::App* program = nullptr;
  std::string command;
  bool json = false;
};

int runHelp(const HelpOptions& options) {
  const CLI::App& program = *options.program;
  if (options.json && options.command.empty()) throw UsageError("help --json: of which command?");
  if (options.command.empty()) {
    // Not help(), which is that of the command which runs.
    print(fitted(program.get_formatter()->make_help(&program, program.get_name(),
                                                    CLI::AppFormatMode::Normal)));
    return 0;
  }
  for (const CLI::App* const command : program.get_subcommands({}))
    if (command->get_name() == options.command) {
      const std::string keys = options.json ? jsonKeys(options.command) : "";
      if (options.json && keys.empty()) throw UsageError(options.command + " prints no JSON");
      print(options.json ? keys : fitted(command->help(program.get_name())));
      return 0;
    }
  throw UsageError(unknown(program, nullptr, options.command));
}

}  // namespace

std::string whatIsWrong(const CLI::App& program, const CLI::ParseError& error) {
  const auto commands = program.get_subcommands();
  const CLI::App* const command = commands.empty() ? nullptr : commands.front();
  const std::vector<std::string> rest = program.remaining(true);
  const std::string what = rest.empty() ? textOf(error) : unknown(program, command, rest.front());
  return what + (what.ends_with('?') ? "" : ";") + " see bgpcomm" +
         (command ? ' ' + command->get_name() : "") + " --help";
}

std::string fitted(const std::string& help) {
  if (lineColumns() >= 80) return help;
  constexpr std::size_t column = 30;  // of descriptions, behind the names of options
  std::string out, first, text;
  std::size_t margin = 0;
  const auto begin = [&](const std::string& itsFirst, const std::string& itsText) {
    if (!first.empty() || !text.empty()) out += hanging(first, text, margin);
    margin = itsFirst.size();
    first = itsFirst;
    text = itsText;
  };
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) {
    const std::string name = line.substr(0, column), rest = line.substr(name.size());
    const bool isText = !line.empty() && line[0] != ' ' && !line.starts_with("Example:");
    if (isText && margin == 0 && !text.empty() && !line.starts_with("Usage:"))
      text += ' ' + line;
    else if (isText)
      begin("", line);
    else if (name == std::string(column, ' ') && margin == column)
      text += ' ' + rest;
    else if (name.starts_with("  ") && !name.starts_with("   ") && name.ends_with(' '))
      begin(name, rest);
    else {
      begin("", "");
      if (name == std::string(column, ' '))
        begin(name, rest);
      else
        out += line + '\n';
    }
  }
  begin("", "");
  return out;
}

void addHelp(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"help", "Print the help of the program, or of a command",
                  "Example: bgpcomm help paths\n         bgpcomm help --json paths"},
                 exitCode, runHelp);
  options.program = &app;
  std::vector<std::string> names;
  for (const CLI::App* const one : app.get_subcommands({})) names.push_back(one->get_name());
  takesOneOf(command.add_option("COMMAND", options.command, "Its name")->type_name(""), names);
  command.add_flag("--json", options.json, "The keys of its JSON, each explained");
}

}  // namespace bgpcomm

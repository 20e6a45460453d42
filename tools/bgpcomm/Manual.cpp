// All help once more, as a manual page and for the shells that complete words.
#include <algorithm>

#include "Commands.h"
#include "JsonHelp.h"
#include "Meant.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

using Options = std::vector<CLI::Option*>;

/// An option's names as they are typed, the short ones first.
std::vector<std::string> namesOf(CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back('-' + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}
/// The name of its value in the help, or the positional's own.
std::string valueName(CLI::Option& option) {
  if (option.get_positional()) return option.get_name(true);
  return option.get_option_text().empty() ? option.get_type_name() : option.get_option_text();
}

bool takesValue(CLI::Option& option) { return option.get_items_expected_max() > 0; }

Options namedOptions(CLI::App& command) {
  return command.get_options([](CLI::Option* option) { return option->nonpositional(); });
}
Options positionals(CLI::App& command) {
  return command.get_options([](CLI::Option* option) { return option->get_positional(); });
}

/// Descriptions are broken into lines for 80 columns.
std::string oneLine(std::string text) {
  std::ranges::replace(text, '\n', ' ');
  return text;
}

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
    text.replace(at, from.size(), to);
}

std::string joined(const std::vector<std::string>& words, std::string_view between) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : std::string(between)) + word;
  return text;
}

// -- The manual page ------------------------------------------------------------------------------

/// Text that troff prints as it stands: man(7).
std::string plain(std::string text) {
  replaceAll(text, "\\", "\\e");
  replaceAll(text, "-", "\\-");
  replaceAll(text, "\n.", "\n\\&.");
  replaceAll(text, "\n'", "\n\\&'");
  if (text.starts_with('.') || text.starts_with('\'')) text.insert(0, "\\&");
  return text;
}

void printOptions(const Options& options) {
  for (CLI::Option* const option : options) {
    print(".TP\n");
    if (option->nonpositional()) print("\\fB" + plain(joined(namesOf(*option), ", ")) + "\\fR");
    if (option->nonpositional() && takesValue(*option)) print(" ");
    if (takesValue(*option)) print("\\fI" + plain(valueName(*option)) + "\\fR");
    print('\n' + plain(oneLine(option->get_description())) + '\n');
  }
}

/// Paragraphs are parted by empty lines; one that begins with a blank keeps its lines.
void printParagraphs(std::string text) {
  for (text += "\n\n"; !text.empty();) {
    const std::size_t end = text.find("\n\n");
    const std::string paragraph = text.substr(0, end);
    text.erase(0, std::min(text.size(), text.find_first_not_of('\n', end)));
    const bool keepsLines = paragraph.find("\n ") != paragraph.npos || paragraph.starts_with(' ');
    if (!paragraph.empty())
      print(".PP\n" + (keepsLines ? ".nf\n" + plain(paragraph) + "\n.fi" : plain(paragraph)) +
            '\n');
  }
}

std::string synopsis(CLI::App& program, CLI::App& command) {
  std::string text = ".B " + plain(program.get_name() + ' ' + command.get_name()) + "\n[OPTIONS]";
  for (CLI::Option* const option : positionals(command)) {
    const std::string name =
        option->get_name(true) + (option->get_items_expected_max() > 1 ? "..." : "");
    text += option->get_required() ? ' ' + name : " [" + name + ']';
  }
  return text + '\n';
}

void printKeys(const std::string& command) {
  const auto json = explainedKeys(command);
  if (!json) return;
  print(".SS " + plain(json->title) + '\n' + plain(json->description) + '\n');
  std::size_t level = 0;
  const auto goTo = [&level](std::size_t wanted) {
    for (; level < wanted; ++level) print(".RS\n");
    for (; level > wanted; --level) print(".RE\n");
  };
  for (const JsonKeys::Key& key : json->keys) {
    goTo(key.level);
    print(".TP\n\\fB" + plain(key.name) + "\\fR\n" + plain(key.says) + '\n');
  }
  goTo(0);
}

void printManual(CLI::App& program) {
  const std::string name = program.get_name();
  print(".TH BGPCOMM 1 \"\" \"" + name + ' ' + BGPCOMM_VERSION +
        "\" \"User Commands\"\n.SH NAME\n" + name +
        " \\- BGP communities in MRT dumps\n.SH SYNOPSIS\n.B " + name +
        "\n[OPTIONS] COMMAND [ARGUMENT...]\n.SH DESCRIPTION\n" + plain(program.get_description()) +
        "\n.PP\nOptions of the program stand before or behind the command.\n.SH OPTIONS\n");
  printOptions(namedOptions(program));
  print(".SH COMMANDS\n");
  for (CLI::App* const command : program.get_subcommands({})) {
    print(".SS " + command->get_name() + '\n' + synopsis(program, *command) + ".PP\n" +
          plain(command->get_description()) + ".\n");
    printOptions(positionals(*command));
    printOptions(namedOptions(*command));
    printParagraphs(command->get_footer());
  }
  print(".SH JSON\n");
  for (CLI::App* const command : program.get_subcommands({}))
    if (command->get_name() != "help") printKeys(command->get_name());
  print(".SH NOTES\n");
  printParagraphs(program.get_footer());
}

// -- Shells ---------------------------------------------------------------------------------------

/// The text as one word of a shell.
std::string quoted(std::string text) {
  replaceAll(text, "'", "'\\''");
  return '\'' + text + '\'';
}

constexpr std::string_view bashBefore = R"(# bash completion for bgpcomm
_bgpcomm() {
  local current=$2 before=$3 command= word words= arguments= isValue=
  # The shell parts --option=value at the sign.
  if [[ $before == = ]]; then before=${COMP_WORDS[COMP_CWORD - 2]}; fi
  if [[ $current == = ]]; then current=; fi
)";
constexpr std::string_view bashBehind = R"(  COMPREPLY=()
  if [[ $command != "" && $isValue == "" && $current != -* ]]; then words=$arguments; fi
  # Files, where no word fits.
  if [[ -n $words ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
}
complete -o bashdefault -o default -F _bgpcomm bgpcomm
)";

/// The cases of words that an option takes as its value; others are files, to the shell.
void printBashValues(CLI::App& command, const std::string& before) {
  for (CLI::Option* const option : namedOptions(command))
    for (const std::string& name : namesOf(*option))
      if (takesValue(*option))
        print("    " + before + quoted(' ' + name) +
              ") isValue=1 words=" + quoted(joined(wordsOf(*option), " ")) + " ;;\n");
}

void addOptionNames(CLI::App& command, std::vector<std::string>& names) {
  for (CLI::Option* const option : namedOptions(command))
    for (const std::string& name : namesOf(*option))
      if (std::ranges::find(names, name) == names.end()) names.push_back(name);
}

/// The words that the arguments of a command are, where these are no files.
std::string argumentsOf(CLI::App& command) {
  std::vector<std::string> words;
  for (CLI::Option* const option : positionals(command))
    std::ranges::copy(wordsOf(*option), std::back_inserter(words));
  return joined(words, " ");
}

void printBash(CLI::App& program) {
  const auto commands = program.get_subcommands({});
  std::vector<std::string> names;
  std::ranges::transform(commands, std::back_inserter(names), &CLI::App::get_name);
  print(std::string(bashBefore) +
        "  for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n    case $word in " +
        joined(names, " | ") +
        ") command=$word && break ;; esac\n  done\n  case \"$command $before\" in\n");
  printBashValues(program, "*");
  for (CLI::App* const command : commands) printBashValues(*command, command->get_name());
  addOptionNames(program, names);
  print("    ' '*) words=" + quoted(joined(names, " ")) + " ;;\n");
  for (CLI::App* const command : commands) {
    names.clear();
    addOptionNames(*command, names);
    addOptionNames(program, names);
    print("    " + command->get_name() + "' '*) words=" + quoted(joined(names, " ")) +
          " arguments=" + quoted(argumentsOf(*command)) + " ;;\n");
  }
  print("  esac\n" + std::string(bashBehind));
}

/// Arguments as _arguments of zsh takes them.
void printZshArguments(CLI::App& command) {
  for (CLI::Option* const option : command.get_options()) {
    std::string text = oneLine(option->get_description());
    for (const char special : std::string_view("\\[]:"))
      replaceAll(text, std::string(1, special), std::string("\\") + special);
    const std::string value =
        ':' + valueName(*option) + ':' +
        (wordsOf(*option).empty() ? "_files" : '(' + joined(wordsOf(*option), " ") + ')');
    if (option->get_positional()) print(" \\\n    " + quoted('*' + value));
    for (const std::string& name : namesOf(*option))
      print(" \\\n    " + quoted(joined({"*", name, takesValue(*option) ? "=[" : "[", text, "]",
                                         takesValue(*option) ? value : ""},
                                        "")));
  }
}

void printZsh(CLI::App& program) {
  print("#compdef bgpcomm\n_bgpcomm() {\n  local state line\n  local -a commands=(");
  for (CLI::App* const command : program.get_subcommands({}))
    print("\n    " + quoted(command->get_name() + ':' + command->get_description()));
  print(")\n  _arguments -C");
  printZshArguments(program);
  print(
      " \\\n    ': :->command' '*:: :->argument'\n  case $state in\n"
      "    command) _describe command commands; return ;;\n    argument) ;;\n    *) return ;;\n  "
      "esac\n  case $words[1] in\n");
  for (CLI::App* const command : program.get_subcommands({})) {
    print("  " + command->get_name() + ") _arguments");
    printZshArguments(*command);
    print(" ;;\n");
  }
  print("  esac\n}\n_bgpcomm \"$@\"\n");
}

struct ManualOptions {
  CLI::App* program = nullptr;
  std::string form;
};

constexpr std::string_view formNames[] = {"man", "bash", "zsh"};

int runManual(const ManualOptions& options) {
  constexpr void (*forms[])(CLI::App&) = {printManual, printBash, printZsh};
  forms[placeAmong(formNames, options.form, "FORM")](*options.program);
  return 0;
}

}  // namespace

void addManual(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"manual", "Print all help as a manual page, or for a shell",
                  "Packages install all three. Without:\n\n"
                  "  bgpcomm manual man | man -l -\n"
                  "  source <(bgpcomm manual bash)\n\n"
                  "Example: bgpcomm manual zsh >~/.zfunc/_bgpcomm"},
                 exitCode, runManual);
  options.program = &app;
  takesOneOf(
      command.add_option("FORM", options.form, "man, bash or zsh")->required()->type_name(""),
      {std::begin(formNames), std::end(formNames)});
}

}  // namespace bgpcomm

#include "Commands.h"

#include <map>
#include <optional>

#include "Descriptions.h"
#include "Meant.h"
#include "Terminal.h"
#include "TextStyle.h"

namespace bgpcomm {
namespace {

/// The words for shells. The parser would show them as the option's type, too.
std::map<const CLI::Option*, std::vector<std::string>>& knownWords() {
  static std::map<const CLI::Option*, std::vector<std::string>> words;
  return words;
}

constexpr std::string_view colourWords[] = {"auto", "always", "never"};

}  // namespace

void takesOneOf(CLI::Option* option, const std::vector<std::string>& words) {
  knownWords()[option] = words;
}

std::vector<std::string> wordsOf(CLI::Option& option) {
  const auto its = knownWords().find(&option);
  return its == knownWords().end() ? std::vector<std::string>() : its->second;
}

void settleTexts(const CLI::App& command) {
  // Objects have descriptions as members of their own, and texts to join on.
  const CLI::Option* const json = command.get_option_no_throw("--json");
  if (json && json->count() > 0) explains() = false;
}

void addTextOptions(CLI::App& command) {
  CLI::Option* const names = command.add_flag_callback(
      "--names", [] { textStyle().names = true; }, "Well-known communities by name (default)");
  command
      .add_flag_callback(
          "--numeric", [] { textStyle().names = false; }, "Standard communities as numbers")
      ->excludes(names);
  takesOneOf(
      command
          .add_option_function<std::string>(
              "--text", [](const std::string& name) { textStyle().asked = readTextForm(name); },
              "canonical (default), policy or show")
          ->option_text("FORM"),
      {std::begin(textFormNames), std::end(textFormNames)});
}

void addTerminalOptions(CLI::App& app) {
  const auto colourIs = [](const std::string& when) {
    constexpr std::optional<bool> choices[] = {std::nullopt, true, false};
    terminalOptions().colour = choices[placeAmong(colourWords, when, "--color")];
  };
  takesOneOf(app.add_option_function<std::string>(
                    "--color", colourIs,
                    "auto (default: on terminals, and where NO_COLOR\nis not set), always or never")
                 ->option_text("WHEN"),
             {std::begin(colourWords), std::end(colourWords)});
  app.add_flag_callback(
      "--no-progress", [] { terminalOptions().progress = false; },
      "No line on terminals that shows what is read");
}

void addJsonLines(CLI::App& command, bool& json) {
  command.add_flag("--json", json, "One JSON object per line");
}

void addFiles(CLI::App& command, std::vector<std::string>& files) {
  command.add_option("FILE", files, "MRT dumps: plain, gz, bz2, xz or zst; - is stdin")
      ->required()
      ->type_name("");
}

}  // namespace bgpcomm

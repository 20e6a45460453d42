#include "Commands.h"

#include "TextStyle.h"

namespace bgpcomm {

void addTextOptions(CLI::App& command) {
  CLI::Option* const names = command.add_flag_callback(
      "--names", [] { textStyle().names = true; }, "Well-known communities by name (default)");
  command
      .add_flag_callback(
          "--numeric", [] { textStyle().names = false; }, "Standard communities as numbers")
      ->excludes(names);
  command
      .add_option_function<std::string>(
          "--text", [](const std::string& name) { textStyle().asked = readTextForm(name); },
          "canonical (default), policy or show")
      ->option_text("FORM");
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

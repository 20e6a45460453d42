#include "Commands.h"

namespace bgpcomm {

void addTextOptions(CLI::App& command, TextOptions& options) {
  CLI::Option* const names =
      command.add_flag("--names", options.names, "Well-known communities by name (default)");
  command.add_flag("--numeric", options.numeric, "All communities as numbers")->excludes(names);
  command.add_flag("--json", options.json, "One JSON object per line");
}

void addFiles(CLI::App& command, std::vector<std::string>& files) {
  command.add_option("FILE", files, "MRT dumps: plain, gz, bz2, xz or zst; - is stdin")
      ->required()
      ->type_name("");
}

}  // namespace bgpcomm

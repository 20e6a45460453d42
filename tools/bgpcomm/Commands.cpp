#include "Commands.h"

namespace bgpcomm {

CLI::App* addCommand(CLI::App& app, const std::string& name, const std::string& description,
                     const std::string& footer) {
  CLI::App* const command = app.add_subcommand(name, description);
  command->footer(footer);
  return command;
}

void addFiles(CLI::App& command, std::vector<std::string>& files) {
  command.add_option("FILE", files, "MRT dumps: plain, gz, bz2, xz or zst; - is stdin")
      ->required()
      ->type_name("");
}

}  // namespace bgpcomm

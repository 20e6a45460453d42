#include "Commands.h"

namespace bgpcomm {

CLI::App* addCommand(CLI::App& app, const std::string& name, const std::string& description,
                     const std::string& example) {
  CLI::App* const command = app.add_subcommand(name, description);
  command->footer("Example: " + example);
  return command;
}

}  // namespace bgpcomm

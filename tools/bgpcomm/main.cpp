// bgpcomm: BGP communities in MRT dumps and raw attributes. See Commands.h for the subcommands.
#include <csignal>
#include <cstdio>

#include "Commands.h"
#include "Terminal.h"

namespace {

/// One line, whatever the parser's message looks like.
int usageError(std::string text) {
  text = text.substr(0, text.find('\n'));
  bgpcomm::printError(text + "; see bgpcomm --help");
  return bgpcomm::exitBadUsage;
}

int run(int argc, char** argv) {
  CLI::App app(
      "BGP communities in MRT routing tables: what is in them, what it means, and whether "
      "it survives the way to the wire and back.",
      "bgpcomm");
  app.set_version_flag("--version", "bgpcomm " BGPCOMM_VERSION);
  app.footer("Example: bgpcomm summary rib.bz2");
  app.require_subcommand(1);
  int exitCode = 0;
  bgpcomm::addSummary(app, exitCode);
  bgpcomm::addPaths(app, exitCode);
  bgpcomm::addVerify(app, exitCode);
  bgpcomm::addDecode(app, exitCode);
  bgpcomm::addDescribe(app, exitCode);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& asked) {
    return app.exit(asked);
  } catch (const CLI::ParseError& error) {
    return usageError(error.what());
  } catch (const bgpcomm::UsageError& error) {
    return usageError(error.what());
  }
  bgpcomm::flushOutput();
  return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
  // A reader that goes away is noticed by the failing write.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    bgpcomm::printError(error.what());
    return bgpcomm::exitBadData;
  }
}

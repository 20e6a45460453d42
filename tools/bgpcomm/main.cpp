// bgpcomm: BGP communities in MRT dumps and raw attributes. See Commands.h for the subcommands.
#include <csignal>
#include <cstdio>

#include "Commands.h"
#include "Terminal.h"

namespace {

int usageError(const std::string& text) {
  bgpcomm::printError(text);
  return bgpcomm::exitBadUsage;
}

/// One line, whatever the parser's message looks like.
std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

int run(int argc, char** argv) {
  CLI::App app("BGP communities in MRT dumps: what they are, what they mean, how much is shared.",
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
    return usageError(firstLine(error.what()) + "; see bgpcomm --help");
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

// bgpcomm: BGP communities in MRT dumps and raw attributes. See Commands.h for the subcommands.
#include <csignal>
#include <sstream>

#include "Commands.h"
#include "Terminal.h"

namespace {

int usageError(const std::string& text) {
  bgpcomm::printError(text);
  return bgpcomm::exitBadUsage;
}

/// One line, whatever the parser's message looks like.
std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

/// In the parser's order, from the last to the first. It would make a list of a file's name like
/// [a,b]; ./[a,b] is the same file.
std::vector<std::string> readArguments(int argc, char** argv) {
  std::vector<std::string> arguments;
  for (int i = argc - 1; i > 0; --i) {
    arguments.emplace_back(argv[i]);
    std::string& one = arguments.back();
    if (one.starts_with('[') && one.ends_with(']')) one.insert(0, "./");
  }
  return arguments;
}

int run(int argc, char** argv) {
  CLI::App app("BGP communities in MRT dumps: what they are, what they mean, how much is shared.",
               "bgpcomm");
  app.set_version_flag("--version", "bgpcomm " BGPCOMM_VERSION);
  app.footer(
      "Exit codes: 0 good, 1 bad data or a failure to read or write, 2 bad usage.\n\n"
      "Example: bgpcomm summary rib.bz2");
  app.require_subcommand(1);
  int exitCode = 0;
  bgpcomm::addSummary(app, exitCode);
  bgpcomm::addPaths(app, exitCode);
  bgpcomm::addVerify(app, exitCode);
  bgpcomm::addDecode(app, exitCode);
  bgpcomm::addSave(app, exitCode);
  bgpcomm::addRestore(app, exitCode);
  bgpcomm::addWatchRt(app, exitCode);
  bgpcomm::addDescribe(app, exitCode);
  try {
    app.parse(readArguments(argc, argv));
  } catch (const CLI::Success& asked) {
    std::ostringstream text;
    exitCode = app.exit(asked, text, text);
    bgpcomm::print(text.str());
  } catch (const CLI::ParseError& error) {
    const bool unknown = app.get_subcommands().empty() && app.remaining_size() > 0;
    const std::string what = unknown ? app.remaining().front() + " is unknown" : error.what();
    return usageError(firstLine(what) + "; see bgpcomm --help");
  } catch (const bgpcomm::UsageError& error) {
    return usageError(error.what());
  }
  bgpcomm::flushOutput();
  return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
  // The write fails when a reader goes away, or when a file becomes too large.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    bgpcomm::printError(error.what());
    return bgpcomm::exitBadData;
  }
}

// bgpcomm: BGP communities in MRT dumps and raw attributes. See Commands.h for the subcommands.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <new>
#include <sstream>

#include "Commands.h"
#include "Help.h"
#include "JsonHelp.h"
#include "Terminal.h"
#include "TextStyle.h"
#include "community/ZoBgpCommunityTextParts.h"

namespace {

/// A file opened later must not get the number of a standard descriptor that was closed: it would
/// be read as standard input, or written over by a message. /dev/null takes the number, opened so
/// that the use that was closed still fails.
void occupyStandardDescriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (::fcntl(descriptor, F_GETFD) < 0 &&
        ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY) != descriptor)
      std::_Exit(bgpcomm::exitBadData);
}

/// Lets a process end with the usual line when memory is missing where no exception may leave, as
/// in a destructor. Any other end stays as it was.
void nameMissingMemory() {
  static const std::terminate_handler usual = std::set_terminate([] {
    try {
      if (std::current_exception()) throw;
    } catch (const std::bad_alloc&) {
      bgpcomm::printOutOfMemory();
      std::_Exit(bgpcomm::exitBadData);
    } catch (...) {
    }
    usual();
  });
}

int usageError(const std::string& text) {
  bgpcomm::printError(text);
  return bgpcomm::exitBadUsage;
}

/// The arguments in the parser's order, from the last to the first. Throws where a value behind `=`
/// is empty: the parser would take the next argument for it. A name like [a,b] becomes ./[a,b], the
/// same file: the parser would make a list of it.
std::vector<std::string> readArguments(int argc, char** argv) {
  std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  bool options = true;
  for (std::string& one : arguments) {
    if (one == "--") options = false;
    if (options && one.starts_with("--") && one.find('=') == one.size() - 1)
      throw CLI::ValidationError(one.substr(0, one.size() - 1), "its value is empty");
    if (one.starts_with('[') && one.ends_with(']')) one.insert(0, "./");
  }
  std::reverse(arguments.begin(), arguments.end());
  return arguments;
}

/// Does the same for values that are arguments of their own, and refuses numbers that the parser
/// would make others of.
void refuseBadValues(CLI::App& command) {
  for (CLI::Option* const option : command.get_options()) {
    if (!option->nonpositional()) continue;
    const bool isNumber = option->get_type_name() == "UINT";
    option->check([isNumber](const std::string& value) -> std::string {
      if (value.empty()) return "its value is empty";
      const bool fits = !isNumber || Routing::Bgp::decimalNumber(value, 64);
      return fits ? "" : '"' + value + "\": expected a decimal number below 2^64";
    });
  }
}

int run(int argc, char** argv) {
  CLI::App app("BGP communities in MRT dumps: what they are, what they mean, how much is shared.",
               "bgpcomm");
  app.set_version_flag("-V,--version", "bgpcomm " BGPCOMM_VERSION);
  app.footer(
      "Exit codes: 0 good, 1 bad data or a failure to read or write, 2 bad usage, 3\n"
      "found by lint --strict. Descriptions in $XDG_CONFIG_HOME/bgpcomm/communities, or\n"
      "in ~/.config/bgpcomm/communities, are always read.\n\n"
      "Example: bgpcomm summary rib.bz2");
  app.require_subcommand(1);
  int exitCode = 0;
  app.parse_complete_callback([] {
    const bgpcomm::TextStyle& style = bgpcomm::textStyle();
    if (!style.kinds && style.asked == bgpcomm::TextForm::canonical)
      throw bgpcomm::UsageError("--core has no canonical texts");
  });
  bgpcomm::addKindOptions(app);  // first: commands take over that they understand these
  bgpcomm::addDescriptionOptions(app);
  bgpcomm::addTerminalOptions(app);
  bgpcomm::addSummary(app, exitCode);
  bgpcomm::addReport(app, exitCode);
  bgpcomm::addPaths(app, exitCode);
  bgpcomm::addValues(app, exitCode);
  bgpcomm::addDiff(app, exitCode);
  bgpcomm::addTop(app, exitCode);
  bgpcomm::addFaults(app, exitCode);
  bgpcomm::addSpread(app, exitCode);
  bgpcomm::addLint(app, exitCode);
  bgpcomm::addVerify(app, exitCode);
  bgpcomm::addDecode(app, exitCode);
  bgpcomm::addSave(app, exitCode);
  bgpcomm::addRestore(app, exitCode);
  bgpcomm::addMerge(app, exitCode);
  bgpcomm::addWatchRt(app, exitCode);
  bgpcomm::addEncode(app, exitCode);
  bgpcomm::addKinds(app, exitCode);
  bgpcomm::addDescribe(app, exitCode);
  bgpcomm::addManual(app, exitCode);
  bgpcomm::addHelp(app, exitCode);  // knows the commands before it
  bgpcomm::nameJsonKeys(app);
  refuseBadValues(app);
  for (CLI::App* const command : app.get_subcommands({})) refuseBadValues(*command);
  try {
    app.parse(readArguments(argc, argv));
  } catch (const CLI::Success& asked) {
    std::ostringstream text;
    exitCode = app.exit(asked, text, text);
    bgpcomm::print(bgpcomm::fitted(text.str()));
  } catch (const CLI::ParseError& error) {
    return usageError(bgpcomm::whatIsWrong(app, error));
  } catch (const bgpcomm::UsageError& error) {
    return usageError(error.what());
  }
  bgpcomm::flushOutput();
  return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
  occupyStandardDescriptors();
  nameMissingMemory();
  std::setlocale(LC_CTYPE, "C.UTF-8");  // for the widths of characters; numbers stay as they are
  // The write fails when a reader goes away, or when a file becomes too large.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    return run(argc, argv);
  } catch (const std::bad_alloc&) {
    bgpcomm::printOutOfMemory();
  } catch (const std::exception& error) {
    bgpcomm::printError(error.what());
  }
  return bgpcomm::exitBadData;
}

#include <algorithm>
#include <system_error>
#include <utility>

#include "Commands.h"
#include "DecodeAttribute.h"
#include "DecodeContent.h"
#include "Errors.h"
#include "Hex.h"
#include "HexText.h"
#include "Lines.h"
#include "Terminal.h"
#include "TextStyle.h"

namespace bgpcomm {
namespace {

struct Options {
  std::vector<std::string> arguments;
  std::string format = "classification,ui";
  bool json = false;
};

std::string excerpt(std::string_view text) {
  constexpr std::size_t shown = 24;
  return std::string(text.substr(0, shown)) + (text.size() > shown ? "..." : "");
}

class Printer {
 public:
  explicit Printer(const Options& options)
      : contents_(readFormat(options.format), options.json), attributes_(options.json) {}

  /// A community, attributes or an UPDATE; `refuse` gets what is wrong with one of the attributes.
  /// Throws DataError when the text is none of these. The form tells which, never the value: an
  /// attribute may happen to have as many octets as a community.
  void print(std::string_view text, const std::string& position, auto refuse) const {
    const bool core = !textStyle().kinds;
    const HexText read = readHexText(text, core);
    if (!read.inOnePiece || !ContentPrinter::isSize(read.octets.size()))
      return attributes_.print(read.octets, core, refuse);
    contents_.print(read.octets);
    if (!core && AttributePrinter::isOne(read.octets))
      printError(position,
                 ": read as a community; with blanks between its octets it would be an "
                 "attribute");
  }

 private:
  ContentPrinter contents_;
  AttributePrinter attributes_;
};

/// Prints one text after the other, and an error line for each that is no community or attribute.
class Decoding {
 public:
  explicit Decoding(const Options& options) : printer_(options) {}

  /// `position` and `number` say in messages where the text stands.
  void decode(std::string_view text, const char* position, U64 number) {
    const std::string where = position + std::to_string(number) + " (" + excerpt(text) + ')';
    try {
      printer_.print(text, where, [&](const std::string& why) { refuse(where, why); });
    } catch (const DataError& error) {
      refuse(where, error.what());
    }
  }

  void decodeLines() try {
    workingOn("standard input");
    constexpr const char* position = "standard input, line ";
    Lines lines;
    while (const std::optional<Lines::Line> line = lines.next()) {
      const std::string_view text = trimmed(line->text);
      if (!line->tooLong && takeDumpLine(text, position, line->number)) continue;
      endDump(position);
      if (line->tooLong)
        refuse(position + std::to_string(line->number),
               "longer than " + std::to_string(Lines::longestLine) + " characters");
      else if (!takeDumpLine(text, position, line->number) && !text.empty())
        decode(text, position, line->number);
    }
    endDump(position);
  } catch (const std::system_error& error) {
    refuse("standard input", error.code().message());
  }

  /// Whether nothing was refused.
  bool good() const { return good_; }

 private:
  /// Adds a line that goes on with the dump, or begins one, whose lines are one text together.
  bool takeDumpLine(std::string_view line, const char* position, U64 number) {
    if (!textStyle().kinds) return false;
    const bool begins = dump_.empty();
    if (!dump_.take(line)) return false;
    if (begins) dumpLine_ = number;
    if (dump_.complete()) endDump(position);
    return true;
  }
  void endDump(const char* position) {
    if (dump_.empty()) return;
    const Dump dump = std::exchange(dump_, {});
    std::string digits;
    try {
      for (const U8 octet : dump.octets()) digits += hex(Octets(&octet, 1)) + ' ';
    } catch (const DataError& error) {
      return refuse(position + std::to_string(dumpLine_), error.what());
    }
    decode(digits, position, dumpLine_);
  }
  void refuse(const std::string& position, const std::string& why) {
    printError(position, ": ", why);
    good_ = false;
  }

  const Printer printer_;
  Dump dump_;
  U64 dumpLine_ = 0;
  bool good_ = true;
};

/// Arguments of one octet each are one attribute together.
std::vector<std::string> joinedOctets(const std::vector<std::string>& arguments) {
  const bool apart = std::all_of(arguments.begin(), arguments.end(),
                                 [](const std::string& one) { return one.size() == 2; });
  if (!apart) return arguments;
  std::string joined;
  for (const std::string& one : arguments) joined += (joined.empty() ? "" : " ") + one;
  return {joined};
}

int runDecode(const Options& options) {
  Decoding decoding(options);
  U64 number = 0;
  for (const std::string& argument : joinedOctets(options.arguments)) {
    ++number;
    if (argument == "-")
      decoding.decodeLines();
    else
      decoding.decode(argument, "argument ", number);
  }
  return decoding.good() ? 0 : exitBadData;
}

}  // namespace

void addDecode(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"decode", "Print communities and attributes given in hex",
                  "8, 16, 24 or 40 digits in a piece are a standard, extended, large or\n"
                  "IPv6-address-specific community. Anything else is one path attribute or more\n"
                  "(flags, type, length, value), or an UPDATE with its header; blanks, commas or\n"
                  "colons may stand between octets, and must where there are as many digits as a\n"
                  "community has. 0x and \\x may stand before octets, offsets before the lines of\n"
                  "a dump. Blank lines of stdin are passed over. With --core, only extended\n"
                  "communities and one attribute. Exit code 1 when anything given is neither;\n"
                  "the rest is printed.\n\n"
                  "Example: bgpcomm decode 0002fde800000064 c00808fde80064ffffff01"},
                 exitCode, runDecode);
  command.add_option("HEX", options.arguments, "What to print; - reads it from stdin, by lines")
      ->required()
      ->type_name("");
  command
      .add_option("--format", options.format,
                  "What policy texts show: default, qualifier,\n"
                  "classification, ui, asdot, weighted, with commas\n"
                  "between, or none (default: classification,ui)")
      ->type_name("FLAGS");
  addTextOptions(command);
  addJsonLines(command, options.json);
}

}  // namespace bgpcomm

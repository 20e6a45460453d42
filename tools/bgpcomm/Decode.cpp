#include <algorithm>
#include <system_error>

#include "Commands.h"
#include "DecodeAttribute.h"
#include "DecodeContent.h"
#include "Errors.h"
#include "Hex.h"
#include "Lines.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

struct Options {
  std::vector<std::string> arguments;
  std::string format = "classification,ui";
  TextOptions text;
};

std::string excerpt(std::string_view text) {
  constexpr std::size_t shown = 24;
  return std::string(text.substr(0, shown)) + (text.size() > shown ? "..." : "");
}

/// The octets of digits in pairs, from a character on; blanks and colons may stand between the
/// pairs. Throws DataError.
std::vector<U8> readHex(std::string_view text, std::size_t from) {
  std::vector<U8> octets;
  octets.reserve(text.size() / 2);
  for (std::size_t i = from; i < text.size();) {
    if (text[i] == ' ' || text[i] == ':') {
      ++i;
      continue;
    }
    const int high = hexDigit(text[i]);
    if (high < 0) throw DataError("no hexadecimal digit at character " + std::to_string(i + 1));
    const int low = i + 1 < text.size() ? hexDigit(text[i + 1]) : -1;
    if (low < 0) throw DataError("half an octet at character " + std::to_string(i + 1));
    octets.push_back(U8(high << 4 | low));
    i += 2;
  }
  return octets;
}

class Printer {
 public:
  explicit Printer(const Options& options)
      : contents_(readFormat(options.format), options.text.json),
        attributes_(!options.text.numeric, options.text.json) {}

  /// A community or an attribute; throws DataError when the text is neither. The form tells which,
  /// never the value: an attribute may happen to have as many octets as a community.
  void print(std::string_view text) const {
    const std::size_t prefix = text.starts_with("0x") || text.starts_with("0X") ? 2 : 0;
    const std::vector<U8> octets = readHex(text, prefix);
    const bool inOnePiece = text.size() == prefix + 2 * octets.size();
    if (inOnePiece && ContentPrinter::isSize(octets.size()))
      contents_.print(octets);
    else
      attributes_.print(octets);
  }

 private:
  ContentPrinter contents_;
  AttributePrinter attributes_;
};

std::string_view trimmed(std::string_view line) {
  constexpr std::string_view blanks = " \t\r";
  const std::size_t start = line.find_first_not_of(blanks);
  if (start == line.npos) return {};
  return line.substr(start, line.find_last_not_of(blanks) + 1 - start);
}

/// Prints one text after the other, and an error line for each that is no community or attribute.
class Decoding {
 public:
  explicit Decoding(const Options& options) : printer_(options) {}

  /// `position` and `number` say in messages where the text stands.
  void decode(std::string_view text, const char* position, U64 number) try {
    printer_.print(text);
  } catch (const DataError& error) {
    refuse(position + std::to_string(number) + " (" + excerpt(text) + ')', error.what());
  }

  void decodeLines() try {
    workingOn("standard input");
    constexpr const char* position = "standard input, line ";
    Lines lines;
    while (const std::optional<Lines::Line> line = lines.next()) {
      if (const std::string_view text = trimmed(line->text); line->tooLong)
        refuse(position + std::to_string(line->number),
               "longer than " + std::to_string(Lines::longestLine) + " characters");
      else if (!text.empty())
        decode(text, position, line->number);
    }
  } catch (const std::system_error& error) {
    refuse("standard input", error.code().message());
  }

  /// Whether nothing was refused.
  bool good() const { return good_; }

 private:
  void refuse(const std::string& position, const std::string& why) {
    printError(position, ": ", why);
    good_ = false;
  }

  const Printer printer_;
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
                  "16 digits in a piece are an extended community, 40 an IPv6-address-specific\n"
                  "one. Anything else is a path attribute: flags, type, length, value; blanks and\n"
                  "colons may stand between its octets, and must where it has as many digits as a\n"
                  "community. 0x may stand before either. Blank lines of stdin are passed over.\n"
                  "Exit code 1 when anything given is neither; the rest is printed.\n\n"
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
  addTextOptions(command, options.text);
}

}  // namespace bgpcomm

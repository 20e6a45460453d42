// The command that turns texts of communities into octets.
#include <map>
#include <system_error>

#include "Commands.h"
#include "Hex.h"
#include "Lines.h"
#include "ListTypes.h"
#include "Terminal.h"
#include "TextStyle.h"
#include "kinds/ZoBgpCommunityReader.h"

namespace bgpcomm {
namespace {

using namespace Routing::Bgp;

struct Options {
  std::vector<std::string> texts;
  unsigned of = 0;
  bool attribute = false;
};

/// Prints octets as the texts come, or gathers them for attributes.
class Encoding {
 public:
  explicit Encoding(const Options& options) : gather_(options.attribute) {
    if (options.of) attribute_ = BgpPathAttrType(options.of);
  }

  /// A community, or several with blanks or commas between.
  void encode(std::string_view text, const std::string& position) {
    const auto read = readAnyCommunities(text, *textStyle().kinds, attribute_);
    if (!read) return refuse(position, read.error.text());
    for (const AnyCommunity& community : *read) take(community);
  }

  void encodeLines() try {
    workingOn("standard input");
    Lines lines;
    while (const std::optional<Lines::Line> line = lines.next()) {
      const std::string position = "standard input, line " + std::to_string(line->number);
      const std::string_view text = trimmed(line->text);
      if (line->tooLong)
        refuse(position, "longer than " + std::to_string(Lines::longestLine) + " characters");
      else if (!text.empty())
        encode(text, position);
    }
  } catch (const std::system_error& error) {
    refuse("standard input", error.code().message());
  }

  /// One attribute for each that the texts belong to.
  void finish() {
    const CommunityTables tables(sharedParser());
    for (const auto& [type, octets] : attributes_) {
      const ListText list = listTypes[type].serialized(tables, octets);
      if (list.fault)
        refuse("the " + std::string(listTypes[type].title) + " communities", list.text);
      else
        print(hex(Routing::Mrt::asOctets(list.text)) + '\n');
    }
  }

  bool good() const { return good_; }

 private:
  void take(const AnyCommunity& community) {
    const CommunityOctets octets(community);
    if (!gather_) return print(hex(octets.all()) + '\n');
    auto& all = attributes_[listTypeOf(U8(attributeOf(community)))];
    all.insert(all.end(), octets.all().begin(), octets.all().end());
  }
  void refuse(const std::string& position, const std::string& why) {
    printError(position, ": ", why);
    good_ = false;
  }

  const bool gather_;
  std::optional<BgpPathAttrType> attribute_;
  std::map<std::size_t, std::vector<U8>> attributes_;  // by list type
  bool good_ = true;
};

int runEncode(const Options& options) {
  if (!textStyle().kinds) throw UsageError("encode: texts cannot be read with --core");
  Encoding encoding(options);
  U64 number = 0;
  for (const std::string& text : options.texts) {
    ++number;
    if (text == "-")
      encoding.encodeLines();
    else
      encoding.encode(text, "argument " + std::to_string(number));
  }
  encoding.finish();
  return encoding.good() ? 0 : exitBadData;
}

}  // namespace

void addEncode(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"encode", "Print the octets of communities in hex",
                  "A line of digits for each community. Texts that other commands print are read,\n"
                  "canonical ones also with blanks or commas between; blank lines of stdin are\n"
                  "passed over. Exit code 1 when a text is none; the rest is printed.\n\n"
                  "Example: bgpcomm encode route-target-as2:65000:100 NO_EXPORT"},
                 exitCode, runEncode);
  command.add_option("TEXT", options.texts, "A community; - reads them from stdin, by lines")
      ->required()
      ->type_name("");
  takesOneOf(command.add_option("--of", options.of, "Only of this attribute: 8, 16, 25 or 32")
                 ->check(CLI::IsMember({8, 16, 25, 32}))
                 ->option_text("ATTRIBUTE"),
             {"8", "16", "25", "32"});
  command.add_flag("--attribute", options.attribute,
                   "One attribute of all communities that belong\nto it, in the order of lists");
}

}  // namespace bgpcomm

#include "community/ZoBgpCommunityStrepFormat.h"

#include "community/ZoBgpCommunityText.h"
#include "community/internal/ZoBgpCommunityTextReader.h"

namespace Routing::Bgp {
namespace {

const Mox::Type flagType = Mox::enumType<StrepFormatFlag>();

/// The text between two flags' values; nothing before the first.
constexpr std::string_view separator(const Mox::EnumRow<StrepFormatFlag>& row) {
  return &row == Mox::enumTableOf<StrepFormatFlag>.begin() ? "" : ", ";
}

}  // namespace

void raiseStrepFormatRange() { throw Mox::RangeException("StrepFormat::value > 0x3f not allowed"); }

Mox::String strepFormatText(std::string_view typeName, U32 value) {
  CommText text;
  text << "Value('" << typeName << "', ** {";
  for (const auto& row : Mox::enumTableOf<StrepFormatFlag>)
    text << separator(row) << '\'' << row.name
         << "': " << Mox::valueToStrep((value & row.value) != 0);
  text << "})";
  return text.str();
}

U32 readStrepFormat(std::string_view typeName, std::string_view text) {
  TextReader reader(text);
  reader.literal("Value('");
  reader.literal(typeName);
  reader.literal("', ** {");
  U32 value = 0;
  for (const auto& row : Mox::enumTableOf<StrepFormatFlag>) {
    reader.literal(separator(row));
    reader.literal("'");
    reader.literal(row.name);
    reader.literal("': ");
    if (reader.boolean()) value |= row.value;
  }
  reader.literal("})");
  reader.end();
  return value;
}

}  // namespace Routing::Bgp

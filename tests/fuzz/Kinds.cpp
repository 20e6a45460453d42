// Rows of kinds from outside: any JSON is refused with a message or is a table, by which each value
// has one text and each text one value.
#include "Fuzzing.h"
#include "Mox/Exception.h"
#include "kinds/ZoBgpKindText.h"
#include "tools/bgpcomm/Errors.h"
#include "tools/bgpcomm/KindJson.h"

// Values of the row with all kinds of bits.
static void requireTexts(const Kind& kind, const KindTable& table) {
  for (const U64 seed : {0x0ULL, ~0x0ULL, 0x0102040810204081ULL, 0x9e3779b97f4a7c15ULL}) {
    std::vector<U8> octets(kind.octets());
    for (std::size_t i = 0; i < octets.size(); ++i) octets[i] = U8(seed >> i % 8 * 8);
    octets[0] = *kind.type;
    octets[1] = *kind.subtype;
    const auto community = communityOf(kind.attribute, octets);
    const auto parsed = parseCanonical(canonicalText(community, table), table);
    require(parsed && *parsed == community);
  }
}

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const auto file = bgpcomm::readKindsText(text, "file");
    const KindTable table = KindTable::builtIn().with(file->kinds, file);
    for (const Kind& kind : file->kinds) requireTexts(kind, table);
  } catch (const bgpcomm::DataError&) {
  } catch (const Mox::RangeException&) {
  }
  return 0;
}

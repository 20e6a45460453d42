#include "Orv/MaybeU63.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

#include "Mox/Exception.h"

namespace Orv {
namespace {

TEST(MaybeU63, IsNoneOrANumberInTextAndWord) {
  EXPECT_EQ(MaybeU63().word(), 0x8000000000000000u);
  const std::pair<MaybeU63, const char*> values[] = {
      {MaybeU63(), "-"},
      {MaybeU63(0), "0"},
      {MaybeU63(0x100000000), "4294967296"},
      {MaybeU63(0x7FFFFFFFFFFFFFFF), "9223372036854775807"}};
  for (const auto& [value, text] : values) {
    std::ostringstream stream;
    stream << std::setw(30) << std::hex << value;
    EXPECT_EQ(stream.str(), text);
    for (MaybeU63 read : {MaybeU63(), MaybeU63(7)}) {
      sequenceToValue(text, read);
      EXPECT_EQ(read, value);
    }
  }
}

TEST(MaybeU63, RefusesWhatItCannotHold) {
  EXPECT_THROW(MaybeU63(0x8000000000000000), Mox::RangeException);
  MaybeU63 value(7);
  for (const char* text : {"9223372036854775808", "18446744073709551616"})
    EXPECT_THROW(sequenceToValue(text, value), Mox::RangeException) << text;
  for (const char* text : {"", "--", "-1", "- ", "0x1", "1 "})
    EXPECT_THROW(sequenceToValue(text, value), Mox::ParseException) << text;
  EXPECT_EQ(value, MaybeU63(7));
}

}  // namespace
}  // namespace Orv

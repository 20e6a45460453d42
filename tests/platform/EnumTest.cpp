#include "Mox/Enum.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

#include "Mox/Exception.h"

namespace {

// Neither values nor names in order, the largest value, and a name that is no member.
enum Fruit : Mox::U32 { fruitPear = 9, fruitApple = 2, fruitFig = 0xFFFFFFFF, fruitUnknown = 256 };

consteval auto enumTable(Fruit) {
  return Mox::enumRows<Fruit>("Test::Fruit", {{fruitPear, "fruitPear"},
                                              {fruitApple, "fruitApple"},
                                              {fruitFig, "fruitFig"},
                                              {fruitUnknown, "fruitUnknown", false}});
}
constexpr Mox::EnumInstance<Fruit> FruitInstance{};
const Mox::Type fruitType = Mox::enumType<Fruit>();

using Mox::operator<<;
using Mox::sequenceToValue;

struct Case {
  Mox::U32 value;
  const char* text;
  bool named, member;
};

TEST(Enum, NamesAndNumbersConvertBothWays) {
  const Case cases[] = {{2, "fruitApple", true, true},
                        {9, "fruitPear", true, true},
                        {0xFFFFFFFF, "fruitFig", true, true},
                        {256, "fruitUnknown", true, false},
                        {0, "0", false, false},
                        {3, "3", false, false},
                        {0xFFFFFFFE, "4294967294", false, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const Fruit value = Fruit(c.value);
    std::ostringstream stream;
    stream << std::setw(20) << std::hex << std::showbase << value;
    EXPECT_EQ(stream.str(), c.text);
    EXPECT_EQ(Mox::valueToStrep(value), c.text);
    EXPECT_EQ(Mox::isEnumMember(value), c.member);

    Fruit read{};
    sequenceToValue(c.text, read);
    EXPECT_EQ(read, value);
    if (c.member)
      EXPECT_EQ(FruitInstance(c.value), value);
    else
      EXPECT_THROW(FruitInstance(c.value), Mox::RangeException);
    if (c.named)
      EXPECT_EQ(FruitInstance(c.text), value);
    else
      EXPECT_THROW(FruitInstance(c.text), Mox::RangeException);
  }
}

TEST(Enum, ReadsExactNamesOnly) {
  for (const char* text : {"", "fruitapple", "fruitApple ", "fruitApp", "-1", "+9", " 9", "9x"}) {
    Fruit value = fruitPear;
    EXPECT_THROW(sequenceToValue(text, value), Mox::ParseException) << text;
    EXPECT_THROW(FruitInstance(text), Mox::RangeException) << text;
    EXPECT_EQ(value, fruitPear);
  }
  Fruit value = fruitPear;
  EXPECT_THROW(sequenceToValue("4294967296", value), Mox::RangeException);
  try {
    sequenceToValue("12x", value);
    FAIL();
  } catch (const Mox::ParseException& error) {
    EXPECT_EQ(error.offset(), 2u);
  }
}

TEST(Enum, IsInTheRegistryInTheOrderOfItsRows) {
  const Mox::Type* type = Mox::Type::find("Test::Fruit");
  ASSERT_TRUE(type);
  std::ostringstream all;
  for (const Mox::Enumerator& e : type->enumerators())
    all << e.name << "=" << e.value << (e.member ? " " : "! ");
  EXPECT_EQ(all.str(), "fruitPear=9 fruitApple=2 fruitFig=4294967295 fruitUnknown=256! ");
}

}  // namespace

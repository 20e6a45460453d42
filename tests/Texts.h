// Texts of values, checked in all directions.
#pragma once

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

/// Checks that `text` is the value's, also on a stream of any format, and that it is read back into
/// `read`, another value.
template <class Value>
void expectText(const Value& value, std::string_view text, Value read = {}) {
  std::ostringstream stream;
  stream << std::setw(60) << std::hex << std::showbase << std::uppercase << value;
  EXPECT_EQ(stream.str(), text);
  EXPECT_EQ(valueToStrep(value), text);
  sequenceToValue(text, read);
  EXPECT_EQ(read, value) << text;
}

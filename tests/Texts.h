// Texts of values, checked in all directions.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <iomanip>
#include <sstream>

#include "Mox/Exception.h"
#include "Mox/Trace.h"

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

/// The values in a row with blanks between them, for comparing in one go what belongs together.
/// REQUIRES: they are found in any order.
std::string row(const auto&... values) {
  std::ostringstream text;
  const char* blank = "";
  ((text << std::exchange(blank, " ") << values), ...);
  return text.str();
}

/// The message of the error that `act` raises, after its class or place.
inline std::string raised(const std::function<void()>& act) try {
  act();
  return "nothing";
} catch (const Mox::RangeException& error) {
  return std::string("range: ") + error.what();
} catch (const Mox::NotDeletableException& error) {
  return std::string("not deletable: ") + error.what();
} catch (const Mox::ParseException& error) {
  return "at " + std::to_string(error.offset()) + ": " + error.what();
} catch (const std::exception& error) {
  return error.what();
}

/// The same, of a mutator `Class::attribute` that is given null.
inline std::string nullRefused(const std::string& name) {
  return "range: null _" + name.substr(name.find("::") + 2) +
         " parameter to mutator for Routing::Bgp::" + name + " not allowed\"";
}

/// The lines that are traced while `act` runs at the level, each behind its own.
inline std::string traced(Mox::U32 level, const std::function<void()>& act) {
  static std::string lines;
  lines.clear();
  Mox::traceSinkIs(
      [](Mox::U32 its, auto line) { (lines += char('0' + its)).append(line) += '\n'; });
  Mox::traceLevel = level;
  act();
  Mox::traceLevel = 0;
  Mox::traceSinkIs(nullptr);
  return lines;
}

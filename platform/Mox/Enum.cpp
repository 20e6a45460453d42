#include "Mox/Enum.h"

#include "Mox/Exception.h"

namespace Mox::detail {
namespace {

String noSuchName(std::string_view enumeration, std::string_view name) {
  return "no enumerator of " + String(enumeration) + " is named \"" + String(name) + "\"";
}

}  // namespace

U32 readEnumNumber(std::string_view enumeration, std::string_view text) {
  const bool number = !text.empty() && text[0] >= '0' && text[0] <= '9';
  if (!number) throw ParseException(noSuchName(enumeration, text), 0);
  U32 value = 0;
  sequenceToValue(text, value);
  return value;
}

void raiseNoEnumerator(std::string_view enumeration, U32 value) {
  throw RangeException("no member of " + String(enumeration) + " has the value " +
                       std::to_string(value));
}

void raiseNoEnumerator(std::string_view enumeration, std::string_view name) {
  throw RangeException(noSuchName(enumeration, name));
}

}  // namespace Mox::detail

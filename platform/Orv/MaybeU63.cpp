#include "Orv/MaybeU63.h"

#include "Mox/Exception.h"

namespace Orv {

MaybeU63::MaybeU63(U64 number) : word_(number) {
  if (isUnspecified()) throw Mox::RangeException("number too large: " + std::to_string(number));
}

Mox::String valueToStrep(const MaybeU63& value) {
  return value.isUnspecified() ? "-" : std::to_string(value.word());
}

std::ostream& operator<<(std::ostream& stream, const MaybeU63& value) {
  return Mox::writeText(stream, valueToStrep(value));
}

void sequenceToValue(std::string_view text, MaybeU63& value) {
  if (text == "-") {
    value = MaybeU63();
    return;
  }
  U64 number = 0;
  Mox::sequenceToValue(text, number);
  value = MaybeU63(number);
}

}  // namespace Orv

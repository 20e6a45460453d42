#include "Zonet/AutonomousSystem.h"

#include <charconv>

namespace Zonet {

char* AutonomousSystem::toChars(char* at, bool asdot) const {
  if (!asdot || number_ <= 0xFFFF) return std::to_chars(at, at + 10, number_).ptr;
  at = std::to_chars(at, at + 5, number_ >> 16).ptr;
  *at++ = '.';
  return std::to_chars(at, at + 5, number_ & 0xFFFF).ptr;
}

Mox::String AutonomousSystem::displayString(bool asdot) const {
  char text[longestText];
  return {text, toChars(text, asdot)};
}

}  // namespace Zonet

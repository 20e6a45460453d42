#include "Zonet/AutonomousSystem.h"

namespace Zonet {

Mox::String AutonomousSystem::displayString(bool asdot) const {
  if (!asdot || number_ <= 0xFFFF) return std::to_string(number_);
  return std::to_string(number_ >> 16) + '.' + std::to_string(number_ & 0xFFFF);
}

}  // namespace Zonet

// Octets of a message as a person writes them.
#pragma once

#include <string>
#include <vector>

#include "Mox/Types.h"

/// The octets of hexadecimal digits; blanks are for the reader.
inline std::vector<Mox::U8> hexOctets(std::string digits) {
  std::erase(digits, ' ');
  std::vector<Mox::U8> octets;
  for (std::size_t i = 0; i < digits.size(); i += 2)
    octets.push_back(Mox::U8(std::stoi(digits.substr(i, 2), nullptr, 16)));
  return octets;
}

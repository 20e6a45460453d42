#pragma once

#include <string>

/// The message of the exception that `act` raises; empty when it raises none of the class.
template <class Exception>
std::string raised(const auto& act) {
  try {
    act();
  } catch (const Exception& exception) {
    return exception.what();
  }
  return {};
}

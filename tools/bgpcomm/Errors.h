// Exit codes, and the exceptions that lead to them.
#pragma once

#include <stdexcept>

namespace bgpcomm {

inline constexpr int exitBadData = 1;
inline constexpr int exitBadUsage = 2;
inline constexpr int exitFound = 3;  ///< by `lint --strict`

/// A value of the command line that is not understood: one error line, exit code 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Data that are not what a command reads: one error line, exit code 1.
class DataError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace bgpcomm

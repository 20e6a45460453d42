// Errors that a caller may catch: bad input from text, reflection or a program's own arguments.
// A broken invariant is not one of them; it is asserted (Mox/Assert.h).
//
// `what()` is the message and nothing else: no file, no prefix, no added punctuation.
#pragma once

#include <stdexcept>

#include "Mox/Types.h"

namespace Mox {

/// The base of all of them.
class Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A value outside what the operation admits.
class RangeException : public Exception {
 public:
  using Exception::Exception;
};

/// A deletion asked of something that always has a value.
class NotDeletableException : public Exception {
 public:
  using Exception::Exception;
};

/// A text that cannot be read; `offset()` says where in it, in octets from its start.
class ParseException : public Exception {
 public:
  /// `offset` is where the text stops being readable.
  ParseException(const String& message, std::size_t offset) : Exception(message), offset_(offset) {}
  /// In octets from the start of the text.
  std::size_t offset() const { return offset_; }

 private:
  std::size_t offset_;
};

}  // namespace Mox

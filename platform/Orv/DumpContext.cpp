#include "Orv/DumpContext.h"

#include <cstdio>

namespace Orv {

const Mox::Type DumpContext::type{"Orv::DumpContext", &Mox::PtrInterface::type, {}};

void DumpContext::append(const char* format, va_list arguments) const {
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  if (length > 0) {
    const std::size_t start = text_.size();
    text_.resize(start + std::size_t(length) + 1);
    std::vsnprintf(text_.data() + start, std::size_t(length) + 1, format, again);
    text_.pop_back();  // the terminator
  }
  va_end(again);
}

void DumpContext::printf(const char* format, ...) const {
  va_list arguments;
  va_start(arguments, format);
  append(format, arguments);
  va_end(arguments);
}

void DumpContext::line(U32 indent, const char* format, ...) const {
  text_.append(indent, ' ');
  va_list arguments;
  va_start(arguments, format);
  append(format, arguments);
  va_end(arguments);
}

}  // namespace Orv

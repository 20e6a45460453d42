// Where dumps are written: printf-like lines, and children at a deeper indent.
//
//   Mox::Ptr<Orv::DumpContext> context = Mox::makeNew<Orv::DumpContext>();
//   context->line(4, "members: %u\n", 3u);
//   context->text()   // "    members: 3\n"
//
// A context belongs to one thread. Its functions are const because dumps hand it on as such.
#pragma once

#include <cstdarg>

#include "Mox/Entity.h"

namespace Orv {

class DumpContext final : public Mox::Entity<DumpContext, Mox::PtrInterface> {
 public:
  static const Mox::Type type;

  /// Appends formatted text, of any length.
  void printf(const char* format, ...) const __attribute__((format(printf, 2, 3)));
  /// `indent` spaces (none for 0, where a "%*c" would still print one), then the formatted text.
  void line(U32 indent, const char* format, ...) const __attribute__((format(printf, 3, 4)));
  /// Dumps a part of what is being dumped; a null one as "NULL".
  template <class T>
  void child(const T* object, U32 indent) const {
    if (object)
      object->dumpState(Mox::Ptr<const DumpContext>(this), indent);
    else
      line(indent, "NULL\n");
  }

  /// All that was written so far.
  const Mox::String& text() const { return text_; }

 private:
  void append(const char* format, va_list arguments) const;

  mutable Mox::String text_;  // a dump goes through pointers to const
};

}  // namespace Orv

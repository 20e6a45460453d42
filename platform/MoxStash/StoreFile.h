// A store's file as the operating system has it. Every error is a StoreException that names it.
#pragma once

#include <span>

#include "MoxStash/StoreManager.h"

namespace MoxStash {

/// A regular file that is open for reading, from its start on.
class StoreFile {
 public:
  /// Opens it. Refuses what is no regular file.
  explicit StoreFile(const Mox::String& name);
  StoreFile(const StoreFile&) = delete;
  StoreFile& operator=(const StoreFile&) = delete;
  ~StoreFile();

  /// Octets that it had when it was opened.
  U64 size() const { return size_; }
  /// Reads the next `size` octets; an error when there are fewer.
  void read(char* to, std::size_t size);

 private:
  const Mox::String name_;
  int descriptor_;
  U64 size_;
};

/// StoreException when a store may not take the place of the file of this name: it is neither a
/// store nor empty, or is not a regular file. A name without a file is good.
void checkReplaceable(const Mox::String& name);

/// Asked while a file is written; true gives the writing up.
using StopWriting = bool (*)();

/// Throws when the file of this name may not be replaced.
using CheckFile = void (*)(const Mox::String& name);

/// Writes a file of these pieces, which replaces the one of this name if there is one and `check`
/// lets it. A reader, also after a crash of the machine, sees the old file or the new one, whole. A
/// failure leaves the old one, and nothing beside it. A symbolic link of that name is replaced
/// itself. `stop` is asked at least once a mebibyte, and once more before the old file is replaced;
/// so is `check`.
void replaceFile(const Mox::String& name, CheckFile check, std::span<const std::string_view> pieces,
                 StopWriting stop = nullptr);

}  // namespace MoxStash

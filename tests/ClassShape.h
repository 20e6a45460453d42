// The shape of a class, as other code relies on it: its registered names and its virtual slots.
#pragma once

#include <cstring>

#include "Mox/Type.h"

/// Names and values of what a class registers, in order; operations have no value.
inline std::string registered(const Mox::Type& type, const void* object) {
  std::string text;
  for (const Mox::Attribute& attribute : type.attributes())
    text += attribute.name + (attribute.read ? "=" + attribute.read(object) + ' ' : " ");
  return text;
}

/// The slot of a virtual operation, from 1 on: a pointer to such a member holds the slot's offset.
inline std::size_t slotOf(auto member) {
  std::size_t word = 0;
  std::memcpy(&word, &member, sizeof word);
  return word / sizeof(void*) + 1;
}

// Objects with a tail: octets behind the object, in one piece of memory with it.
//
//   auto list = CommList::withTail(Tail{4 * sizeof(U32)});   // an object and room for four values
//   list->tail()                                             // where that room begins
//
// A list that is made ready, as those from the wire are, keeps its elements there: it costs one
// allocation to make and one to free. A list that is built by appending has no tail.
#pragma once

#include <new>
#include <utility>

#include "Mox/Entity.h"

namespace Routing::Bgp {

/// How many octets stand behind an object.
struct Tail {
  std::size_t octets = 0;
};

/// As Mox::Entity, for classes whose objects may have a tail. `Object` says how long its own tail
/// is: `tailOctets()`, the same from construction to destruction.
template <class Object, class Base>
class TailEntity : public Mox::Entity<Object, Base> {
 public:
  using Mox::Entity<Object, Base>::Entity;

  /// A new object with its notifications on. The tail is raw memory.
  static Mox::Ptr<Object> withTail(Tail tail, auto&&... arguments) {
    return Mox::Ptr<Object>::ofNew(new (tail)
                                       Object(std::forward<decltype(arguments)>(arguments)...));
  }
  /// The first octet behind the object.
  void* tail() { return static_cast<Object*>(this) + 1; }

  static void* operator new(std::size_t octets) { return allocate(octets); }
  static void* operator new(std::size_t octets, Tail tail) {
    return allocate(octets + tail.octets);
  }
  static void operator delete(TailEntity* base, std::destroying_delete_t) {
    auto* const object = static_cast<Object*>(base);
    const std::size_t octets = sizeof(Object) + object->tailOctets();
    object->~Object();
    Object::type.allocation().deallocate(object, octets);
  }
  // For constructors that throw.
  static void operator delete(void* memory, std::size_t octets) noexcept {
    Object::type.allocation().deallocate(memory, octets);
  }
  static void operator delete(void* memory, Tail tail) noexcept {
    Object::type.allocation().deallocate(memory, sizeof(Object) + tail.octets);
  }

 private:
  static void* allocate(std::size_t octets) { return Object::type.allocation().allocate(octets); }
};

}  // namespace Routing::Bgp

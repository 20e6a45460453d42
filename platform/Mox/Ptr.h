// `Mox::Ptr<T>` owns one reference to a counted object, or is null. It is one pointer wide; copying
// costs one atomic increment, moving costs nothing.
//
//   Mox::Ptr<Thing> a = Mox::makeNew<Thing>();
//   Mox::PtrConst<Thing> b = a;                   // shares it
//   Thing* const owed = a.release();              // a is null, the caller owes a reference
//   a = Mox::Ptr<Thing>::adopt(owed);             // which is taken over
//
// Threads: pointers to one object may be copied and dropped on any thread; one pointer belongs to
// one thread at a time.
#pragma once

#include <compare>
#include <concepts>
#include <ostream>
#include <utility>

#include "Mox/PtrInterface.h"
#include "Mox/Text.h"

namespace Mox {

/// `From*` may become `To*` without changing how the object is counted. A class need not be
/// complete where a pointer to it becomes one to its const: only different classes are looked into.
template <class From, class To>
concept CountedAs = std::same_as<From, To> || std::same_as<const From, To> ||(
    std::convertible_to<From*, To*>&& std::same_as<typename From::Counting, typename To::Counting>);

/// The class does no more than the base when its notifications are turned on.
template <class T>
concept TurnsOnPlainly = std::same_as<decltype(&T::hasNotificationActiveIs),
                                      decltype(&PtrInterface::hasNotificationActiveIs)>;

template <class T>
class Ptr {
 public:
  using Object = T;

  Ptr() = default;
  /// Null.
  Ptr(std::nullptr_t) {}
  /// Takes a reference of its own.
  explicit Ptr(T* object) : object_(object) {
    if (object_) object_->referencesInc();
  }
  /// Shares the object.
  Ptr(const Ptr& other) : Ptr(other.object_) {}
  /// Takes the reference over; `other` is null afterwards.
  Ptr(Ptr&& other) noexcept : object_(other.release()) {}
  /// Shares the object as one of a base class, or as one that is only read.
  template <class U>
  requires CountedAs<U, T> Ptr(const Ptr<U>& other) : Ptr(static_cast<T*>(other.get())) {}
  /// The same, and takes the reference over.
  template <class U>
  requires CountedAs<U, T> Ptr(Ptr<U>&& other)
  noexcept : object_(other.release()) {}
  /// Lets go of what it had.
  Ptr& operator=(Ptr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ptr() {
    if (object_) object_->referencesDec();
  }

  /// Takes over a reference that the caller owns; counts nothing.
  static Ptr adopt(T* object) {
    Ptr result;
    result.object_ = object;
    return result;
  }
  /// The first pointer to a new object, with the object's notifications on. REQUIRES: the object is
  /// exactly a `T`, and nobody else knows it yet.
  static Ptr ofNew(T* object) {
    if constexpr (TurnsOnPlainly<T>) {
      object->firstReferenceInc();
      return adopt(object);
    }
    Ptr result(object);
    object->hasNotificationActiveIs(true);
    return result;
  }
  /// Gives the reference to the caller; null afterwards.
  [[nodiscard]] T* release() { return std::exchange(object_, nullptr); }

  /// Owns nothing: valid as long as somebody holds the object.
  T* get() const { return object_; }
  /// REQUIRES: not null.
  T& operator*() const { return *object_; }
  /// REQUIRES: not null.
  T* operator->() const { return object_; }
  explicit operator bool() const { return object_; }

  /// Whether both are the same object, or null.
  friend bool operator==(const Ptr& a, const Ptr& b) { return a.object_ == b.object_; }
  /// The order of addresses.
  friend auto operator<=>(const Ptr& a, const Ptr& b) { return a.object_ <=> b.object_; }
  /// Whether it is null.
  friend bool operator==(const Ptr& a, std::nullptr_t) { return !a.object_; }

 private:
  T* object_ = nullptr;
};

/// A pointer through which the object is not changed.
template <class T>
using PtrConst = Ptr<const T>;
/// Pointers that own nothing.
template <class T>
using RawPtr = T*;
template <class T>
using RawPtrConst = const T*;

/// `NULL`, or the address, for classes without an output of their own.
inline std::ostream& operator<<(std::ostream& out, const PtrInterface* object) {
  return writeText(out, valueToStrep(static_cast<const void*>(object)));
}

/// Streams what the object's own output for a raw pointer prints.
template <class T>
std::ostream& operator<<(std::ostream& out, const Ptr<T>& pointer) {
  return out << pointer.get();
}

/// A new object with its notifications on: what every creator and factory returns.
template <class T, class... Args>
Ptr<T> makeNew(Args&&... args) {
  return Ptr<T>::ofNew(new T(std::forward<Args>(args)...));
}

/// A pointer of another class to the same object; the reference moves along.
/// REQUIRES: the object is a `T`.
template <class T, class U>
Ptr<T> staticCast(Ptr<U>&& other) {
  return Ptr<T>::adopt(static_cast<T*>(other.release()));
}

}  // namespace Mox

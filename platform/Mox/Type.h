// Reflection: a registry from a type's qualified name to its attributes.
//
//   const Mox::Type* type = Mox::Type::find("Routing::Bgp::CommList");
//   type->read(list, "commsStringForm")  // "65000:100 65000:200"
//
// A `Type` is a constant of the process, defined in one source file beside its class; it enters
// the registry when its library is loaded and leaves it with the library.
//
// Threads: types may be looked up from any thread; libraries are loaded and unloaded by one.
#pragma once

#include <span>
#include <type_traits>
#include <vector>

#include "Mox/Allocation.h"
#include "Mox/Text.h"
#include "Mox/Types.h"

namespace Mox {

class PtrInterface;

/// A named member of a type: a value, a collection, or an operation that needs arguments.
struct Attribute {
  /// A `value` and a `collection` are read as they are; an `operation` needs arguments.
  enum class Form { value, collection, operation };
  /// The attribute's text; `object` is of the class that registered it. Null for operations.
  using Reader = String (*)(const void* object);

  String name;
  Form form = Form::operation;
  Reader read = nullptr;
};

/// A name of an enumeration. One that is no member is printed by name and is yet no valid value.
struct Enumerator {
  String name;
  U64 value = 0;
  bool member = true;
};

/// The description of a class or of an enumeration.
class Type {
 public:
  /// A class: `base` is the description of its base class, or null.
  Type(std::string_view name, const Type* base, std::vector<Attribute> attributes);
  /// An enumeration.
  Type(std::string_view name, std::vector<Enumerator> enumerators);
  ~Type();
  Type(const Type&) = delete;
  Type& operator=(const Type&) = delete;

  /// Qualified: `Routing::Bgp::CommList`.
  const String& name() const { return name_; }
  /// Null for the top of a tree, and for enumerations.
  const Type* base() const { return base_; }
  /// Whether this is `other` or derives from it.
  bool isA(const Type& other) const;
  /// Its own, in the order of registration; those of the bases are found through `base()`.
  const std::vector<Attribute>& attributes() const { return attributes_; }
  /// In the order of their rows; empty for a class.
  const std::vector<Enumerator>& enumerators() const { return enumerators_; }
  /// Counts the objects of this class.
  const AllocationTracker& allocation() const { return allocation_; }

  /// The text of an attribute of an object, its bases' included. RangeException when the class has
  /// no readable attribute of that name.
  /// REQUIRES: as the accessor of that name.
  static String read(const PtrInterface& object, std::string_view attribute);

  /// The type of that name, or null; of several, the one that was loaded first.
  static const Type* find(std::string_view name);
  /// All types, by name.
  static std::vector<const Type*> all();

 private:
  String name_;
  const Type* base_ = nullptr;
  std::vector<Attribute> attributes_;
  std::vector<Enumerator> enumerators_;
  AllocationTracker allocation_;
};

// A class writes its rows like this:
//   {attribute<&CommList::empty>("empty"), collection<&CommList::commsStringForm>("comm"),
//    operation("serialize")}

/// The reader of a member function that takes nothing and has a text.
template <auto Member>
struct MemberOf;
template <class C, class R, R (C::*member)() const>
struct MemberOf<member> {
  static String read(const void* object) {
    return valueToStrep((static_cast<const C*>(object)->*member)());
  }
};
template <class C, class R, R (C::*member)() const noexcept>
struct MemberOf<member> {
  static String read(const void* object) {
    return valueToStrep((static_cast<const C*>(object)->*member)());
  }
};

/// The row of a member function that gives a value.
template <auto Member>
Attribute attribute(std::string_view name) {
  return {String(name), Attribute::Form::value, &MemberOf<Member>::read};
}
/// The row of one that gives many, or the text of many.
template <auto Member>
Attribute collection(std::string_view name) {
  return {String(name), Attribute::Form::collection, &MemberOf<Member>::read};
}
/// The row of one that takes arguments: known by name, not read.
inline Attribute operation(std::string_view name) {
  return {String(name), Attribute::Form::operation, nullptr};
}

}  // namespace Mox

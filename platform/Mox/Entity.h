// The members that every concrete class has, written once: `T::Ptr`, `T::PtrConst`, `fwkType()`,
// and memory that is counted under the class's own name.
//
//   class CommList final : public Mox::Entity<CommList, MoxStash::DedupHandle> {
//    public:
//     static const Mox::Type type;   // defined in the source file
//   };
#pragma once

#include "Mox/Ptr.h"
#include "Mox/Type.h"

namespace Mox {

/// `T` is the class that derives from this, `Base` the class that it extends.
template <class T, class Base>
class Entity : public Base {
 public:
  using Ptr = Mox::Ptr<T>;
  using PtrConst = Mox::Ptr<const T>;

  using Base::Base;
  const Type& fwkType() const override { return T::type; }

  static void* operator new(std::size_t octets) { return T::type.allocation().allocate(octets); }
  static void operator delete(void* memory, std::size_t octets) noexcept {
    T::type.allocation().deallocate(memory, octets);
  }
};

}  // namespace Mox

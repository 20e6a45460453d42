#include "Mox/PtrInterface.h"

#include <new>

#include "Mox/Type.h"

namespace Mox {

const Type PtrInterface::type{"Mox::PtrInterface", nullptr, {}};

NotifieeList* PtrInterface::notifieeList() const { return nullptr; }

void PtrInterface::hasNotificationActiveIs(bool active) {
  if (active)
    word_.fetch_or(notificationBit);
  else
    word_.fetch_and(~notificationBit);
}

void PtrInterface::zeroReferencesIs(bool zero) {
  if (!zero) return;
  word_.fetch_or(deletionMark);
  delete this;
}

const Type& PtrInterface::fwkType() const { return type; }

PtrInterface::~PtrInterface() = default;

void* PtrInterface::moxMemAlloc(std::size_t octets) { return ::operator new(octets); }

void PtrInterface::moxMemDealloc(void* memory) noexcept { ::operator delete(memory); }

}  // namespace Mox

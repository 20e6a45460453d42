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
  // Nobody else can reach the object any more: a plain store will do.
  word_.store(word_.load(std::memory_order_relaxed) | deletionMarkBit, std::memory_order_relaxed);
  delete this;
}

void PtrInterface::deletionMarkIs(bool marked) {
  if (marked)
    word_.fetch_or(deletionMarkBit);
  else
    word_.fetch_and(~deletionMarkBit);
}

const Type& PtrInterface::fwkType() const { return type; }

PtrInterface::~PtrInterface() = default;

void* PtrInterface::moxMemAlloc(std::size_t octets) { return ::operator new(octets); }

void PtrInterface::moxMemDealloc(void* memory) noexcept { ::operator delete(memory); }

}  // namespace Mox

#include "Mox/Type.h"

#include <map>
#include <mutex>

#include "Mox/Exception.h"
#include "Mox/PtrInterface.h"

namespace Mox {
namespace {

struct TypeRegistry {
  std::mutex mutex;
  std::map<std::string_view, const Type*> types;  // the first of a name is found

  // Outlives every `Type`, in any order in which libraries are unloaded.
  static TypeRegistry& instance() {
    static TypeRegistry* const registry = new TypeRegistry;
    return *registry;
  }
};

void enter(const Type& type) {
  TypeRegistry& registry = TypeRegistry::instance();
  std::lock_guard guard(registry.mutex);
  registry.types.emplace(type.name(), &type);
}

}  // namespace

Type::Type(std::string_view name, const Type* base, std::vector<Attribute> attributes)
    : name_(name), base_(base), attributes_(std::move(attributes)), allocation_(name_) {
  enter(*this);
}

Type::Type(std::string_view name, std::vector<Enumerator> enumerators)
    : name_(name), enumerators_(std::move(enumerators)), allocation_(name_) {
  enter(*this);
}

Type::~Type() {
  TypeRegistry& registry = TypeRegistry::instance();
  std::lock_guard guard(registry.mutex);
  const auto found = registry.types.find(name_);
  if (found != registry.types.end() && found->second == this) registry.types.erase(found);
}

bool Type::isA(const Type& other) const {
  for (const Type* type = this; type; type = type->base_)
    if (type == &other) return true;
  return false;
}

String Type::read(const PtrInterface& object, std::string_view attribute) {
  // Classes derive singly, so every base begins where the object does.
  for (const Type* type = &object.fwkType(); type; type = type->base_)
    for (const Attribute& candidate : type->attributes_)
      if (candidate.name == attribute && candidate.read) return candidate.read(&object);
  throw RangeException("no readable attribute \"" + String(attribute) + "\" in " +
                       object.fwkType().name());
}

const Type* Type::find(std::string_view name) {
  TypeRegistry& registry = TypeRegistry::instance();
  std::lock_guard guard(registry.mutex);
  const auto found = registry.types.find(name);
  return found == registry.types.end() ? nullptr : found->second;
}

std::vector<const Type*> Type::all() {
  TypeRegistry& registry = TypeRegistry::instance();
  std::lock_guard guard(registry.mutex);
  std::vector<const Type*> all;
  for (const auto& [name, type] : registry.types) all.push_back(type);
  return all;
}

}  // namespace Mox

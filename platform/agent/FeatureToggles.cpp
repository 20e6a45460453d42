#include "agent/FeatureToggles.h"

#include <map>
#include <mutex>

namespace Routing {
namespace {

struct Toggles {
  std::mutex mutex;
  std::map<Mox::String, bool, std::less<>> states;

  // Never destroyed: objects that end with the process may still ask.
  static Toggles& instance() {
    static Toggles* const toggles = new Toggles;
    return *toggles;
  }
};

}  // namespace

bool getToggleState(const char* name, bool defaultValue) {
  Toggles& toggles = Toggles::instance();
  const std::lock_guard guard(toggles.mutex);
  const auto found = toggles.states.find(std::string_view(name));
  return found == toggles.states.end() ? defaultValue : found->second;
}

void featureToggleIs(const char* name, bool on) {
  Toggles& toggles = Toggles::instance();
  const std::lock_guard guard(toggles.mutex);
  toggles.states[name] = on;
}

void featureToggleDel(const char* name) {
  Toggles& toggles = Toggles::instance();
  const std::lock_guard guard(toggles.mutex);
  toggles.states.erase(name);
}

}  // namespace Routing

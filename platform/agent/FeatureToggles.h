// Features that the host switches on or off for the whole process.
//
//   featureToggleIs("RpkiToggle", false);   // by the host, at its start
//   getToggleState("RpkiToggle", true);     // false
//
// A feature that asks once and keeps the answer does not follow later changes.
//
// Threads: may be called from any.
#pragma once

#include "Mox/Types.h"

namespace Routing {

/// The state that the host gave the toggle, or `defaultValue` when it gave none.
bool getToggleState(const char* name, bool defaultValue);

/// Switches the toggle on or off for all that ask from now on.
void featureToggleIs(const char* name, bool on);
/// Forgets the toggle's state: the default holds again.
void featureToggleDel(const char* name);

}  // namespace Routing

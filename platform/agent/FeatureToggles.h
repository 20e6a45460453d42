// Features that the host switches on or off for the whole process.
//
//   featureToggleIs("RpkiToggle", false);   // by the host, at its start
//   getToggleState("RpkiToggle", true);     // false
//
// What a feature's code asks once and keeps does not follow later changes.
//
// Threads: may be called from any.
#pragma once

#include "Mox/Types.h"

namespace Routing {

/// What the host said about the toggle, or `defaultValue` when it said nothing.
bool getToggleState(const char* name, bool defaultValue);

void featureToggleIs(const char* name, bool on);
/// Forgets what was said: the default holds again.
void featureToggleDel(const char* name);

}  // namespace Routing

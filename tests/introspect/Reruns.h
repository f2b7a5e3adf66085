// SPDX-License-Identifier: MIT
// Versions are looked up once in the life of a process, so a test that needs another running system runs this program
// again for it.
#pragma once

#include <string>

namespace introspect {

// Runs the tests that `filter` names in a new process whose system has the given version; true when they pass and at
// least one ran.
bool passesOnSystem(const std::string& version, const std::string& filter);

} // namespace introspect

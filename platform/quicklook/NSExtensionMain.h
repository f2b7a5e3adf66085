// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// The whole of a preview extension's `main`: reads the program's manifest, makes one object of the principal class
// it names, and does what the command line asks (see previewUsage). Gives the exit status: 0 shown, 1 could not be
// read or shown, 2 wrong usage. Errors are one line on standard error. Call on the main thread, after the principal class
// has been registered.
int NSExtensionMain(int argumentCount, char** arguments);

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// The connection to the window system and to the fonts, made once in a process.

enum class DisplayMode {
    window,   // the desktop's window system, or the one that QT_QPA_PLATFORM names
    offscreen // no display: pictures only
};

// Connects. Idempotent: later calls do nothing, whatever their mode. Call first on the main thread, before
// anything that shapes text or paints; what needs fonts calls it itself, off-screen, when nobody did.
// Requires for `window`: displayIsAvailable(), since a display that cannot be opened ends the process.
void startGraphics(DisplayMode mode);

bool graphicsIsStarted();

// Whether startGraphics(DisplayMode::window) would find a display that answers. Connects to its socket and
// hangs up; costs some 50 us on this machine and waits for nothing across a network longer than a second.
bool displayIsAvailable();

} // namespace platform

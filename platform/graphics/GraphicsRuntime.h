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
// For a window it reads the font configuration on a thread of its own, so the earlier the call, the less the
// first text waits.
void startGraphics(DisplayMode mode);

// Closes the connection; call it at the end of main, when every window, font and layout is gone. It hands
// the clipboard's content over to the desktop. A program that leaves it out just ends.
void stopGraphics();

bool graphicsIsStarted();

// Whether startGraphics(DisplayMode::window) would find a display that answers. It connects for real, and
// stays connected until graphics start. Main thread. Under a millisecond for a display of this machine; one
// across a network takes its own time.
bool displayIsAvailable();

} // namespace platform

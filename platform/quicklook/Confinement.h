// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

// The closed door of a process that shows what strangers made: two steps by which it gives up what it does not need,
// for good. Both do what the kernel can and never fail; ZELK_CONFINEMENT=off in the environment or the build option
// ZELK_CONFINEMENT=OFF leave the door open, for debuggers.
struct Confinement {
    // Of the file system rules (Landlock); 0: none.
    int landlockVersion = 0;
    // Whether calls are filtered (seccomp).
    bool filtersCalls = false;

    bool operator==(const Confinement&) const = default;
};

// What confineFiles and confineCalls would reach, without doing it.
Confinement availableConfinement();

// "Landlock 7, seccomp", or "off": for people.
std::string describe(const Confinement& confinement);

// First step, before the process has further threads: from now on nothing can be executed, and no file made, written,
// removed or renamed, outside of `runtimeFolder`; reading stays. An empty folder allows none. Gives the version of
// the rules in force; 0 where the kernel has none.
int confineFiles(const std::string& runtimeFolder);

// Second step, once the window stands, for all threads: no new programs or processes, no sockets but local ones, no
// looking into other processes, no changed attributes of files; and, where the first step had no effect, no writing of
// files at all. Refused calls fail with EPERM or EACCES. Also limits memory to three times of what there is and
// a gigabyte, and open files to 256. Gives whether calls are filtered.
bool confineCalls(int landlockVersion);

} // namespace platform

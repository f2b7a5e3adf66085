// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// What a program may do with the user's photo library. The numbers are the platform's.
enum class PHAuthorizationStatus : long {
    notDetermined = 0, // the user has not been asked yet
    restricted = 1,    // whoever administers the machine forbids it to all programs
    denied = 2,
    authorized = 3,
    limited = 4, // adding, and seeing what the program itself has added
};

// What a program asks for. The numbers are the platform's.
enum class PHAccessLevel : long {
    addOnly = 1,
    readWrite = 2,
};

} // namespace platform

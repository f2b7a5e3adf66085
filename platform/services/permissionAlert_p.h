// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/UserPermission.h"

#include <optional>
#include <string>
#include <vector>

namespace platform {

// What the user may say to a question; the last one refuses.
struct PermissionChoice {
    std::string title;
    UserPermissionStatus status;
};

// Asks for a permission in front of the window that has the keyboard. `answer` hears one choice, or notDetermined when no
// window has the keyboard or the alert went without one. Main thread only.
void askInAlert(const std::string& question, const std::optional<std::string>& reason,
                const std::vector<PermissionChoice>& choices, UserPermission::Answer answer);

// How the program is called in questions.
std::string programName();

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIApplication.h"

#include <string>

namespace zelk {

// The pages of the desktop's settings that matter to a program. Each asks the desktop to open one and does not wait. Main
// thread only.

void openSettingsPage(platform::UIApplication& application);
// The settings page where the desktop has none for a program's notifications.
void openNotificationSettingsPage(platform::UIApplication& application);
// What a program may use is chosen on its settings page: all three open that.
void openCameraPrivacyPage(platform::UIApplication& application);
void openMicrophonePrivacyPage(platform::UIApplication& application);
void openSpeechRecognitionPrivacyPage(platform::UIApplication& application);

// The main bundle's name for people, else the file name of the program.
std::string displayName(platform::UIApplication& application);

} // namespace zelk

// SPDX-License-Identifier: MIT
#include "kit/foundation/applicationPages.h"

#include "kit/foundation/bundleFacts.h"

#include "platform/foundation/ProcessInfo.h"
#include "platform/foundation/URL.h"

namespace zelk {

namespace {

constexpr std::string_view openNotificationSettingsURLString = "app-settings:notifications";

} // namespace

void openSettingsPage(platform::UIApplication& application)
{
    if (auto url = platform::URL::parse(platform::UIApplication::openSettingsURLString))
        application.open(*url);
}

void openNotificationSettingsPage(platform::UIApplication& application)
{
    auto url = platform::URL::parse(openNotificationSettingsURLString);
    if (url && application.canOpenURL(*url))
        application.open(*url);
    else
        openSettingsPage(application);
}

void openCameraPrivacyPage(platform::UIApplication& application)
{
    openSettingsPage(application);
}

void openMicrophonePrivacyPage(platform::UIApplication& application)
{
    openSettingsPage(application);
}

void openSpeechRecognitionPrivacyPage(platform::UIApplication& application)
{
    openSettingsPage(application);
}

std::string displayName(platform::UIApplication&)
{
    return displayName(*platform::Bundle::main(), platform::ProcessInfo::processInfo().processName());
}

} // namespace zelk

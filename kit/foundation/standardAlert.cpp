// SPDX-License-Identifier: MIT
#include "kit/foundation/standardAlert.h"

#include "kit/foundation/CommonLocalizations.h"
#include "kit/foundation/errorClassification.h"
#include "kit/foundation/zelkKitLocalized.h"
#include "platform/foundation/URL.h"
#include "platform/uikit/UIApplication.h"

#include <string>
#include <utility>

namespace zelk {

using namespace platform;

namespace {

Alert dismissable(std::string title, std::string message)
{
    return Alert(Text{std::move(title)}, Text{std::move(message)},
                 Alert::Button::default_(Text{value(CommonLocalizations::dismiss)}));
}

Alert permissionAlert()
{
    auto openSettings = [&application = UIApplication::shared()] {
        if (auto url = URL::parse(UIApplication::openSettingsURLString))
            application.open(*url);
    };
    return Alert(
        Text{zelkKitLocalized("EXPORT_FAILURE_PHOTOS_UNAUTHORIZED_ALERT_TITLE")},
        Text{zelkKitLocalized("EXPORT_FAILURE_PHOTOS_UNAUTHORIZED_ALERT_MESSAGE")},
        Alert::Button::default_(Text{value(CommonLocalizations::openSettings)}, std::move(openSettings)),
        Alert::Button::cancel());
}

} // namespace

Alert standardAlert(const Error& error)
{
    const auto& anErrorOccurred = value(CommonLocalizations::anErrorOccurred);
    if (isPhotosPermissionsError(error))
        return permissionAlert();
    if (isDiskOutOfSpace(error))
        return dismissable(anErrorOccurred, zelkKitLocalized("EXPORT_FAILURE_DISK_IS_FULL_MESSAGE"));
    if (isNotConnectedToInternetError(error))
        return dismissable(anErrorOccurred, zelkKitLocalized("URL_ERROR_NOT_CONNECTED_TO_INTERNET"));
    if (auto suggestion = error.bridged().localizedRecoverySuggestion())
        return dismissable(error.localizedDescription(), std::move(*suggestion));
    return dismissable(anErrorOccurred, error.localizedDescription());
}

} // namespace zelk

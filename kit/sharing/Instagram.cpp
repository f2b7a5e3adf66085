// SPDX-License-Identifier: MIT
#include "kit/sharing/Instagram.h"

#include "kit/foundation/zelkKitLocalized.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/currentDate.h"
#include "platform/foundation/NSData.h"
#include "platform/foundation/Precondition.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIPasteboard.h"

#include <optional>
#include <string_view>

namespace zelk {

using namespace platform;

namespace {

// What the app publishes for other programs.
constexpr std::string_view storiesAddress = "instagram-stories://share";
constexpr std::string_view backgroundVideoType = "com.instagram.sharedSticker.backgroundVideo";

constexpr double lifetime = 300; // seconds

const URL& storiesURL()
{
    static const auto url = [] {
        auto parsed = URL::parse(storiesAddress);
        precondition(parsed.has_value(), "the address of Stories is no URL");
        return *parsed;
    }();
    return url;
}

} // namespace

bool Instagram::canShareToInstagramStories()
{
    assertOnMainThread();
    static const bool canShare = UIApplication::shared().canOpenURL(storiesURL());
    return canShare;
}

Result<void> Instagram::shareMediaFileURLToInstagramStories(const URL& url)
{
    assertOnMainThread();
    if (!canShareToInstagramStories())
        return failure(InstagramError::cannotOpenURL);
    auto video = TRY(NSData::contentsOf(url, NSDataReadingOptions::alwaysMapped));
    UIPasteboardItem item{{std::string(backgroundVideoType), std::move(video)}};
    UIPasteboard::general().setItems(
        {std::move(item)},
        {.UIPasteboardOptionExpirationDate = Date{currentDate().timeIntervalSince1970 + lifetime},
         .UIPasteboardOptionLocalOnly = true});
    UIApplication::shared().open(storiesURL());
    return {};
}

LocalizedError localizedError(Instagram::InstagramError)
{
    return {.errorDescription = zelkKitLocalized("INSTAGRAM_ERROR_CANNOT_OPEN_INSTAGRAM_URL")};
}

NSError nsError(Instagram::InstagramError error)
{
    return NSError("ZelkKit.Instagram.InstagramError", static_cast<long>(error));
}

} // namespace zelk

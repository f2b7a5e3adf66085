// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/shoot.h"

#include "apps/zelk-gallery/frame/ExhibitView.h"
#include "apps/zelk-gallery/frame/GalleryView.h"
#include "apps/zelk-gallery/pages/pages.h"

#include "kit/theme/semanticColors.h"
#include "platform/dispatch/VirtualClock.h"
#include "platform/foundation/FileManager.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/CurrentAppearance.h"
#include "platform/graphics/UIImage.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIWindow.h"

#include <cmath>
#include <cstdio>

namespace gallery {

using namespace platform;
using namespace std::chrono_literals;

namespace {

constexpr CGFloat pageWidth = 600;
constexpr CGFloat highestPage = 8000;
constexpr CGSize wholeWindow{1280, 800};

struct Variant {
    std::string_view name;
    UITraitCollection traits;
};

std::vector<Variant> variants(double scale)
{
    using enum UIUserInterfaceLayoutDirection;
    return {
        {"light", {.displayScale = scale}},
        {"dark", {.userInterfaceStyle = UIUserInterfaceStyle::dark, .displayScale = scale}},
        {"rtl", {.layoutDirection = rightToLeft, .displayScale = scale}},
        {"large",
         {.preferredContentSizeCategory = UIContentSizeCategory::accessibilityLarge, .displayScale = scale}}};
}

struct Picture {
    std::shared_ptr<UIViewController> controller;
    CGSize size;
    Duration moment;
};

Picture pagePicture(const Page& page, const UITraitCollection& traits)
{
    auto root = pageView(page, pageWidth, CodePlace::none) | environment<IsPosedKey>(true)
        | background(Color{zelk::zelk_systemGroupedBackground()});
    auto controller = std::make_shared<UIHostingController<decltype(root)>>(root);
    // Measured in a window of the same surroundings: text sizes decide.
    auto window = std::make_shared<UIWindow>(CGRect::make(0, 0, pageWidth, highestPage));
    window->setBaseTraits(traits);
    window->setRootViewController(controller);
    window->showOffscreen();
    window->layoutNow();
    auto height = std::ceil(controller->sizeThatFits({pageWidth, highestPage}).height);
    window->setRootViewController(nullptr);
    window->close();
    return {std::make_shared<UIHostingController<decltype(root)>>(root),
            {pageWidth, std::min(height, highestPage)},
            page.moment};
}

Result<UIImage> paint(const Picture& picture, const UITraitCollection& traits, VirtualClock& clock)
{
    auto window = std::make_shared<UIWindow>(CGRect{{}, picture.size});
    window->setBaseTraits(traits);
    window->setTintColor(tints().front().color);
    window->setRootViewController(picture.controller);
    window->showOffscreen();
    // What is read or drawn on other threads is there, before the moment and at it.
    clock.settleWithBackgroundQueues();
    clock.advance(picture.moment);
    clock.settleWithBackgroundQueues();
    window->layoutNow();
    auto image = makeImage(
        picture.size, traits.displayScale,
        [&](CGContext& context) { window->paint(context, {{}, picture.size}); }, traits.colorAppearance());
    window->setRootViewController(nullptr);
    window->close();
    return image;
}

std::string fileName(std::string_view page, const Variant& variant)
{
    auto name = std::string(page).append("-").append(variant.name);
    if (variant.traits.displayScale > 1) {
        char text[32];
        std::snprintf(text, sizeof text, "@%gx", variant.traits.displayScale);
        name.append(text);
    }
    return name.append(".png");
}

} // namespace

Result<void> shoot(const ShootOptions& options)
{
    TRY(FileManager::defaultManager().createDirectory(URL::fileURL(options.folder),
                                                      IntermediateDirectories::created));
    VirtualClock clock;
    auto write = [&](std::string_view name, const Variant& variant, const auto& makePicture) -> Result<void> {
        CurrentAppearance current(variant.traits.colorAppearance());
        auto image = TRY(paint(makePicture(), variant.traits, clock));
        auto path = std::string(options.folder).append("/").append(fileName(name, variant));
        TRY(image.writePNG(path));
        std::printf("%s\n", path.c_str());
        return {};
    };
    for (const auto& variant : variants(options.scale)) {
        for (const auto& page : allPages()) {
            if (!options.page || page.name == *options.page)
                TRY(write(page.name, variant, [&] { return pagePicture(page, variant.traits); }));
        }
        if (!options.page) {
            auto settings = std::make_shared<GallerySettings>(allPages().front().name);
            TRY(write("gallery", variant, [&] { return Picture{makeGallery(settings), wholeWindow, 1s}; }));
        }
    }
    return {};
}

} // namespace gallery

// SPDX-License-Identifier: MIT
// The pickers: media-pickers. A photo, a video (trimmed first, if wanted) or a font is picked, and the page says what came of
// it. With --snapshot OUT.png [fonts] [dark] [rtl] [narrow] it draws the library, or the fonts, to a picture.
#include "kit/media/FontPickerScreen.h"
#include "kit/media/VideoEditorView.h"
#include "kit/media/photoAssetPicker.h"
#include "kit/media/videoAssetPicker.h"
#include "kit/theme/Spacing.h"

#include "platform/dispatch/VirtualClock.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/swiftui/sheet.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/snapshot.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

namespace {

using namespace platform;
using zelk::AssetPickerKind;
using zelk::Spacing;

constexpr CGSize windowSize{520, 560};

struct Page {
    State<std::optional<AssetPickerKind>> photo;
    State<std::optional<AssetPickerKind>> video;
    State<std::optional<AssetPickerKind>> clip;
    State<bool> showsFonts = false;
    State<std::string> outcome = std::string("Nothing was picked yet.");
    State<UIFont> chosenFont = UIFont();

    auto dynamicProperties() { return std::tie(photo, video, clip, showsFonts, outcome, chosenFont); }

    auto body() const
    {
        auto tell = [outcome = outcome.binding()](const Result<URL>& item) {
            outcome.set(item ? item->lastPathComponent() : item.error().localizedDescription());
        };
        auto open = [](const State<std::optional<AssetPickerKind>>& state) {
            return
                [binding = state.binding()] { binding.set(AssetPickerKind(AssetPickerKind::photoLibrary)); };
        };
        auto fonts = showsFonts.binding();
        auto font_ = chosenFont.binding();
        return VStack{{.spacing = Spacing::_200},
                      Text{"Pickers"} | font(Font::title()),
                      Button{"Pick a photo…", open(photo)},
                      Button{"Pick a video…", open(video)},
                      Button{"Pick a part of a video…", open(clip)},
                      Button{"Pick a font…", [fonts] { fonts.set(true); }},
                      Text{*outcome} | foregroundColor(UIColor::secondaryLabel())}
        | padding(Spacing::_300) | zelk::photoAssetPicker(photo.binding(), {}, tell)
            | zelk::videoAssetPicker(video.binding(), {}, tell)
            | zelk::videoAssetPicker(clip.binding(), {.allowsEditing = true, .videoMaximumDuration = 30},
                                     tell)
            | sheet(fonts, [fonts, font_, outcome = outcome.binding()] {
                   return zelk::FontPickerScreen(
                       [fonts, font_, outcome](const UIFont& picked) {
                           font_.set(picked);
                           outcome.set(std::string(picked.familyName()));
                           fonts.set(false);
                       },
                       [fonts] { fonts.set(false); });
               });
    }
};

int writeSnapshot(const char* path, std::shared_ptr<UIViewController> controller,
                  const UITraitCollection& traits, CGSize size)
{
    VirtualClock clock;
    auto window = std::make_shared<UIWindow>(CGRect{{}, size});
    window->setBaseTraits(traits);
    window->setRootViewController(controller);
    window->showOffscreen();
    window->setKeyWindow(true);
    clock.settleWithBackgroundQueues();
    clock.advance(std::chrono::seconds(1));
    auto picture = snapshot(*window, size, traits.displayScale);
    auto written = picture ? picture->writePNG(path) : std::unexpected(picture.error());
    window->close();
    if (!written)
        std::fprintf(stderr, "media-pickers: %s: %s\n", path, written.error().localizedDescription().c_str());
    return written ? 0 : 1;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount >= 3 && std::strcmp(arguments[1], "--snapshot") == 0) {
        UITraitCollection traits{.displayScale = 2};
        auto size = windowSize;
        std::shared_ptr<UIViewController> controller;
        for (int i = 3; i < argumentCount; ++i) {
            std::string_view word = arguments[i];
            if (word == "dark")
                traits.userInterfaceStyle = UIUserInterfaceStyle::dark;
            else if (word == "rtl")
                traits.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft;
            else if (word == "narrow")
                size = {240, 420};
            else if (word == "fonts")
                controller = std::make_shared<UIFontPickerViewController>();
            else {
                auto editor = std::make_shared<UIVideoEditorController>();
                editor->videoPath = word;
                controller = editor;
            }
        }
        if (!controller) {
            auto picker = std::make_shared<UIImagePickerController>();
            picker->mediaTypes = {std::string(kUTTypeImage), std::string(kUTTypeMovie)};
            controller = picker;
        }
        return writeSnapshot(arguments[2], std::move(controller), traits, size);
    }
    if (argumentCount != 1) {
        std::fprintf(stderr,
                     "usage: media-pickers [--snapshot OUT.png [fonts | VIDEO] [dark] [rtl] [narrow]]\n");
        return 2;
    }
    if (!displayIsAvailable()) {
        std::fprintf(stderr, "media-pickers: there is no display; try --snapshot OUT.png\n");
        return 1;
    }
    auto& application = UIApplication::shared();
    application.setIdentifier("org.zelk.MediaPickers");
    application.start();
    auto window = std::make_shared<UIWindow>(CGRect{{}, windowSize});
    window->setTitle("Pickers");
    window->setRootViewController(std::make_shared<UIHostingController<Page>>(Page{}));
    window->makeKeyAndVisible();
    return application.run();
}

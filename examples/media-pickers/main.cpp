// SPDX-License-Identifier: MIT
// The pickers: media-pickers. A photo, a video (trimmed first, if wanted) or a font is picked, or taken with the camera, and the
// page says what came of it. With --snapshot OUT.png [fonts | camera | VIDEO] [dark] [rtl] [narrow] [wide] it draws the library,
// or another of them, to a picture; the camera, a synthetic one, [front], [both], [recording], [taken] or [missing].
#include "kit/media/FontPickerScreen.h"
#include "kit/media/VideoEditorView.h"
#include "kit/media/photoAssetPicker.h"
#include "kit/media/videoAssetPicker.h"
#include "kit/theme/Spacing.h"

#include "platform/avfoundation/AVCaptureAuthorization.h"
#include "platform/avfoundation/SyntheticCapture.h"
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
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>

namespace {

using namespace platform;
using zelk::AssetPickerKind;
using zelk::Spacing;

constexpr CGSize windowSize{520, 620};

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
        auto open = [](const State<std::optional<AssetPickerKind>>& state,
                       AssetPickerKind kind = AssetPickerKind::photoLibrary) {
            return [binding = state.binding(), kind] { binding.set(kind); };
        };
        auto hasNoCamera = !zelk::ImagePickerSource::isCameraAvailable();
        auto fonts = showsFonts.binding();
        auto font_ = chosenFont.binding();
        return VStack{{.spacing = Spacing::_200},
                      Text{"Pickers"} | font(Font::title()),
                      Button{"Pick a photo…", open(photo)},
                      Button{"Pick a video…", open(video)},
                      Button{"Pick a part of a video…", open(clip)},
                      Button{"Take a photo…", open(photo, AssetPickerKind::cameraCapture)}
                          | disabled(hasNoCamera),
                      Button{"Record a video…", open(video, AssetPickerKind::cameraCapture)}
                          | disabled(hasNoCamera),
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

struct Shot {
    UITraitCollection traits{.displayScale = 2};
    CGSize size = windowSize;
    std::shared_ptr<UIViewController> controller;
    std::function<void(UIWindow&, VirtualClock&)> prepare; // what a user does before
    std::function<void()> finish;                          // puts back what was changed for it
};

int writeSnapshot(const char* path, const Shot& shot)
{
    VirtualClock clock;
    auto window = std::make_shared<UIWindow>(CGRect{{}, shot.size});
    window->setBaseTraits(shot.traits);
    window->setRootViewController(shot.controller);
    window->showOffscreen();
    window->setKeyWindow(true);
    clock.settleWithBackgroundQueues();
    if (shot.prepare)
        shot.prepare(*window, clock);
    clock.advance(std::chrono::seconds(1));
    auto picture = snapshot(*window, shot.size, shot.traits.displayScale);
    auto written = picture ? picture->writePNG(path) : std::unexpected(picture.error());
    window->close();
    if (shot.finish)
        shot.finish();
    if (!written)
        std::fprintf(stderr, "media-pickers: %s: %s\n", path, written.error().localizedDescription().c_str());
    return written ? 0 : 1;
}

// A camera's page before a desk of its own.
void addCamera(Shot& shot, const std::set<std::string_view>& words)
{
    auto has = [&](std::string_view word) { return words.contains(word); };
    SyntheticCapture::Options options{.pace = SyntheticCapture::Pace::onDemand};
    if (has("missing"))
        options.cameras.clear();
    auto desk = std::make_shared<SyntheticCapture>(options);
    CaptureHardware::replace(desk);
    auto& authorization = AVCaptureAuthorization::shared();
    auto camera = authorization.status(AVMediaType::video), sound = authorization.status(AVMediaType::audio);
    if (camera == AVAuthorizationStatus::restricted || sound == AVAuthorizationStatus::restricted)
        return;
    auto allow = [&authorization](AVAuthorizationStatus video, AVAuthorizationStatus audio) {
        authorization.setStatus(video, AVMediaType::video);
        authorization.setStatus(audio, AVMediaType::audio);
    };
    allow(AVAuthorizationStatus::authorized, AVAuthorizationStatus::authorized);
    shot.finish = [allow, camera, sound] { allow(camera, sound); };
    auto picker = std::make_shared<UIImagePickerController>();
    picker->sourceType = UIImagePickerControllerSourceType::camera;
    picker->mediaTypes = {std::string(has("recording") ? kUTTypeMovie : kUTTypeImage)};
    if (has("both"))
        picker->mediaTypes.emplace_back(kUTTypeMovie);
    if (has("front"))
        picker->cameraDevice = UIImagePickerControllerCameraDevice::front;
    shot.controller = picker;
    if (has("missing"))
        return;
    shot.prepare = [desk, isShooting = has("recording") || has("taken")](UIWindow& window,
                                                                         VirtualClock& clock) {
        auto see = [&](int pictures) {
            desk->deliver(pictures);
            clock.settleWithBackgroundQueues();
        };
        see(70);
        if (!isShooting)
            return;
        UIPress space{.key = UIKeyCode::space, .characters = " "};
        window.sendPress(space);
        see(100);
    };
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount >= 3 && std::strcmp(arguments[1], "--snapshot") == 0) {
        Shot shot;
        const std::set<std::string_view> words(arguments + 3, arguments + argumentCount);
        auto has = [&](std::string_view word) { return words.contains(word); };
        if (has("dark"))
            shot.traits.userInterfaceStyle = UIUserInterfaceStyle::dark;
        if (has("rtl"))
            shot.traits.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft;
        if (has("narrow"))
            shot.size = {240, 420};
        if (has("wide"))
            shot.size = {760, 420};
        if (has("fonts")) {
            shot.controller = std::make_shared<UIFontPickerViewController>();
        } else if (has("camera")) {
            addCamera(shot, words);
            if (!shot.controller) {
                std::fprintf(stderr, "media-pickers: this machine's administrator allows no cameras\n");
                return 1;
            }
        } else if (argumentCount > 3 && std::filesystem::exists(arguments[3])) {
            auto editor = std::make_shared<UIVideoEditorController>();
            editor->videoPath = arguments[3];
            shot.controller = editor;
        } else {
            auto picker = std::make_shared<UIImagePickerController>();
            picker->mediaTypes = {std::string(kUTTypeImage), std::string(kUTTypeMovie)};
            shot.controller = picker;
        }
        return writeSnapshot(arguments[2], shot);
    }
    if (argumentCount != 1) {
        std::fprintf(stderr,
                     "usage: media-pickers [--snapshot OUT.png [VIDEO | fonts | camera [front] [both] "
                     "[recording | taken | missing]] [dark] [rtl] [narrow] [wide]]\n");
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

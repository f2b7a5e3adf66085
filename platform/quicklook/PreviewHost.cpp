// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewHost.h"

#include "platform/graphics/GraphicsRuntime.h"
#include "platform/quicklook/Confinement.h"
#include "platform/quicklook/PreparedPreview.h"
#include "platform/quicklook/PreviewBroker.h"
#include "platform/quicklook/PreviewSize.h"
#include "platform/quicklook/PreviewWindow.h"
#include "platform/quicklook/messageLine.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/snapshot.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>

namespace platform {

namespace {

constexpr int shown = 0, notShown = 1;

// A picture takes the place of what its path names, so that must be nothing, or a file that is not the one shown. Empty when
// it may.
std::string whyNotAPicture(const std::string& path, const URL& file)
{
    std::error_code unknown; // what cannot be looked at is reported when it cannot be written
    auto status = std::filesystem::status(path, unknown);
    if (!std::filesystem::exists(status))
        return {};
    if (!std::filesystem::is_regular_file(status))
        return "This is not a file that a picture could replace";
    if (std::filesystem::is_symlink(std::filesystem::symlink_status(path, unknown)))
        return "This is a link, which a picture would replace";
    if (std::filesystem::equivalent(path, file.path(), unknown))
        return "This is the file to be shown";
    return {};
}

int paintSnapshot(std::string_view program, const PreviewArguments& arguments, const URL& file,
                  const PreparedPreview& preview)
{
    if (preview.error) {
        printMessageLine(previewFailureLine(program, file.lastPathComponent(), *preview.error));
        return notShown;
    }
    if (auto reason = whyNotAPicture(arguments.snapshotPath, file); !reason.empty()) {
        printMessageLine(std::string(program) + ": "
                         + URL::fileURL(arguments.snapshotPath).lastPathComponent() + ": " + reason);
        return notShown;
    }
    UITraitCollection traits;
    if (arguments.appearance != UIUserInterfaceStyle::unspecified)
        traits.userInterfaceStyle = arguments.appearance;
    traits.displayScale = arguments.scale;
    auto size = arguments.size.value_or(
        suitablePreviewSize(*preview.controller, traits, UIWindow::availableScreenBounds().size));
    auto image = snapshot(preview.controller, {.size = size, .scale = arguments.scale, .traits = traits});
    auto written =
        image ? image->writePNG(arguments.snapshotPath) : Result<void>(std::unexpected(image.error()));
    if (!written) {
        auto picture = URL::fileURL(arguments.snapshotPath).lastPathComponent();
        printMessageLine(previewFailureLine(program, picture, written.error().bridged()));
        return notShown;
    }
    return shown;
}

int showWindow(std::string_view program, const ExtensionManifest& manifest, const PreviewArguments& arguments,
               const URL& file, PreparedPreview preview, PreviewBroker& broker, int landlockVersion)
{
    bool isReadable = !preview.error;
    if (preview.error)
        printMessageLine(previewFailureLine(program, file.lastPathComponent(), *preview.error));
    PreviewWindow window(arguments, manifest, file, std::move(preview), broker);
    window.onFirstFrame = [landlockVersion] {
        if (std::getenv(
                "ZELK_REPORT_FIRST_FRAME")) { // for the start benchmark and for reports of slow starts
            std::puts("first-frame");
            std::fflush(stdout);
        }
        // The file is read and the window stands: from here on it only looks.
        confineCalls(landlockVersion);
    };
    window.open();
    int status = UIApplication::shared().run();
    return isReadable ? status : notShown;
}

// All views are gone when it returns.
int prepareAndShow(std::string_view program, const ExtensionManifest& manifest,
                   const PreviewArguments& arguments, const URL& file, PreviewBroker* broker,
                   int landlockVersion)
{
    auto preview = preparePreview(manifest, file);
    if (!preview) {
        printMessageLine(std::string(program) + ": " + preview.error().localizedDescription());
        return notShown;
    }
    return arguments.action == PreviewAction::window
        ? showWindow(program, manifest, arguments, file, std::move(*preview), *broker, landlockVersion)
        : paintSnapshot(program, arguments, file, *preview);
}

} // namespace

int runPreview(std::string_view program, const ExtensionManifest& manifest, const PreviewArguments& arguments,
               const URL& file, PreviewBroker* broker)
{
    bool needsDisplay = arguments.action == PreviewAction::window;
    if (needsDisplay && !displayIsAvailable()) {
        printMessageLine(std::string(program) + ": " + file.lastPathComponent()
                         + ": no display to show it on; --snapshot OUT.png paints it into a picture");
        return notShown;
    }
    int landlockVersion = 0;
    std::optional<PreviewBroker> ownBroker;
    if (needsDisplay) {
        if (!broker)
            broker = &ownBroker.emplace(file);
        // The rules for files hold for threads that start later only, and the window system's libraries start some.
        landlockVersion = confineFiles("");
        UIApplication::shared().setIdentifier(manifest.identifier);
        // Before the file is read: the desktop is asked for its settings meanwhile.
        UIApplication::shared().start();
    } else {
        startGraphics(DisplayMode::offscreen);
    }
    int status = prepareAndShow(program, manifest, arguments, file, broker, landlockVersion);
    stopGraphics(); // hands what was copied to the desktop, which may keep it for when we are gone
    return status;
}

std::string previewFailureLine(std::string_view program, std::string_view file, const NSError& error)
{
    auto reason = error.localizedFailureReason();
    if (reason.empty())
        reason = error.localizedDescription();
    std::string line(program);
    line += ": ";
    line += file;
    line += ": ";
    line += reason;
    return line;
}

} // namespace platform

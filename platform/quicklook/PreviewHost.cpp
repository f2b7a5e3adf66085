// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewHost.h"

#include "platform/foundation/Precondition.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/quicklook/Confinement.h"
#include "platform/quicklook/PreviewFailureViewController.h"
#include "platform/quicklook/PreviewSize.h"
#include "platform/quicklook/PrincipalClass.h"
#include "platform/quicklook/QLPreviewingController.h"
#include "platform/quicklook/messageLine.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIEvent.h"
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

// What the extension made of the file: its controller, or why there is none to show.
struct PreparedPreview {
    std::shared_ptr<UIViewController> controller;
    std::optional<NSError> error;
};

Result<PreparedPreview> prepare(const ExtensionManifest& manifest, const URL& file)
{
    auto controller = makePrincipalClass(manifest.principalClass);
    auto* previewing = dynamic_cast<QLPreviewingController*>(controller.get());
    if (!previewing) {
        auto reason = "the principal class " + manifest.principalClass
            + (controller ? " is no preview controller" : " is not registered");
        return failure(
            NSCocoaError::propertyListReadCorrupt,
            {{std::string(NSLocalizedDescriptionKey), "The extension can’t be used: " + reason + "."},
             {std::string(NSLocalizedFailureReasonErrorKey), reason}});
    }
    PreparedPreview preview{controller, std::nullopt};
    controller->loadViewIfNeeded();
    int calls = 0;
    previewing->preparePreviewOfFile(file, [&](std::optional<NSError> error) {
        ++calls;
        preview.error = std::move(error);
    });
    precondition(calls == 1, "a preview controller calls its completion handler once, before it returns");
    return preview;
}

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

// The window of a preview: its size, its keys, its text size.
class PreviewWindow {
public:
    PreviewWindow(const PreviewArguments& arguments, const URL& file,
                  std::shared_ptr<UIViewController> controller, int landlockVersion)
        : arguments_(arguments)
        , landlockVersion_(landlockVersion)
        , controller_(std::move(controller))
        , title_(file.lastPathComponent())
    {
    }

    void open()
    {
        auto traits = currentTraits();
        auto screen = UIWindow::availableScreenBounds();
        auto size = arguments_.size.value_or(suitablePreviewSize(*controller_, traits, screen.size));
        controller_->setTitle(title_);
        window_ = std::make_shared<UIWindow>(CGRect{screen.origin, size});
        window_->setTitle(title_);
        window_->setMinimumSize({120, 80});
        if (arguments_.appearance != UIUserInterfaceStyle::unspecified)
            window_->setOverrideUserInterfaceStyle(arguments_.appearance);
        window_->setRootViewController(controller_);
        window_->onUnhandledPress = [this](const UIPress& press) { return handlePress(press); };
        window_->onClose = [] { UIApplication::shared().terminate(); };
        window_->onFirstFrame = [landlockVersion = landlockVersion_] {
            if (std::getenv(
                    "ZELK_REPORT_FIRST_FRAME")) { // for the start benchmark and for reports of slow starts
                std::puts("first-frame");
                std::fflush(stdout);
            }
            // The file is read and the window stands: from here on it only looks.
            confineCalls(landlockVersion);
        };
        window_->makeKeyAndVisible();
        window_->advanceFocus(UIWindow::FocusDirection::forward);
    }

private:
    UITraitCollection currentTraits() const
    {
        auto traits = UIApplication::shared().desktopTraits();
        if (arguments_.appearance != UIUserInterfaceStyle::unspecified)
            traits.userInterfaceStyle = arguments_.appearance;
        return traits;
    }

    bool handlePress(const UIPress& press)
    {
        auto held = press.modifiers;
        bool control = held.contains(UIKeyModifierFlags::control);
        bool other =
            held.contains(UIKeyModifierFlags::alternate) || held.contains(UIKeyModifierFlags::command);
        if (other)
            return false;
        auto& character = press.charactersIgnoringModifiers;
        if (control) {
            if (character == "w")
                window_->close();
            else if (character == "+" || character == "=")
                setTextSize(larger(textSize()));
            else if (character == "-")
                setTextSize(smaller(textSize()));
            else if (character == "0")
                window_->setOverrideContentSizeCategory(std::nullopt);
            else
                return false;
            return true;
        }
        if (press.key == UIKeyCode::escape || press.key == UIKeyCode::space || character == "q") {
            window_->close();
            return true;
        }
        return false;
    }

    UIContentSizeCategory textSize() const { return window_->traitCollection().preferredContentSizeCategory; }
    void setTextSize(UIContentSizeCategory category) { window_->setOverrideContentSizeCategory(category); }

    const PreviewArguments& arguments_;
    const int landlockVersion_;
    std::shared_ptr<UIViewController> controller_;
    std::string title_;
    std::shared_ptr<UIWindow> window_;
};

int showWindow(std::string_view program, const PreviewArguments& arguments, const URL& file,
               const PreparedPreview& preview, int landlockVersion)
{
    auto controller = preview.controller;
    if (preview.error) {
        printMessageLine(previewFailureLine(program, file.lastPathComponent(), *preview.error));
        controller = std::make_shared<PreviewFailureViewController>(file.lastPathComponent(), *preview.error);
    }
    PreviewWindow window(arguments, file, controller, landlockVersion);
    window.open();
    int status = UIApplication::shared().run();
    return preview.error ? notShown : status;
}

// All views are gone when it returns.
int prepareAndShow(std::string_view program, const ExtensionManifest& manifest,
                   const PreviewArguments& arguments, const URL& file, int landlockVersion)
{
    auto preview = prepare(manifest, file);
    if (!preview) {
        printMessageLine(std::string(program) + ": " + preview.error().localizedDescription());
        return notShown;
    }
    return arguments.action == PreviewAction::window
        ? showWindow(program, arguments, file, *preview, landlockVersion)
        : paintSnapshot(program, arguments, file, *preview);
}

} // namespace

int runPreview(std::string_view program, const ExtensionManifest& manifest, const PreviewArguments& arguments,
               const URL& file)
{
    bool needsDisplay = arguments.action == PreviewAction::window;
    if (needsDisplay && !displayIsAvailable()) {
        printMessageLine(std::string(program) + ": " + file.lastPathComponent()
                         + ": no display to show it on; --snapshot OUT.png paints it into a picture");
        return notShown;
    }
    int landlockVersion = 0;
    if (needsDisplay) {
        // The rules for files hold for threads that start later only, and the window system's libraries start some.
        landlockVersion = confineFiles("");
        UIApplication::shared().setIdentifier(manifest.identifier);
        // Before the file is read: the desktop is asked for its settings meanwhile.
        UIApplication::shared().start();
    } else {
        startGraphics(DisplayMode::offscreen);
    }
    int status = prepareAndShow(program, manifest, arguments, file, landlockVersion);
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

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/quicklook/PreparedPreview.h"
#include "platform/quicklook/PreviewArguments.h"
#include "platform/uikit/TextFinder.h"
#include "platform/uikit/UITraitCollection.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

class PreviewBroker;
class PreviewRootController;
struct UIPress;
class UIWindow;

// The window of a preview and all that a person does in it besides reading: its bar and its keys, search, the choice of
// another encoding, wrapping, text size. Main thread only.
class PreviewWindow {
public:
    // `arguments`, `manifest` and `broker` outlive it.
    PreviewWindow(const PreviewArguments& arguments, const ExtensionManifest& manifest, URL file,
                  PreparedPreview preview, PreviewBroker& broker);
    PreviewWindow(const PreviewWindow&) = delete; // its views call back
    PreviewWindow& operator=(const PreviewWindow&) = delete;
    ~PreviewWindow();

    // Called once, when the first frame is on screen.
    std::function<void()> onFirstFrame;
    void open();
    // The same without a display, in a window of the caller's that nobody has shown yet.
    void openOffscreen(std::shared_ptr<UIWindow> window);

private:
    struct Command;

    void setUp(std::shared_ptr<UIWindow> window);
    UITraitCollection currentTraits() const;
    void connectBar();
    bool handlePress(const UIPress& press);
    const Command* commandFor(const UIPress& press) const;

    void windowStands();
    void contentChanged();
    enum class Way { forward, backward };
    void findOn(Way way);
    void focusText();
    void showMenu();
    void showEncodingMenu();

    std::vector<TextEncoding> candidates() const;
    void cycleEncoding();
    // False when the file does not decode in it; then all stays as it is.
    bool show(TextEncoding encoding);
    void showReading();
    void keepEncoding();

    void toggleWrapping();
    void setTextSize(std::optional<UIContentSizeCategory> category);
    UIContentSizeCategory textSize() const;
    void copyAll();
    void openWithDefaultProgram();

    const PreviewArguments& arguments_;
    const ExtensionManifest& manifest_;
    const URL file_;
    PreviewBroker& broker_;

    std::optional<NSError> error_;
    std::optional<TextReadingScope::Report> reading_; // of what is shown
    std::vector<TextEncoding> offered_;               // of the first reading
    std::optional<TextEncoding> kept_;                // by the user, with the file
    bool wraps_ = true;
    std::optional<UIContentSizeCategory> textSize_;

    std::shared_ptr<PreviewRootController> root_;
    std::shared_ptr<UIWindow> window_;
    TextFinder finder_;
};

} // namespace platform

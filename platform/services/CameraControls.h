// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/CameraPreviewView.h"
#include "platform/services/CameraShutterButton.h"
#include "platform/services/PickerBar.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class UIActivityIndicatorView;
class UIButton;
class UIImageView;
class UILabel;
class UISegmentedControl;

// All that stands on the camera's page: the picture with a time over it, and beside it, below or where reading ends in a wide
// window, a panel with the shutter between the way back and the way on. Dark in every appearance, so that the picture is what
// is seen. Main thread only.
class CameraControls : public UIView {
public:
    CameraControls();

    const std::shared_ptr<CameraPreviewView>& preview() const { return preview_; }
    const std::shared_ptr<CameraShutterButton>& shutter() const { return shutter_; }
    const std::shared_ptr<UIButton>& backButton() const { return back_; }     // cancels, or takes again
    const std::shared_ptr<UIButton>& useButton() const { return use_; }       // of what was taken
    const std::shared_ptr<UIButton>& switchButton() const { return switch_; } // to the other camera
    const std::shared_ptr<UISegmentedControl>& modes() const { return modes_; }
    const std::shared_ptr<UIButton>& playButton() const { return play_; } // over a movie that was recorded

    // Each is hidden without.
    void setTime(std::optional<double> seconds);
    void setMessage(std::string text, std::string_view symbol = "exclamationmark.triangle");
    void setNotice(std::string text); // over the picture, where the time is
    void setWaiting(bool waiting);
    // The picture lights up for a moment.
    void flash();

    void layoutSubviews() override;

private:
    void layOutPanel(CGRect panel, bool isColumn);
    void layOutOverlays(CGRect picture);
    bool isRightToLeft() const;

    const std::shared_ptr<CameraPreviewView> preview_;
    const std::shared_ptr<UIView> light_;
    const std::shared_ptr<UILabel> time_, notice_;
    const std::shared_ptr<UIImageView> symbol_;
    const std::shared_ptr<UILabel> message_;
    const std::shared_ptr<UIActivityIndicatorView> wheel_;
    const std::shared_ptr<CameraShutterButton> shutter_;
    const std::shared_ptr<UIButton> back_, use_, switch_, play_;
    const std::shared_ptr<UISegmentedControl> modes_;
    std::string symbolName_;
};

// The root of the camera's page: Escape leaves, Space and Return are the shutter where nothing else takes them.
class CameraPage : public PickerPage {
public:
    CameraPage();
    std::function<void()> onShutter;
    bool pressesBegan(const UIPress& press) override;
    bool performKeyEquivalent(const UIPress& press) override;

private:
    bool takesShutter(const UIPress& press);
};

} // namespace platform

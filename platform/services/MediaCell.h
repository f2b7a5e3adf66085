// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/ThumbnailLoader.h"
#include "platform/uikit/UIControl.h"

#include <memory>

namespace platform {

class UIImageView;
class UILabel;

// A medium in a grid: its picture, cut to the cell, and of a video how long it is. Used again for other media. The keyboard
// is the grid's. Main thread only.
class MediaCell : public UIControl {
public:
    MediaCell();

    const LibraryFile& file() const { return file_; }
    void show(const LibraryFile& file);
    void show(const Thumbnail& thumbnail);
    bool isLoaded() const { return isLoaded_; }
    // The ring is for those who go by keys.
    void setRing(bool shows);

    bool canBecomeFirstResponder() const override { return false; }
    void layoutSubviews() override;
    void pointerEntered() override;
    void pointerExited() override;
    std::optional<Cursor> cursorAt(CGPoint) const override { return Cursor::pointingHand; }
    void tintColorDidChange() override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    void controlStateChanged() override;

private:
    class Veil;
    const std::shared_ptr<UIImageView> picture_;
    const std::shared_ptr<UILabel> name_;     // where there is no picture
    const std::shared_ptr<UILabel> duration_; // of a video
    const std::shared_ptr<Veil> veil_;
    LibraryFile file_;
    bool isLoaded_ = false;
};

} // namespace platform

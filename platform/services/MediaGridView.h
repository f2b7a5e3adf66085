// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/ThumbnailLoader.h"
#include "platform/uikit/UICollectionView.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

class MediaCell;

// Media in rows of square cells, from where reading begins. Only those in sight, and a row to each side, exist. The arrows,
// Home, End and Page Up and Down move the choice, Return and Space pick it. Main thread only.
class MediaGridView : public UICollectionView {
public:
    MediaGridView();
    ~MediaGridView() override;

    // One that is picked before anybody has looked into it is told of once it was looked into, if it is a medium.
    std::function<void(const LibraryFile&)> onPick;

    const std::vector<LibraryFile>& files() const { return files_; }
    void setFiles(std::vector<LibraryFile> files);
    // That are made at present.
    std::size_t cellCount() const { return cells_.size(); }

    void layoutSubviews() override;
    bool canBecomeFirstResponder() const override { return !files_.empty(); }
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    bool pressesBegan(const UIPress& press) override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    void contentOffsetDidChange() override;

private:
    struct Grid {
        std::size_t columns = 1;
        CGFloat side = 0;
    };
    Grid grid() const;
    CGRect cellFrame(std::size_t index) const;
    void placeCells();
    std::shared_ptr<MediaCell> takeCell();
    void load(std::vector<std::size_t> places);
    void take(MediaCell& cell, const Thumbnail& thumbnail);
    void pick(LibraryFile file);
    void moveChoice(std::ptrdiff_t step);
    void showChoice();
    bool isRightToLeft() const;

    const std::shared_ptr<ThumbnailLoader> loader_;
    std::vector<LibraryFile> files_;
    std::map<std::size_t, std::shared_ptr<MediaCell>> cells_; // by the place of their file
    std::vector<std::shared_ptr<MediaCell>> spare_;
    std::size_t chosen_ = 0;
    std::optional<LibraryFile> impatient_;
    CGFloat laidOutWidth_ = -1;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/MediaListing.h"
#include "platform/uikit/UIViewController.h"

#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

namespace platform {

class MediaGridView;
class PickerBar;
class PickerNotice;
class PickerPage;
class UISegmentedControl;

// A page with the media of the user's folders, newest first, to pick one from. Where photos and videos are offered the user
// may narrow it to one of them. Main thread only.
class MediaLibraryController : public UIViewController {
public:
    explicit MediaLibraryController(MediaKinds kinds);
    ~MediaLibraryController() override;

    // Set before it is shown. Each is called at most once a tap or a key.
    std::function<void(const LibraryFile&)> onPick;
    std::function<void()> onCancel;

    // While it waits it shows that it is busy, and looks for no media.
    void setWaiting(bool waiting);

    void loadView() override;
    void viewDidLoad() override;
    void viewDidAppear(Animated animated) override;
    void viewWillLayoutSubviews() override;

private:
    void startListing();
    void showFiles();
    MediaKinds chosenKinds() const;

    const MediaKinds kinds_;
    std::shared_ptr<PickerPage> page_;
    std::shared_ptr<PickerBar> bar_;
    std::shared_ptr<UISegmentedControl> filter_; // null where there is nothing to choose
    std::shared_ptr<MediaGridView> grid_;
    std::shared_ptr<PickerNotice> notice_;
    std::vector<LibraryFile> files_;
    bool isWaiting_ = false, isListing_ = false, isListed_ = false;
    std::stop_source listing_;
};

} // namespace platform

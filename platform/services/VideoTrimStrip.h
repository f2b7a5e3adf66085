// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIControl.h"

#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace platform {

// A film from its beginning on the left to its end, with a handle for the beginning and one for the end of the part that
// is kept, and a head where it is looked at. Each is dragged, or moved by the arrows (a thirtieth of a second, with Shift a
// whole one), and a slider to assistive technology. Main thread only.
class VideoTrimStrip : public UIView {
public:
    enum class Handle { start, end, head };

    VideoTrimStrip();

    // Seconds. A film without a length has one of nothing.
    double duration() const { return duration_; }
    // Keeps all of it, or as much as `longest` allows, from the beginning; 0: any.
    void setDuration(double duration, double longest);
    double start() const { return start_; }
    double end() const { return end_; }
    double head() const { return head_; } // between the two
    void setHead(double head);

    // The user moved a handle; the beginning and the end take the head with them.
    std::function<void(Handle)> onMove;

    // How many pictures fill it, when they are that much wider than high.
    std::size_t pictureCount(double aspect) const;
    // Side by side; empty ones leave gaps.
    void setPictures(std::vector<UIImage> pictures);
    const std::vector<UIImage>& pictures() const { return pictures_; }

    void draw(CGContext& context, CGRect dirty) override;
    void layoutSubviews() override;

private:
    class Grip;
    double valueOf(Handle handle) const;
    void move(Handle handle, double to);
    CGRect filmRect() const;
    CGFloat placeOf(double seconds) const;

    std::array<std::shared_ptr<Grip>, 3> grips_; // in the order of Handle
    std::vector<UIImage> pictures_;
    double duration_ = 0, longest_ = 0, start_ = 0, end_ = 0, head_ = 0;
};

} // namespace platform

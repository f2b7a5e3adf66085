// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/NumericControl.h"

#include <memory>
#include <optional>

namespace platform {

class FocusRing;

enum class UIPageControlBackgroundStyle {
    automatic, // prominent while somebody uses it: the pointer is over it or it has the keyboard
    prominent, // dots on a capsule, to be seen on anything
    minimal,   // the dots alone
};

// A row of dots that says which page is seen; a click on a dot, or a drag along them, goes there. Where there are more
// dots than room those around the present one are shown. Sends valueChanged when the user goes to another page.
// Main thread only.
class UIPageControl : public NumericControl {
public:
    UIPageControl();
    explicit UIPageControl(CGRect frame);
    ~UIPageControl() override;

    int numberOfPages() const { return pages_; }
    void setNumberOfPages(int pages); // negative: none
    int currentPage() const;
    void setCurrentPage(int page); // clamped; tells nobody
    bool hidesForSinglePage() const { return hidesForSinglePage_; }
    void setHidesForSinglePage(bool hides);
    void setPageIndicatorTintColor(std::optional<UIColor> color);
    void setCurrentPageIndicatorTintColor(std::optional<UIColor> color); // null: label
    UIPageControlBackgroundStyle backgroundStyle() const { return backgroundStyle_; }
    void setBackgroundStyle(UIPageControlBackgroundStyle style); // default automatic
    // Of the dots alone.
    CGSize sizeForNumberOfPages(int pages) const;

    void draw(CGContext& context, CGRect dirty) override;
    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    AccessibilityProperties accessibilityNow() const override;
    void pointerEntered() override { setHovered(true); }
    void pointerExited() override { setHovered(false); }
    bool accessibilitySetValue(double page) override
    {
        return NumericControl::accessibilitySetValue(page - 1);
    }

protected:
    double pageStep() const override { return 1; }
    void controlStateChanged() override;
    bool beginTracking(UITouch& touch) override;
    bool continueTracking(UITouch& touch) override;

private:
    struct Row {
        int first = 0; // of the dots that have room
        int count = 0;
        CGFloat start = 0; // the middle of the first one in reading order
        CGFloat pitch = 0; // signed
    };
    Row row() const;
    void goTo(CGFloat x);
    void setHovered(bool isHovered);
    bool hasCapsule() const;
    CGRect capsule() const;
    CGFloat margins() const; // beside the dots

    std::shared_ptr<FocusRing> ring_;
    std::optional<UIColor> color_, currentColor_;
    int pages_ = 0;
    bool hidesForSinglePage_ = false;
    bool isHovered_ = false;
    UIPageControlBackgroundStyle backgroundStyle_ = UIPageControlBackgroundStyle::automatic;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIViewController.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class FocusRing;

// A row of segments of which one is chosen, or none. Sends valueChanged when the user chooses another. The arrow keys go
// to the neighbours. All segments are as wide as the widest wants; titles without room are cut. Main thread only.
class UISegmentedControl : public UIControl {
public:
    static constexpr int noSegment = -1;

    UISegmentedControl();
    explicit UISegmentedControl(const std::vector<std::string>& titles);
    ~UISegmentedControl() override;

    std::size_t numberOfSegments() const { return segments_.size(); }
    // Keeps what is selected where it is still there.
    void setTitles(const std::vector<std::string>& titles);
    void insertSegment(std::string title, std::size_t index); // past the end appends
    void removeSegment(std::size_t index);                    // past the end does nothing
    void removeAllSegments();
    std::string titleForSegment(std::size_t index) const; // empty past the end
    bool isEnabledForSegment(std::size_t index) const;
    void setEnabledForSegment(std::size_t index, bool isEnabled);
    int selectedSegmentIndex() const { return selected_; }
    // Tells nobody. An index that there is not selects none.
    void setSelectedSegmentIndex(int index, Animated animated = Animated::no);
    void setSelectedSegmentTintColor(std::optional<UIColor> color); // null: a raised white

    void draw(CGContext& context, CGRect dirty) override;
    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    bool pressesBegan(const UIPress& press) override;
    void tintColorDidChange() override;
    void didMoveToSuperview() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    std::shared_ptr<UIView> hitTest(CGPoint point) override;
    AccessibilityProperties accessibilityNow() const override;
    bool accessibilityActivate() override { return false; }

protected:
    void controlStateChanged() override;
    bool beginTracking(UITouch& touch) override;
    bool continueTracking(UITouch& touch) override;
    void endTracking(UITouch& touch) override;
    void cancelTracking() override;

private:
    class Segment;
    class Pill;
    void segmentsChanged();
    void updateColors();
    void placePill();
    void select(int index);
    int segmentAt(CGFloat x) const;
    int neighbour(int from, int direction) const;
    CGRect rectOf(int index) const;
    bool isRightToLeft() const;

    std::vector<std::shared_ptr<Segment>> segments_;
    std::shared_ptr<Pill> pill_;
    std::shared_ptr<FocusRing> ring_;
    int selected_ = noSegment;
    int pressed_ = noSegment;
};

} // namespace platform

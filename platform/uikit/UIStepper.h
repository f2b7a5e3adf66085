// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/NumericControl.h"

#include <memory>

namespace platform {

class FocusRing;
class Timer;

// Two buttons that lower and raise a number by steps: from 0 to 100 by 1 at first. Held down they go on. Main thread only.
class UIStepper : public NumericControl {
public:
    UIStepper();
    explicit UIStepper(CGRect frame); // of which only the origin counts
    ~UIStepper() override;

    bool wraps() const { return wraps_; } // past one end comes the other; default no
    void setWraps(bool wraps);
    bool autorepeats() const { return autorepeats_; } // default yes
    void setAutorepeat(bool repeats) { autorepeats_ = repeats; }

    void draw(CGContext& context, CGRect dirty) override;
    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    void tintColorDidChange() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    void willMoveToWindow(UIWindow* window) override;
    AccessibilityProperties accessibilityNow() const override;

protected:
    double arrowStep() const override;
    double pageStep() const override;
    double wished(double value) const override;
    void controlStateChanged() override;
    bool beginTracking(UITouch& touch) override;
    bool continueTracking(UITouch& touch) override;
    void endTracking(UITouch& touch) override;
    void cancelTracking() override;

private:
    enum class Half { none, lower, raise };
    Half halfAt(CGPoint point) const;
    bool canGo(Half half) const;
    void step(Half half);
    void startRepeating();
    void stopRepeating();
    CGRect box() const;
    CGRect rectOf(Half half) const;

    std::shared_ptr<FocusRing> ring_;
    std::shared_ptr<Timer> timer_; // while a half is held
    double firstValue_ = 0;        // of the touch
    Half pressed_ = Half::none;    // where the touch came down
    bool isOver_ = false;          // and still is
    int repeats_ = 0;
    bool wraps_ = false;
    bool autorepeats_ = true;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/Token.h"
#include "platform/uikit/PointerInput_p.h"
#include "platform/uikit/UIWindow.h"

#include <optional>

#include <QtGui/QBackingStore>
#include <QtGui/QWindow>

class QInputMethodEvent;
class QInputMethodQueryEvent;

namespace platform {

// The window system's window of a UIWindow: paints its frames into a raster surface and turns events into ours. It
// outlives its UIWindow by the event that is being handled. Main thread only.
class RasterWindow : public QWindow {
public:
    explicit RasterWindow(UIWindow& owner);
    ~RasterWindow() override;

    void open();
    // No calls to the UIWindow from here on; deletes itself when the present event is over.
    void drop();
    void textInputDidChange();

    QAccessibleInterface* accessibleRoot() const override;

protected:
    bool event(QEvent* event) override;

private:
    std::shared_ptr<UIWindow> owner() const { return owner_.lock(); }
    bool handle(UIWindow& owner, QEvent& event);
    void answerInputMethod(UIWindow& owner, QInputMethodQueryEvent& query);
    void takeComposedText(UIWindow& owner, const QInputMethodEvent& event);

    CGSize contentSize() const; // points
    bool frameIsDue();
    void exposed(UIWindow& owner);
    void paintFrame(UIWindow& owner);
    void flush(UIWindow& owner, const QRegion& region);
    void followScale(UIWindow& owner);
    void tellCaretPlace(UIWindow& owner);

    std::weak_ptr<UIWindow> owner_;
    QBackingStore store_;
    PointerInput pointers_;
    Token displayObserver_;
    std::optional<Instant> lastFrame_; // none before the first
    double scale_ = 1;
    bool isUpdateRequested_ = false;
    bool waitsForCompositor_ = false; // frames come when the window system wants them
    QMargins paintedMargins_; // the frame around what was painted last; where the compositor is waited for
    bool isComposing_ = false;
    CGRect toldCaret_ = CGRect::null();
};

} // namespace platform

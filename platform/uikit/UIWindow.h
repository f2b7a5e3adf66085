// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

class UIImage;

// The root of a view tree: on the desktop's window system once it is made visible, or of no display at all
// (see snapshot.h). Keeps a dirty region and paints only that; dispatches events to the views.
// Main thread only.
class UIWindow : public UIView {
public:
    explicit UIWindow(CGRect frame); // points; the origin is the window system's to choose
    ~UIWindow() override;

    const std::shared_ptr<UIViewController>& rootViewController() const { return rootViewController_; }
    void setRootViewController(std::shared_ptr<UIViewController> controller);

    // Opens the window on the desktop: root controller's view loaded, laid out and painted before it is mapped, so
    // that nobody sees an empty frame. Requires displayIsAvailable().
    void makeKeyAndVisible();
    bool isVisible() const;
    bool isKeyWindow() const; // has the keyboard
    // Closes it: disappearance events, then the backing is dropped. onClose is called once. The window may be deleted
    // by its owner inside onClose.
    void close();

    std::function<void()> onClose; // the user closed it or close() was called
    // Offered every key that no responder handled. True when it was used.
    std::function<bool(const UIPress&)> onUnhandledPress;
    // Called once, when the first painted frame has been handed to the window system.
    std::function<void()> onFirstFrame;

    void setTitle(std::string title);
    void setMinimumSize(CGSize size);
    // The part of the screen that windows may cover, and its scale. A common desktop's size without a display.
    static CGRect availableScreenBounds();

    std::shared_ptr<UIResponder> firstResponder() const { return firstResponder_.lock(); }
    // Null gives it up. False when the present one refuses to let go or the other does not want it.
    bool makeFirstResponder(std::shared_ptr<UIResponder> responder);
    // Moves the keyboard to the next view that wants it, in reading order.
    void advanceFocus(bool backwards);

    // Edges that the window's own furniture covers.
    void setBaseSafeAreaInsets(UIEdgeInsets insets);
    // Appearance, contrast, text size ... of this window; the desktop's unless set here.
    void setBaseTraits(const UITraitCollection& traits);

    // Lays out and paints what is dirty, now, into `context`, whose coordinates are this window's points.
    void layoutNow();
    void paint(CGContext& context, CGRect dirty);

    // Events, in window coordinates, as the window system or a test sends them. True when a view took it.
    void sendTouch(UITouch& touch); // the same object from began to ended or cancelled
    bool sendPress(const UIPress& press);
    bool sendScroll(const UIScrollWheel& wheel);
    void sendHover(CGPoint location); // the pointer moved with no button down
    void sendHoverExit();
    // What input methods ask and do goes to the first responder's textInput().
    UITextInput* activeTextInput() const;

    // The region that the next frame paints, as a few rectangles.
    const std::vector<CGRect>& dirtyRegion() const { return dirty_; }

    void setFrameSize(CGSize size);

private:
    friend class UIView;
    friend class UIResponder;
    friend class WindowBackend;
    friend class GestureArena;
    struct Dispatch;

    void addDirty(CGRect rect);
    void requestFrame();

    std::shared_ptr<UIViewController> rootViewController_;
    std::weak_ptr<UIResponder> firstResponder_;
    std::vector<CGRect> dirty_;
    std::unique_ptr<class WindowBackend> backend_; // null without a window on the desktop
    std::unique_ptr<Dispatch> dispatch_;
    std::string title_;
    CGSize minimumSize_;
    bool reportedFirstFrame_ = false;
};

} // namespace platform

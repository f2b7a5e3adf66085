// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/uikit/DirtyRegion.h"
#include "platform/uikit/UIView.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

class UIWindowScene;
class WindowBackend;

// The root of a view tree: on the desktop's window system once it is made visible, or of no display at all
// (see snapshot.h). Keeps a dirty region and paints only that; dispatches events to the views.
// Main thread only.
class UIWindow : public UIView {
public:
    explicit UIWindow(CGRect frame); // points; the origin is the window system's to choose
    ~UIWindow() override;

    const std::shared_ptr<UIViewController>& rootViewController() const { return rootViewController_; }
    void setRootViewController(std::shared_ptr<UIViewController> controller);

    // The scene that the window is shown in. Null before it is shown, unless set, and after it is closed.
    const std::shared_ptr<UIWindowScene>& windowScene() const { return windowScene_; }
    // Requires: not null while the window is shown.
    void setWindowScene(std::shared_ptr<UIWindowScene> scene);

    // Opens the window on the desktop: root controller's view loaded, laid out and painted before it is mapped, so
    // that nobody sees an empty frame. Requires displayIsAvailable().
    void makeKeyAndVisible();
    // Makes it visible to its views without a display: they get all events of appearing, are laid out, and can be
    // painted with `paint`. For pictures and for tests.
    void showOffscreen();
    bool isVisible() const { return isVisible_; }
    // Not closed and, where it has a place on the desktop, shown there: neither minimised nor still to be mapped.
    bool isOnScreen() const;
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
    // Moves the keyboard to the next view that wants it, in reading order, and scrolls so that it is seen.
    enum class FocusDirection { forward, backward };
    void advanceFocus(FocusDirection direction);

    // --- Modality ---------------------------------------------------------------------------------
    // While there is a modal view, keys, the focus and assistive technology stay inside of it: the one begun last of
    // those that are in this window. The keyboard goes back to who had it. Touches go by what is in front, which the
    // caller sees to. A view that goes ends by itself.
    void beginModal(const std::shared_ptr<UIView>& view);
    void endModal(const UIView& view);
    std::shared_ptr<UIView> modalView() const; // null when there is none
    // Offers the press as a shortcut to a view and those in it that are on screen, the innermost first. True when it was used.
    static bool offerShortcut(UIView& view, const UIPress& press);

    // Edges that the window's own furniture covers.
    void setBaseSafeAreaInsets(UIEdgeInsets insets);
    // Appearance, contrast, text size ... of this window; the desktop's unless set here.
    void setBaseTraits(const UITraitCollection& traits);
    UITraitCollection baseTraits() const;

    // Lays out what asks for it and completes appearances. Otherwise the run loop does so before it sleeps.
    void layoutNow();
    // Paints everything in `dirty` (window coordinates) into `context`, whose coordinates are this window's points, as
    // it is laid out. The dirty region stays. Requires: not called from painting or from layout.
    void paint(CGContext& context, CGRect dirty);
    // The region that the next frame paints, as a few rectangles that do not overlap.
    const DirtyRegion& dirtyRegion() const { return dirty_; }
    // Hands the region over to who paints it; it is clean then.
    DirtyRegion takeDirtyRegion();

    // Events, in window coordinates, as the window system or a test sends them. True when somebody took it. Whatever a
    // view does with one, it may remove views and close this window; the caller keeps the window alive.
    void sendTouch(UITouch& touch); // the same object from began to ended or cancelled
    // First the responders from the first one on; then, for a key that types, the first responder's text input; then
    // the shortcuts of the views on screen; then `onUnhandledPress`; then Tab moves the focus.
    bool sendPress(const UIPress& press);
    void sendPressEnded(const UIPress& press);
    bool sendScroll(const UIScrollWheel& wheel);
    void sendHover(CGPoint location); // the pointer moved with no button down
    void sendHoverExit();
    // What input methods ask and do goes to the first responder's textInput().
    UITextInput* activeTextInput() const;

    // What the window system, or a test, says: the new size of the content, and who has the keyboard.
    void setFrameSize(CGSize size);
    void setKeyWindow(bool isKey);

private:
    friend class UIView;
    friend class UIViewController;
    friend class UIResponder;
    friend class UIApplication;
    friend class RasterWindow;
    struct Dispatch;
    enum class Phase { idle, layout, paint };
    class PhaseScope;

    void show();
    void installRootView();
    void addDirty(CGRect rect);
    void requestFrame();
    void completeAppearances();
    std::string shownTitle() const;
    void titleDidChange();
    void viewWillLeave(UIView& view);
    void firstResponderDidChange();
    void endModalsBelow(const UIView& view);
    bool keepsKeyboardFrom(UIResponder& responder) const; // something modal is in front of it
    std::shared_ptr<UIResponder> keyResponder() const;    // where a key press begins
    void surroundingsDidChange();                         // the desktop's settings, or the screen
    void setHovered(const std::shared_ptr<UIView>& view);
    bool isAllDirty() const { return dirty_.contains({{}, bounds().size}); }

    // all main thread only
    std::shared_ptr<UIViewController> rootViewController_;
    std::shared_ptr<UIWindowScene> windowScene_;
    std::weak_ptr<UIResponder> firstResponder_;
    DirtyRegion dirty_;
    std::unique_ptr<WindowBackend> backend_; // null without a window on the desktop
    std::unique_ptr<Dispatch> dispatch_;
    std::vector<std::weak_ptr<UIViewController>> appearing_; // viewDidAppear is due after layout
    Token layoutObserver_;
    std::optional<UITraitCollection> baseTraits_; // none: the desktop's
    UIEdgeInsets baseSafeAreaInsets_;
    std::string title_;
    CGSize minimumSize_;
    Phase phase_ = Phase::idle;
    bool isVisible_ = false;
    bool isKey_ = false;
    bool isClosed_ = false;
    bool reportedFirstFrame_ = false;
};

} // namespace platform

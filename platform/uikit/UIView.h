// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/graphics/UIColor.h"
#include "platform/graphics/UIRectCorner.h"
#include "platform/uikit/AnimationTiming.h"
#include "platform/uikit/UIAccessibility.h"
#include "platform/uikit/UIResponder.h"
#include "platform/uikit/UITraitCollection.h"
#include "platform/uikit/UIViewShadow.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

// A view offers this in place of a width or a height that it does not have.
inline constexpr CGFloat noIntrinsicMetric = -1;

enum class UISemanticContentAttribute { unspecified, forceLeftToRight, forceRightToLeft };

// How a view follows its superview's size where no constraints hold it; an option set.
struct UIViewAutoresizing {
    unsigned rawValue = 0;
    static constexpr unsigned flexibleLeftMargin = 1, flexibleWidth = 2, flexibleRightMargin = 4,
                              flexibleTopMargin = 8, flexibleHeight = 16, flexibleBottomMargin = 32;
    bool contains(unsigned flags) const { return (rawValue & flags) == flags; }
    bool operator==(const UIViewAutoresizing&) const = default;
};

// What stops when an animation is over: true when it ran to its end, false when it was replaced.
using AnimationCompletion = std::function<void(bool finished)>;

// A rectangle on screen with its own coordinates, look, subviews and events. A superview owns its
// subviews, in painting order: later ones are in front. Main thread only.
//
// Geometry and look have two faces while an animation runs: the accessors below give the value that was
// set (where the view is going), `presentation…` gives what is on screen now.
class UIView : public UIResponder {
public:
    UIView();
    explicit UIView(CGRect frame);
    ~UIView() override;

    // --- The tree ---------------------------------------------------------------------------------
    std::shared_ptr<UIView> superview() const;
    const std::vector<std::shared_ptr<UIView>>& subviews() const { return subviews_; }
    std::shared_ptr<UIWindow> window() const;
    // Each takes the view out of its former superview first.
    void addSubview(std::shared_ptr<UIView> view);
    void insertSubview(std::shared_ptr<UIView> view, std::size_t index); // index past the end appends
    void insertSubviewAbove(std::shared_ptr<UIView> view, const UIView& sibling);
    void insertSubviewBelow(std::shared_ptr<UIView> view, const UIView& sibling);
    void bringSubviewToFront(const UIView& view);
    void sendSubviewToBack(const UIView& view);
    void removeFromSuperview(); // the caller may hold the last reference
    // Makes `views` the subviews, in that order, moving as few as needed. Views that stay are told nothing.
    void setSubviews(const std::vector<std::shared_ptr<UIView>>& views);
    // True for the view itself.
    bool isDescendant(const UIView& ancestor) const;
    // The controller whose view this is; null for most views.
    std::shared_ptr<UIViewController> viewController() const;

    virtual void didAddSubview(UIView&) { }
    virtual void willRemoveSubview(UIView&) { }
    virtual void willMoveToSuperview(UIView*) { }
    virtual void didMoveToSuperview() { }
    virtual void willMoveToWindow(UIWindow*) { }
    virtual void didMoveToWindow() { }

    // --- Geometry, in points ----------------------------------------------------------------------
    // In the superview's coordinates. Under a transform: the upright box around the transformed view.
    CGRect frame() const;
    void setFrame(CGRect frame);
    CGRect bounds() const { return bounds_; }
    void setBounds(CGRect bounds); // a moved origin scrolls the content
    CGPoint center() const { return center_; }
    void setCenter(CGPoint center);
    CGAffineTransform transform() const { return transform_; } // about the centre
    void setTransform(CGAffineTransform transform);
    CGRect presentationFrame() const;
    CGRect presentationBounds() const;
    CGPoint presentationCenter() const;
    CGAffineTransform presentationTransform() const;
    CGFloat presentationAlpha() const;
    std::optional<UIColor> presentationBackgroundColor() const;
    CGFloat presentationCornerRadius() const;
    // Between this view's coordinates and another's; null means the window's.
    CGPoint convertTo(CGPoint point, const UIView* target) const;
    CGPoint convertFrom(CGPoint point, const UIView* source) const;
    CGRect convertTo(CGRect rect, const UIView* target) const;
    CGRect convertFrom(CGRect rect, const UIView* source) const;

    // --- Look ------------------------------------------------------------------------------------
    CGFloat alpha() const { return alpha_; } // of the view with all it holds, 0 to 1
    void setAlpha(CGFloat alpha);
    bool isHidden() const { return isHidden_; }
    void setHidden(bool hidden);
    const std::optional<UIColor>& backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(std::optional<UIColor> color);
    bool clipsToBounds() const { return clipsToBounds_; } // default false: children may paint outside
    void setClipsToBounds(bool clips);
    CGFloat cornerRadius() const { return cornerRadius_; }
    void setCornerRadius(CGFloat radius);
    UIRectCorner maskedCorners() const { return maskedCorners_; } // which the radius rounds; default all
    void setMaskedCorners(UIRectCorner corners);
    // Only where the mask paints is this view seen, as much as the mask is opaque. In this view's coordinates; the
    // mask's superview is this view although it is none of the subviews.
    const std::shared_ptr<UIView>& mask() const { return mask_; }
    void setMask(std::shared_ptr<UIView> mask);
    // Null: none. The shadow of a view that clips lies around its bounds.
    std::optional<UIViewShadow> shadow() const;
    void setShadow(const std::optional<UIViewShadow>& shadow);
    // Inherited from the nearest superview that has one; then the desktop's accent, or the system's blue.
    UIColor tintColor() const;
    void setTintColor(std::optional<UIColor> color);
    virtual void tintColorDidChange() { }
    // Above or below siblings whatever the order; default 0.
    CGFloat zPosition() const { return zPosition_; }
    void setZPosition(CGFloat position);

    void setNeedsDisplay();
    void setNeedsDisplay(CGRect rect); // own coordinates
    // Paints the view's own content over its background; subviews follow. `dirty` is in own coordinates; what
    // is painted outside of it is clipped.
    virtual void draw(CGContext&, CGRect /*dirty*/) { }

    // --- Layout ----------------------------------------------------------------------------------
    void setNeedsLayout();
    void layoutIfNeeded();
    // Places the subviews. The default applies the constraints that this view owns.
    virtual void layoutSubviews();
    // The size that suits the content in the space given; the default is the present size.
    virtual CGSize sizeThatFits(CGSize available) const;
    void sizeToFit();
    virtual CGSize intrinsicContentSize() const { return {noIntrinsicMetric, noIntrinsicMetric}; }
    void invalidateIntrinsicContentSize();
    // How firmly constraints keep the view from being larger (hugging, default 250) and smaller (compression, default
    // 750) than its intrinsic size; a layout priority of 1 to 1000.
    float contentHuggingPriority(UILayoutAxis axis) const;
    void setContentHuggingPriority(float priority, UILayoutAxis axis);
    float contentCompressionResistancePriority(UILayoutAxis axis) const;
    void setContentCompressionResistancePriority(float priority, UILayoutAxis axis);
    // The size near `target` that the constraints on the view and below want; zero asks for the smallest.
    CGSize systemLayoutSizeFitting(CGSize target);
    UIViewAutoresizing autoresizingMask() const { return autoresizingMask_; }
    void setAutoresizingMask(UIViewAutoresizing mask);
    bool translatesAutoresizingMaskIntoConstraints() const { return translatesAutoresizingMask_; }
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates);
    UIEdgeInsets safeAreaInsets() const { return safeAreaInsets_; }
    virtual void safeAreaInsetsDidChange() { }

    std::shared_ptr<UILayoutGuide> safeAreaLayoutGuide();
    NSLayoutXAxisAnchor leadingAnchor();
    NSLayoutXAxisAnchor trailingAnchor();
    NSLayoutXAxisAnchor leftAnchor();
    NSLayoutXAxisAnchor rightAnchor();
    NSLayoutXAxisAnchor centerXAnchor();
    NSLayoutYAxisAnchor topAnchor();
    NSLayoutYAxisAnchor bottomAnchor();
    NSLayoutYAxisAnchor centerYAnchor();
    NSLayoutYAxisAnchor firstBaselineAnchor();
    NSLayoutYAxisAnchor lastBaselineAnchor();
    NSLayoutDimension widthAnchor();
    NSLayoutDimension heightAnchor();
    // Distances of the first and last text baseline from the top and bottom edge; the edges by default.
    virtual CGFloat firstBaselineOffset() const { return bounds_.size.height; }
    virtual CGFloat lastBaselineOffset() const { return 0; }
    // The active constraints that this view solves when it lays out.
    std::vector<std::shared_ptr<NSLayoutConstraint>> constraints() const;

    // --- Surroundings ----------------------------------------------------------------------------
    const UITraitCollection& traitCollection() const { return *traits_; }
    UIUserInterfaceStyle overrideUserInterfaceStyle() const { return overrideStyle_; }
    void setOverrideUserInterfaceStyle(UIUserInterfaceStyle style);
    // The text size of this view and of those below, instead of the inherited one.
    std::optional<UIContentSizeCategory> overrideContentSizeCategory() const { return overrideContentSize_; }
    void setOverrideContentSizeCategory(std::optional<UIContentSizeCategory> category);
    UISemanticContentAttribute semanticContentAttribute() const { return semanticContentAttribute_; }
    void setSemanticContentAttribute(UISemanticContentAttribute attribute);
    UIUserInterfaceLayoutDirection effectiveUserInterfaceLayoutDirection() const;
    virtual void traitCollectionDidChange(const UITraitCollection& /*previous*/) { }

    // --- Events ----------------------------------------------------------------------------------
    bool isUserInteractionEnabled() const { return isUserInteractionEnabled_; }
    void setUserInteractionEnabled(bool enabled);
    // The front-most view under `point` (own coordinates) that takes events; null when none does. Views that are
    // hidden, nearly clear or disabled take none, nor do their subviews.
    virtual std::shared_ptr<UIView> hitTest(CGPoint point);
    virtual bool pointInside(CGPoint point) const;
    const std::vector<std::shared_ptr<UIGestureRecognizer>>& gestureRecognizers() const
    {
        return gestureRecognizers_;
    }
    void addGestureRecognizer(std::shared_ptr<UIGestureRecognizer> recognizer);
    void removeGestureRecognizer(const UIGestureRecognizer& recognizer);
    // The pointer came over the view or left it.
    virtual void pointerEntered() { }
    virtual void pointerExited() { }
    enum class Cursor { arrow, text, pointingHand, resizeHorizontal, resizeVertical };
    // A key that no responder and no text took, offered to all views on screen, front-most first. True when it was this
    // view's shortcut.
    virtual bool performKeyEquivalent(const UIPress&) { return false; }
    // What the pointer looks like at `point`, own coordinates; none asks the superview.
    virtual std::optional<Cursor> cursorAt(CGPoint) const { return std::nullopt; }

    std::shared_ptr<UIResponder> next() const override;

    // --- Animation -------------------------------------------------------------------------------
    // Runs `changes` at once; geometry, transform, alpha, background colour and corner radius that it sets move
    // there from what is on screen. An animation that is replaced hands its speed on to a spring.
    static void animate(const AnimationTiming& timing, const std::function<void()>& changes,
                        AnimationCompletion completion = {});
    // Changes made inside are not animated, whatever surrounds them.
    static void performWithoutAnimation(const std::function<void()>& changes);
    // The timing that changes made now would be animated with; null outside of `animate`.
    static const AnimationTiming* currentAnimation();
    void removeAllAnimations(); // what was set is on screen at once
    bool isAnimating() const;

    // --- Accessibility ---------------------------------------------------------------------------
    // What the accessibility bus is told; see UIAccessibility.h. The view's children stand under it.
    AccessibilityProperties& accessibility();
    const AccessibilityProperties& accessibility() const;
    // The default gives what `accessibility()` was set to.
    virtual AccessibilityProperties accessibilityNow() const { return accessibility(); }
    virtual AccessibleText* accessibleText() { return nullptr; }
    virtual bool accessibilityActivate() { return false; } // the default action, as a click; true when done
    // For a view whose properties have a range and that can be adjusted; the value is inside of the range. True when done.
    virtual bool accessibilitySetValue(double) { return false; }
    virtual bool accessibilityAdjust(int /*steps*/) { return false; } // up or, negative, down

protected:
    std::shared_ptr<UIWindow> responderWindow() const override;

private:
    friend class UIWindow;
    friend class UIViewController;
    friend class NSLayoutConstraint;
    friend class ViewPainter;
    friend class ViewLayout;
    friend class ViewAnimator;
    friend class SubviewBounds;
    struct Animations;

    // Marks the place on screen dirty that this view and what shows outside of it take at the moment.
    void markPlaceDirty();
    // What `visualFrame` tells has changed: the views around learn of it.
    void visualFrameDidChange();
    void subviewOrderDidChange();
    void markDirty(CGRect rect); // own coordinates

    void adopt(std::shared_ptr<UIView> view, std::size_t index);
    void release(UIView& subview);
    // A change of window goes down the tree three times: will-calls, the fact, did-calls.
    void leaveWindowFor(UIWindow* window);
    void tellWillMoveToWindow(UIWindow* window);
    void setWindow(UIWindow* window);
    void tellDidMoveToWindow();
    void finishMove(const UIColor& formerTint);

    void inheritTraits();
    void tellTintColorChanged();
    void resizeSubviews(CGSize before);
    void didChangeBounds(CGRect before);
    void updateSafeArea();
    CGAffineTransform mapToSuperview() const;      // of what is on screen
    CGAffineTransform modelMapToSuperview() const; // of what was set
    CGAffineTransform modelMapToRoot(const UIView*& root) const;
    CGRect visualBounds() const; // with what shows outside of the bounds; own coordinates
    CGRect visualFrame() const;  // the same in the superview's coordinates; null while hidden
    SubviewBounds& subviewBounds() const;

    bool offerKeyEquivalent(const UIPress& press);
    bool inheritsTint() const; // no view from here up has a tint of its own
    bool wantsLayout() const { return needsLayout_ || subtreeNeedsLayout_; }
    void layoutSubtree();
    void markSuperviewsForLayout();
    LayoutState& layoutState();

    // All main thread only.
    // The superview and the window outlive their place here: each clears it before it goes.
    UIView* superview_ = nullptr;
    UIWindow* window_ = nullptr;
    UIWindow* toldWindow_ = nullptr; // the last that didMoveToWindow was about; never looked into
    std::vector<std::shared_ptr<UIView>> subviews_;
    std::weak_ptr<UIViewController> viewController_;

    CGRect bounds_;
    CGPoint center_;
    CGAffineTransform transform_;
    CGFloat alpha_ = 1;
    CGFloat cornerRadius_ = 0;
    CGFloat zPosition_ = 0;
    std::optional<UIColor> backgroundColor_;
    std::unique_ptr<const UIColor> tintColor_; // null: inherited
    std::shared_ptr<UIView> mask_;
    std::shared_ptr<const UIViewShadow> shadow_; // null for most views
    UIRectCorner maskedCorners_ = UIRectCorner::allCorners;
    bool isHidden_ = false;
    bool clipsToBounds_ = false;
    bool isUserInteractionEnabled_ = true;
    bool translatesAutoresizingMask_ = true;
    bool needsLayout_ = true;
    bool subtreeNeedsLayout_ = true;
    UIViewAutoresizing autoresizingMask_;
    std::uint32_t placeAmongSubviews_ = 0; // of the superview, while that knows their bounds
    UIEdgeInsets safeAreaInsets_;

    std::shared_ptr<const UITraitCollection> traits_; // never null; the superview's own unless they differ
    UIUserInterfaceStyle overrideStyle_ = UIUserInterfaceStyle::unspecified;
    std::optional<UIContentSizeCategory> overrideContentSize_;
    UISemanticContentAttribute semanticContentAttribute_ = UISemanticContentAttribute::unspecified;

    std::vector<std::shared_ptr<UIGestureRecognizer>> gestureRecognizers_;
    std::unique_ptr<AccessibilityProperties> accessibility_; // null until something is set
    std::shared_ptr<Animations> animations_;   // null while nothing moves; the animator knows what it is
    std::unique_ptr<LayoutState> layoutState_; // null without constraints and guides
    mutable std::unique_ptr<SubviewBounds> subviewBounds_; // null until somebody asks
};

} // namespace platform

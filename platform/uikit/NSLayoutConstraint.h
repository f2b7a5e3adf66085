// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/NSLayoutAnchor.h"

#include <memory>
#include <vector>

namespace platform {

enum class NSLayoutRelation { lessThanOrEqual = -1, equal = 0, greaterThanOrEqual = 1 };

// How much a constraint counts where not all can hold. 1000 must hold.
using UILayoutPriority = float;
inline constexpr UILayoutPriority UILayoutPriorityRequired = 1000;
inline constexpr UILayoutPriority UILayoutPriorityDefaultHigh = 750;
inline constexpr UILayoutPriority UILayoutPriorityDefaultLow = 250;

// first.attribute (=, >=, <=) multiplier x second.attribute + constant. While active it is owned by the nearest common
// superview of its two items, which solves it when it lays out. A required constraint that contradicts others is
// logged and loses; nothing crashes. Main thread only.
class NSLayoutConstraint : public NSObject {
public:
    // Requires: firstItem is a UIView or UILayoutGuide; second likewise or null (then `attribute` is notAnAttribute).
    NSLayoutConstraint(std::shared_ptr<NSObject> firstItem, NSLayoutAttribute firstAttribute,
                       NSLayoutRelation relation, std::shared_ptr<NSObject> secondItem,
                       NSLayoutAttribute secondAttribute, CGFloat multiplier, CGFloat constant);

    // Activates all, in order. Requires: each pair of items has a common superview.
    static void activateConstraints(const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints);
    static void deactivateConstraints(const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints);

    bool isActive() const;
    void setActive(bool active);
    std::shared_ptr<NSObject> firstItem() const { return firstItem_.lock(); }
    std::shared_ptr<NSObject> secondItem() const { return secondItem_.lock(); }
    NSLayoutAttribute firstAttribute() const { return firstAttribute_; }
    NSLayoutAttribute secondAttribute() const { return secondAttribute_; }
    NSLayoutRelation relation() const { return relation_; }
    CGFloat multiplier() const { return multiplier_; }
    CGFloat constant() const { return constant_; }
    void setConstant(CGFloat constant);
    UILayoutPriority priority() const { return priority_; }
    void setPriority(UILayoutPriority priority);

private:
    friend class ViewLayout;
    std::weak_ptr<NSObject> firstItem_, secondItem_;
    NSLayoutAttribute firstAttribute_, secondAttribute_;
    NSLayoutRelation relation_;
    CGFloat multiplier_, constant_;
    UILayoutPriority priority_ = UILayoutPriorityRequired;
    std::weak_ptr<UIView> owner_;
    bool conflictIsReported_ = false; // one line in the log a change
};

// A rectangle for constraints that is no view. Owned by its view. Main thread only.
class UILayoutGuide : public NSObject {
public:
    std::shared_ptr<UIView> owningView() const { return owner_.lock(); }
    CGRect layoutFrame() const; // the owning view's coordinates
    NSLayoutXAxisAnchor leadingAnchor();
    NSLayoutXAxisAnchor trailingAnchor();
    NSLayoutXAxisAnchor leftAnchor();
    NSLayoutXAxisAnchor rightAnchor();
    NSLayoutXAxisAnchor centerXAnchor();
    NSLayoutYAxisAnchor topAnchor();
    NSLayoutYAxisAnchor bottomAnchor();
    NSLayoutYAxisAnchor centerYAnchor();
    NSLayoutDimension widthAnchor();
    NSLayoutDimension heightAnchor();

private:
    friend class UIView;
    friend class ViewLayout;
    std::weak_ptr<UIView> owner_;
    CGRect frame_;
    bool isSafeArea_ = false;
};

} // namespace platform

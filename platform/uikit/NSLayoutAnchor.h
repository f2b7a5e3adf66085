// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/graphics/Geometry.h"
#include "platform/uikit/Forward.h"

#include <memory>

namespace platform {

enum class UILayoutAxis { horizontal, vertical };

enum class NSLayoutAttribute {
    notAnAttribute,
    left,
    right,
    top,
    bottom,
    leading,
    trailing,
    width,
    height,
    centerX,
    centerY,
    firstBaseline,
    lastBaseline,
};

// One edge, centre or length of a view or a guide, to make constraints with. A light value; it does not keep
// its item alive. The constraints it makes are not active yet.
class NSLayoutAnchor {
public:
    NSLayoutAnchor(std::weak_ptr<NSObject> item, NSLayoutAttribute attribute);
    std::shared_ptr<NSObject> item() const { return item_.lock(); }
    NSLayoutAttribute attribute() const { return attribute_; }

protected:
    std::shared_ptr<NSLayoutConstraint> constraint(int relation, const NSLayoutAnchor* other,
                                                   CGFloat multiplier, CGFloat constant) const;

private:
    std::weak_ptr<NSObject> item_;
    NSLayoutAttribute attribute_;
};

// Anchors of one axis meet only their own kind.
template <class Kind>
class NSLayoutAxisAnchor : public NSLayoutAnchor {
public:
    using NSLayoutAnchor::NSLayoutAnchor;
    std::shared_ptr<NSLayoutConstraint> constraintEqualTo(const Kind& other, CGFloat constant = 0) const
    {
        return constraint(0, &other, 1, constant);
    }
    std::shared_ptr<NSLayoutConstraint> constraintGreaterThanOrEqualTo(const Kind& other,
                                                                       CGFloat constant = 0) const
    {
        return constraint(1, &other, 1, constant);
    }
    std::shared_ptr<NSLayoutConstraint> constraintLessThanOrEqualTo(const Kind& other,
                                                                    CGFloat constant = 0) const
    {
        return constraint(-1, &other, 1, constant);
    }
};
class NSLayoutXAxisAnchor : public NSLayoutAxisAnchor<NSLayoutXAxisAnchor> {
public:
    using NSLayoutAxisAnchor::NSLayoutAxisAnchor;
};
class NSLayoutYAxisAnchor : public NSLayoutAxisAnchor<NSLayoutYAxisAnchor> {
public:
    using NSLayoutAxisAnchor::NSLayoutAxisAnchor;
};
class NSLayoutDimension : public NSLayoutAxisAnchor<NSLayoutDimension> {
public:
    using NSLayoutAxisAnchor::NSLayoutAxisAnchor;
    std::shared_ptr<NSLayoutConstraint> constraintEqualToConstant(CGFloat constant) const
    {
        return constraint(0, nullptr, 0, constant);
    }
    std::shared_ptr<NSLayoutConstraint> constraintGreaterThanOrEqualToConstant(CGFloat constant) const
    {
        return constraint(1, nullptr, 0, constant);
    }
    std::shared_ptr<NSLayoutConstraint> constraintLessThanOrEqualToConstant(CGFloat constant) const
    {
        return constraint(-1, nullptr, 0, constant);
    }
    std::shared_ptr<NSLayoutConstraint> constraintEqualTo(const NSLayoutDimension& other, CGFloat multiplier,
                                                          CGFloat constant) const
    {
        return constraint(0, &other, multiplier, constant);
    }
    using NSLayoutAxisAnchor::constraintEqualTo;
};

} // namespace platform

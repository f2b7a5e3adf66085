// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIBezierPath.h"
#include "platform/swiftui/Angle.h"
#include "platform/swiftui/AnimatableValues.h"
#include "platform/swiftui/GroupNode.h"
#include "platform/swiftui/UnitPoint.h"
#include "platform/uikit/UIViewShadow.h"

#include <functional>
#include <memory>
#include <utility>

namespace platform {

// How the content looks as a whole; its size and place in the layout stay.

// --- Opacity ---------------------------------------------------------------------------------------

// From 0 (clear, and no touch reaches the content) to 1.
struct OpacityModifier {
    double opacity = 1;
    class Node;
    bool operator==(const OpacityModifier&) const = default;
};

class OpacityModifier::Node : public GroupNode {
public:
    Node(const NodeContext& context, const OpacityModifier& modifier);

protected:
    void updateModifier(const OpacityModifier& modifier);
};

inline auto opacity(double opacity)
{
    return OpacityModifier{opacity};
}

// --- Clipping --------------------------------------------------------------------------------------

// Nothing is seen, or touched, outside of the content's bounds, whose corners are round.
struct ClippedModifier {
    CGFloat cornerRadius = 0;
    class Node;
    bool operator==(const ClippedModifier&) const = default;
};

class ClippedModifier::Node : public GroupNode {
public:
    Node(const NodeContext& context, const ClippedModifier& modifier);

protected:
    void updateModifier(const ClippedModifier& modifier);
};

inline auto clipped()
{
    return ClippedModifier{};
}
inline auto cornerRadius(CGFloat radius)
{
    return ClippedModifier{radius};
}

// What can be clipped to: a value that has an outline in a rectangle.
template <class S>
concept HasOutline = std::copyable<S> && requires(const S& shape, CGRect rect) {
    { shape.path(rect) } -> std::convertible_to<UIBezierPath>;
};

// Nothing is seen, or touched, outside of the shape that fills the content's bounds.
template <HasOutline S>
struct ClipShapeModifier {
    S shape;
    class Node;
    friend bool operator==(const ClipShapeModifier& a, const ClipShapeModifier& b)
        requires std::equality_comparable<S>
    = default;
};

class ClipShapeNode : public GroupNode {
public:
    explicit ClipShapeNode(const NodeContext& context);

protected:
    using Outline = std::function<UIBezierPath(CGRect)>;
    void setOutline(Outline outline);
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    class MaskView;
    std::shared_ptr<MaskView> mask_;
};

template <HasOutline S>
class ClipShapeModifier<S>::Node : public ClipShapeNode {
public:
    Node(const NodeContext& context, const ClipShapeModifier& modifier)
        : ClipShapeNode(context)
    {
        updateModifier(modifier);
    }

protected:
    void updateModifier(const ClipShapeModifier& modifier)
    {
        setOutline([shape = modifier.shape](CGRect rect) { return UIBezierPath(shape.path(rect)); });
    }
};

template <HasOutline S>
auto clipShape(S shape)
{
    return ClipShapeModifier<S>{std::move(shape)};
}

// --- Shadow ----------------------------------------------------------------------------------------

// A shadow behind the outline of all that the content shows. Radius and offset move when they change in an animation.
struct ShadowModifier {
    UIViewShadow shadow;
    class Node;
    bool operator==(const ShadowModifier&) const = default;
};

class ShadowModifier::Node : public GroupNode {
public:
    Node(const NodeContext& context, const ShadowModifier& modifier);

protected:
    void updateModifier(const ShadowModifier& modifier);

private:
    void show();
    UIViewShadow shadow_;
    AnimatableValues numbers_; // radius, offset
};

struct ShadowOptions {
    UIColor color = UIColor::gray(0, 0.33);
    CGFloat radius = 3; // of the blur's deviation, points; at most 100 counts
    CGFloat x = 0;      // points to the right
    CGFloat y = 0;      // and down
};
inline auto shadow(ShadowOptions options = {})
{
    return ShadowModifier{{.color = std::move(options.color),
                           .opacity = 1,
                           .radius = options.radius,
                           .offset = {options.x, options.y}}};
}

// --- Transforms ------------------------------------------------------------------------------------

// A group that is drawn under a transform made of a few numbers, each of which moves when it is animated: half a turn goes
// round, a whole one too.
class TransformNode : public GroupNode {
public:
    TransformNode(const NodeContext& context, std::vector<double> numbers, UnitPoint anchor);

protected:
    virtual CGAffineTransform transformOf(const std::vector<double>& numbers) const = 0;
    void setNumbers(std::vector<double> numbers, UnitPoint anchor);
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    void applyTransform();
    bool isSeen() const;
    CGPoint arm() const; // from the middle to the anchor
    UnitPoint anchor_;
    AnimatableValues numbers_;
};

// Drawn that many times as large, about a point of the content's bounds.
struct ScaleEffectModifier {
    CGSize scale{1, 1};
    UnitPoint anchor = UnitPoint::center();
    class Node;
    bool operator==(const ScaleEffectModifier&) const = default;
};

class ScaleEffectModifier::Node : public TransformNode {
public:
    Node(const NodeContext& context, const ScaleEffectModifier& modifier)
        : TransformNode(context, {modifier.scale.width, modifier.scale.height}, modifier.anchor)
    {
    }

protected:
    CGAffineTransform transformOf(const std::vector<double>& numbers) const override;
    void updateModifier(const ScaleEffectModifier& modifier)
    {
        setNumbers({modifier.scale.width, modifier.scale.height}, modifier.anchor);
    }
};

inline auto scaleEffect(CGFloat factor, UnitPoint anchor = UnitPoint::center())
{
    return ScaleEffectModifier{{factor, factor}, anchor};
}
inline auto scaleEffect(CGSize factors, UnitPoint anchor = UnitPoint::center())
{
    return ScaleEffectModifier{factors, anchor};
}

// Drawn turned about a point of the content's bounds.
struct RotationEffectModifier {
    Angle angle;
    UnitPoint anchor = UnitPoint::center();
    class Node;
    bool operator==(const RotationEffectModifier&) const = default;
};

class RotationEffectModifier::Node : public TransformNode {
public:
    Node(const NodeContext& context, const RotationEffectModifier& modifier)
        : TransformNode(context, {modifier.angle.radians}, modifier.anchor)
    {
    }

protected:
    CGAffineTransform transformOf(const std::vector<double>& numbers) const override
    {
        return CGAffineTransform::rotation(numbers[0]);
    }
    void updateModifier(const RotationEffectModifier& modifier)
    {
        setNumbers({modifier.angle.radians}, modifier.anchor);
    }
};

inline auto rotationEffect(Angle angle, UnitPoint anchor = UnitPoint::center())
{
    return RotationEffectModifier{angle, anchor};
}

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIBezierPath.h"
#include "platform/swiftui/ShapeNode.h"
#include "platform/swiftui/View.h"

#include <concepts>
#include <memory>
#include <utility>
#include <vector>

namespace platform {

// An outline that fits any rectangle: a record with `UIBezierPath path(CGRect) const`. One whose numbers move when
// they change in an animation also has `std::vector<double> animatableData() const` and
// `void setAnimatableData(const std::vector<double>&)`, of the same count.
template <class S>
concept Shape = std::copyable<S> && requires(const S& shape, CGRect rect) {
    { shape.path(rect) } -> std::same_as<UIBezierPath>;
};

template <class S>
class ShapeViewNode;

// A shape, painted: what `shape | fill(color)` and `shape | stroke(color, 2)` give.
template <Shape S>
struct ShapeView {
    S shape;
    ShapeStyle style;

    using Node = ShapeViewNode<S>;
    friend bool operator==(const ShapeView& a, const ShapeView& b)
        requires std::equality_comparable<S>
    = default;
};

template <Shape S>
class TypedShape final : public ErasedShape {
public:
    explicit TypedShape(S shape)
        : shape_(std::move(shape))
    {
    }
    UIBezierPath path(CGRect rect) const override { return shape_.path(rect); }
    std::vector<double> animatableData() const override
    {
        if constexpr (requires { shape_.animatableData(); })
            return shape_.animatableData();
        else
            return {};
    }
    void setAnimatableData(const std::vector<double>& data) override
    {
        if constexpr (requires { shape_.setAnimatableData(data); })
            shape_.setAnimatableData(data);
    }

private:
    S shape_;
};

template <class S>
class ShapeViewNode final : public ShapeNode {
public:
    ShapeViewNode(const NodeContext& context, const ShapeView<S>& view)
        : ShapeNode(context, std::make_unique<TypedShape<S>>(view.shape), view.style)
        , record_(view)
    {
    }
    // A bare shape is a view too: filled with the colour of the surroundings.
    ShapeViewNode(const NodeContext& context, const S& shape)
        : ShapeViewNode(context, ShapeView<S>{shape, {}})
    {
    }
    void update(const ShapeView<S>& view)
    {
        if (detail::isSameRecord(view, record_))
            return;
        record_ = view;
        setShape(std::make_unique<TypedShape<S>>(view.shape), view.style);
    }
    void update(const S& shape) { update(ShapeView<S>{shape, {}}); }

private:
    ShapeView<S> record_;
};

// A style that shapes are piped into; none takes the colour of the surroundings.
struct ShapeStyleModifier {
    ShapeStyle style;
};

inline auto fill(std::optional<UIColor> color = {})
{
    return ShapeStyleModifier{{.color = std::move(color)}};
}
// The line is centred on the outline: half of its width lies outside of the rectangle.
inline auto stroke(std::optional<UIColor> color, StrokeStyle style)
{
    return ShapeStyleModifier{{.color = std::move(color), .stroke = std::move(style)}};
}
inline auto stroke(std::optional<UIColor> color = {}, CGFloat lineWidth = 1)
{
    return stroke(std::move(color), StrokeStyle{.lineWidth = lineWidth});
}

template <Shape S>
auto operator|(S shape, ShapeStyleModifier modifier)
{
    return ShapeView<S>{std::move(shape), std::move(modifier.style)};
}

} // namespace platform

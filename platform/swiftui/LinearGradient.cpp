// SPDX-License-Identifier: MIT
#include "platform/swiftui/LinearGradient.h"

#include "platform/uikit/GradientMask.h"
#include "platform/uikit/UIView.h"

#include <utility>

namespace platform {

namespace {

std::vector<double> placesOf(const LinearGradient& gradient)
{
    std::vector<double> places{gradient.startPoint.x, gradient.startPoint.y, gradient.endPoint.x,
                               gradient.endPoint.y};
    for (auto& stop : gradient.stops)
        places.push_back(stop.location);
    return places;
}

} // namespace

LinearGradient LinearGradient::ofColors(const std::vector<UIColor>& colors, UnitPoint startPoint,
                                        UnitPoint endPoint)
{
    LinearGradient gradient{{}, startPoint, endPoint};
    for (std::size_t i = 0; i < colors.size(); ++i)
        gradient.stops.push_back(
            {colors.size() > 1 ? CGFloat(i) / CGFloat(colors.size() - 1) : 0, colors[i]});
    return gradient;
}

class LinearGradient::Node::GradientView : public UIView, public GradientMask {
public:
    explicit GradientView(Node& node)
        : node_(&node)
    {
        setUserInteractionEnabled(false);
    }
    void letGoOfNode() { node_ = nullptr; }

    LinearGradientLine gradientNow() override
    {
        if (!node_)
            return {};
        auto& places = node_->places_.drawn();
        LinearGradientLine line{node_->record_.stops, UnitPoint{places[0], places[1]}.in(bounds()),
                                UnitPoint{places[2], places[3]}.in(bounds())};
        for (std::size_t i = 0; i < line.stops.size(); ++i)
            line.stops[i].location = places[4 + i];
        return line;
    }
    void draw(CGContext& context, CGRect) override
    {
        auto line = gradientNow();
        CGContextState state(context);
        context.clip(bounds());
        context.drawLinearGradient(line.stops, line.start, line.end);
    }

private:
    Node* node_; // lets go of the view, which others may keep
};

LinearGradient::Node::Node(const NodeContext& context, const LinearGradient& view)
    : PlatformViewNode(context)
    , gradientView_(std::make_shared<GradientView>(*this))
    , record_(view)
    , places_(
          placesOf(view), [this] { gradientView_->setNeedsDisplay(); }, AnimatableValues::Frames::whileDrawn)
{
    setPlatformView(gradientView_);
}

LinearGradient::Node::~Node()
{
    gradientView_->letGoOfNode();
}

void LinearGradient::Node::update(const LinearGradient& view)
{
    if (view == record_)
        return;
    record_ = view;
    places_.set(placesOf(view));
    gradientView_->setNeedsDisplay();
}

} // namespace platform

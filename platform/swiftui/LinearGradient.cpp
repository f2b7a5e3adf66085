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
        framesUnseen_ = 0;
        return drawn_ = lineAt(node_->places_.drawn());
    }
    // The node's numbers have moved: only the colours' way is painted anew, not what lies before and behind it. That may be
    // nowhere, or out of sight while the rest is seen; so now and then all of it is, and if nobody looks then nothing runs.
    void placesDidMove()
    {
        constexpr int patience = 2; // frames
        auto line = lineAt(node_->places_.presentation());
        auto changed = changedArea(told_, line, bounds());
        if (told_ != drawn_)
            changed = changed.unionWith(changedArea(drawn_, line, bounds()));
        told_ = std::move(line);
        if (framesUnseen_++ >= patience)
            return setNeedsDisplay();
        setNeedsDisplay(changed);
        node_->places_.drawn();
    }
    void draw(CGContext& context, CGRect) override
    {
        auto line = gradientNow();
        CGContextState state(context);
        context.clip(bounds());
        context.drawLinearGradient(line.stops, line.start, line.end);
    }

private:
    LinearGradientLine lineAt(const std::vector<double>& places) const
    {
        LinearGradientLine line{node_->record_.stops, UnitPoint{places[0], places[1]}.in(bounds()),
                                UnitPoint{places[2], places[3]}.in(bounds())};
        for (std::size_t i = 0; i < line.stops.size(); ++i)
            line.stops[i].location = places[4 + i];
        return line;
    }

    LinearGradientLine drawn_, told_; // the last that was painted, and that was announced
    int framesUnseen_ = 0;
    Node* node_; // lets go of the view, which others may keep
};

LinearGradient::Node::Node(const NodeContext& context, const LinearGradient& view)
    : PlatformViewNode(context)
    , gradientView_(std::make_shared<GradientView>(*this))
    , record_(view)
    , places_(placesOf(view), [this] { gradientView_->placesDidMove(); })
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

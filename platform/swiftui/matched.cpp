// SPDX-License-Identifier: MIT
#include "platform/swiftui/matched.h"

#include "platform/swiftui/EnvironmentScope.h"
#include "platform/swiftui/ViewHost.h"

#include <algorithm>
#include <map>
#include <vector>

namespace platform {

// The views with names, and where those were that went in the present update. Places are in the window's coordinates.
struct MatchedModifier::Node::Places {
    std::map<std::string, std::vector<Node*>> shown; // each takes itself out before it goes
    std::map<std::string, CGRect> left;

    static std::shared_ptr<Places> of(ViewHost& host)
    {
        struct Key {
            using Value = std::shared_ptr<Places>;
            static Value defaultValue() { return nullptr; }
        };
        auto places = host.environment().value<Key>(nullptr);
        if (!places) {
            places = std::make_shared<Places>();
            host.environment().set<Key>(places);
        }
        return places;
    }

    // Where another view with that name is, or was.
    std::optional<CGRect> placeOf(const std::string& name, const Node& arriving)
    {
        if (auto found = left.find(name); found != left.end())
            return found->second;
        auto& others = shown[name];
        for (auto other = others.rbegin(); other != others.rend(); ++other) {
            if (*other != &arriving && !(*other)->isArriving_)
                return (*other)->placeOnScreen();
        }
        return std::nullopt;
    }
};

MatchedModifier::Node::Node(const NodeContext& context, const MatchedModifier& modifier)
    : GroupNode(context)
    , places_(Places::of(context.host))
    , name_(modifier.name)
{
    places_->shown[name_].push_back(this);
}

MatchedModifier::Node::~Node()
{
    leave();
    if (auto place = isArriving_ ? std::nullopt : placeOnScreen()) {
        places_->left.insert_or_assign(name_, *place);
        host().performAfterFlush([places = places_] { places->left.clear(); });
    }
}

void MatchedModifier::Node::leave()
{
    auto found = places_->shown.find(name_);
    std::erase(found->second, this);
    if (found->second.empty())
        places_->shown.erase(found);
}

void MatchedModifier::Node::updateModifier(const MatchedModifier& modifier)
{
    leave();
    name_ = modifier.name;
    places_->shown[name_].push_back(this);
}

std::optional<CGRect> MatchedModifier::Node::placeOnScreen() const
{
    auto around = group().superview();
    if (!around || !group().window())
        return std::nullopt;
    return around->convertTo(group().presentationFrame(), nullptr);
}

void MatchedModifier::Node::arrange(CGRect rect, const ProposedSize& proposal)
{
    GroupNode::arrange(rect, proposal);
    if (!std::exchange(isArriving_, false))
        return;
    auto* animation = UIView::currentAnimation();
    auto start = animation && host().hasAppeared() ? places_->placeOf(name_, *this) : std::nullopt;
    if (!start || rect.isEmpty() || start->isEmpty())
        return;
    auto timing = *animation;
    auto from = container().containerView().convertFrom(*start, nullptr);
    auto way = from.center() - rect.center();
    auto transform = CGAffineTransform::scale(from.width() / rect.width(), from.height() / rect.height())
                         .concatenating(CGAffineTransform::translation(way.x, way.y));
    UIView::performWithoutAnimation([&] { group().setTransform(transform); });
    UIView::animate(timing, [&] { group().setTransform({}); });
}

} // namespace platform

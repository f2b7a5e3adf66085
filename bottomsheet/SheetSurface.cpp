// SPDX-License-Identifier: MIT
#include "bottomsheet/SheetSurface.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace bottomsheet {

using platform::AccessibilityRole;
using platform::UIView;

namespace {

std::vector<const UIView*> pathFromRoot(const UIView& view)
{
    std::vector<const UIView*> path{&view};
    for (auto above = view.superview(); above; above = above->superview())
        path.insert(path.begin(), above.get());
    return path;
}

// Whether `view` is painted after `other`; both are in one window and neither holds the other.
bool isInFront(const UIView& view, const UIView& other)
{
    auto path = pathFromRoot(view), otherPath = pathFromRoot(other);
    auto [fork, otherFork] = std::ranges::mismatch(path, otherPath);
    if (fork == path.begin() || fork == path.end() || otherFork == otherPath.end())
        return false;
    const auto& siblings = (*std::prev(fork))->subviews();
    auto place = [&](const UIView* each) {
        return std::ranges::find(siblings, each, &std::shared_ptr<UIView>::get);
    };
    return place(*fork) > place(*otherFork);
}

// What a dialog without a name of its own is called by: the first heading in it, else the first text.
std::string firstText(const UIView& view, AccessibilityRole role)
{
    for (const auto& subview : view.subviews()) {
        auto properties = subview->accessibilityNow();
        if (subview->isHidden() || properties.isHidden)
            continue;
        if (properties.role == role && !properties.label.empty())
            return properties.label;
        if (auto inside = firstText(*subview, role); !inside.empty())
            return inside;
    }
    return {};
}

} // namespace

class SheetView : public platform::GroupView {
public:
    explicit SheetView(bool isPresented)
        : isPresented_(isPresented)
    {
        touches = Touches::bounds; // what is beside its content is the sheet's too
        setHidden(!isPresented);
    }

    std::function<void()> handleEscape;

    void setPresented(bool isPresented)
    {
        if (std::exchange(isPresented_, isPresented) == isPresented)
            return;
        if (isPresented)
            setHidden(false);
        followLater();
    }
    void hideIfAway()
    {
        if (!isPresented_ && !isAnimating())
            setHidden(true);
    }

    void didMoveToWindow() override
    {
        GroupView::didMoveToWindow();
        isModal_ = false; // the window that it left forgets it
        followLater();
    }
    bool pressesBegan(const platform::UIPress& press) override
    {
        // Held down it is still about what was there before.
        if (press.key != platform::UIKeyCode::escape || press.modifiers.rawValue != 0 || !isPresented_)
            return GroupView::pressesBegan(press);
        if (auto handle = handleEscape; handle && !press.isRepeat)
            handle(); // this may be gone
        return true;
    }
    platform::AccessibilityProperties accessibilityNow() const override
    {
        auto properties = GroupView::accessibilityNow();
        properties.role = AccessibilityRole::dialog;
        properties.isModal = isPresented_;
        if (properties.label.empty())
            properties.label = firstText(*this, AccessibilityRole::header);
        if (properties.label.empty())
            properties.label = firstText(*this, AccessibilityRole::staticText);
        return properties;
    }

private:
    // In a turn of its own: focus moves, and others are told.
    void followLater()
    {
        platform::RunLoop::main().perform([weak = weak_from_this()] {
            if (auto self = std::static_pointer_cast<SheetView>(weak.lock()))
                self->follow();
        });
    }
    void follow()
    {
        hideIfAway();
        auto in = window();
        auto shallBe = isPresented_ && in;
        if (!in || isModal_ == shallBe)
            return;
        isModal_ = shallBe;
        if (!shallBe)
            return in->endModal(*this);
        auto former = in->modalView();
        auto responder = in->firstResponder();
        auto self = std::static_pointer_cast<UIView>(shared_from_this());
        in->beginModal(self);
        // What is in front of this sheet stays what the keys go to.
        if (former && former->window() == in && isInFront(*former, *this)) {
            in->endModal(*former);
            in->beginModal(former);
            if (responder)
                responder->becomeFirstResponder();
        }
    }

    bool isPresented_;
    bool isModal_ = false;
};

SheetSurface::Node::Node(const platform::NodeContext& context, const SheetSurface& surface)
    : Node(context, surface, std::make_shared<SheetView>(surface.isPresented))
{
}

SheetSurface::Node::Node(const platform::NodeContext& context, const SheetSurface& surface,
                         std::shared_ptr<SheetView> view)
    : GroupNode(context, view)
    , view_(std::move(view))
{
    view_->handleEscape = surface.handleEscape;
}

void SheetSurface::Node::updateModifier(const SheetSurface& surface)
{
    view_->handleEscape = surface.handleEscape;
    view_->setPresented(surface.isPresented);
}

void SheetSurface::Node::arrange(platform::CGRect rect, const platform::ProposedSize& proposal)
{
    auto* animation = UIView::currentAnimation();
    if (!animation)
        return GroupNode::arrange(rect, proposal);
    UIView::animate(
        *animation, [&] { GroupNode::arrange(rect, proposal); },
        [weak = std::weak_ptr(view_)](bool) {
            if (auto view = weak.lock())
                view->hideIfAway();
        });
}

} // namespace bottomsheet

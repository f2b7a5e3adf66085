// SPDX-License-Identifier: MIT
#include "platform/swiftui/gestures.h"

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/uikit/UIGestureRecognizer.h"
#include "platform/uikit/UITapGestureRecognizer.h"

namespace platform {

namespace {

struct GestureScopeKey {
    using Value = std::shared_ptr<const GestureScope>;
    static Value defaultValue() { return nullptr; }
};

std::size_t tapCount(const UIGestureRecognizer& recognizer)
{
    auto* tap = dynamic_cast<const UITapGestureRecognizer*>(&recognizer);
    return tap ? tap->numberOfTapsRequired : 0;
}

// Who waits for whom, where both see the same touches.
void order(const GestureScope& inner, const GestureScope& outer)
{
    if (inner.priority == GesturePriority::simultaneous || outer.priority == GesturePriority::simultaneous)
        return;
    auto taps = tapCount(*inner.recognizer);
    auto outerTaps = tapCount(*outer.recognizer);
    // A single tap waits until it is no double tap, whichever is outside.
    if (taps > 0 && outerTaps > taps)
        inner.recognizer->requireToFail(outer.recognizer);
    else if (outerTaps > 0 && taps > outerTaps)
        outer.recognizer->requireToFail(inner.recognizer);
    else if (outer.priority == GesturePriority::high)
        inner.recognizer->requireToFail(outer.recognizer);
}

} // namespace

GestureNode::GestureNode(const NodeContext& context, std::shared_ptr<UIGestureRecognizer> recognizer)
    : GroupNode(context)
    , environment_(std::make_shared<EnvironmentScope>(context.environment))
{
    group().touches = GroupView::Touches::content;
    recognizer->onChange = [handler = handler_](UIGestureRecognizer& changed) {
        auto view = changed.view();
        auto present = *handler; // an update replaces it, perhaps from inside
        if (view && present)
            present(changed, *view);
    };
    group().addGestureRecognizer(recognizer);
    scope_->recognizer = std::move(recognizer);
    scope_->outer = context.environment->value<GestureScopeKey>(nullptr);
    environment_->set<GestureScopeKey>(scope_);
    readEnvironment();
}

GestureNode::~GestureNode()
{
    // Somebody may keep the view; what is under way is cancelled, which the gesture hears of.
    group().removeGestureRecognizer(*scope_->recognizer);
}

void GestureNode::enter(GesturePriority priority)
{
    scope_->priority = priority;
    if (priority == GesturePriority::simultaneous)
        recognizer().shouldRecognizeSimultaneously = [](UIGestureRecognizer&, UIGestureRecognizer&) {
            return true;
        };
    for (auto outer = scope_->outer.get(); outer; outer = outer->outer.get())
        order(*scope_, *outer);
}

NodeContext GestureNode::contentContext()
{
    auto inner = GroupNode::contentContext();
    inner.environment = environment_;
    return inner;
}

void GestureNode::refresh()
{
    forgetSources();
    readEnvironment();
}

void GestureNode::readEnvironment()
{
    recognizer().setEnabled(environment<IsEnabledKey>());
}

} // namespace platform

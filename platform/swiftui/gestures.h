// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Gesture.h"
#include "platform/swiftui/GroupNode.h"

#include <functional>
#include <memory>
#include <utility>

namespace platform {

// Which of two gestures on one place goes first: a `normal` one after those of the content, a `high` one before them, a
// `simultaneous` one together with any.
enum class GesturePriority { normal, high, simultaneous };

// The content, and its visible parts only, takes that gesture. Disabled content takes none.
template <Gesture G>
struct GestureModifier {
    G gesture;
    GesturePriority priority = GesturePriority::normal;
    class Node;
};

// The gestures around a place, innermost first.
struct GestureScope {
    std::shared_ptr<UIGestureRecognizer> recognizer;
    GesturePriority priority = GesturePriority::normal;
    std::shared_ptr<const GestureScope> outer;
};

class GestureNode : public GroupNode {
public:
    using Handler = std::function<void(UIGestureRecognizer& recognizer, UIView& local)>;
    GestureNode(const NodeContext& context, std::shared_ptr<UIGestureRecognizer> recognizer);
    ~GestureNode() override;
    void refresh() override;

protected:
    // Once, in the subclass's constructor, when the recogniser is set up.
    void enter(GesturePriority priority);
    NodeContext contentContext() override;
    void setHandler(Handler handler) { *handler_ = std::move(handler); }
    UIGestureRecognizer& recognizer() const { return *scope_->recognizer; }

private:
    void readEnvironment();
    std::shared_ptr<GestureScope> scope_ = std::make_shared<GestureScope>();
    std::shared_ptr<EnvironmentScope> environment_;
    std::shared_ptr<Handler> handler_ = std::make_shared<Handler>();
};

template <Gesture G>
class GestureModifier<G>::Node : public GestureNode {
public:
    Node(const NodeContext& context, const GestureModifier& modifier)
        : GestureNode(context, G::makeRecognizer())
    {
        updateModifier(modifier);
        enter(modifier.priority);
    }

protected:
    void updateModifier(const GestureModifier& modifier)
    {
        modifier.gesture.setUp(recognizer());
        setHandler([gesture = modifier.gesture](UIGestureRecognizer& changed, UIView& local) {
            gesture.handleChange(changed, local);
        });
    }
};

template <Gesture G>
auto gesture(G gesture)
{
    return GestureModifier<G>{std::move(gesture)};
}
template <Gesture G>
auto highPriorityGesture(G gesture)
{
    return GestureModifier<G>{std::move(gesture), GesturePriority::high};
}
template <Gesture G>
auto simultaneousGesture(G gesture)
{
    return GestureModifier<G>{std::move(gesture), GesturePriority::simultaneous};
}

inline auto onTapGesture(int count, std::function<void()> action)
{
    return gesture(TapGesture{.count = count, .ended = std::move(action)});
}
inline auto onTapGesture(std::function<void()> action)
{
    return onTapGesture(1, std::move(action));
}
inline auto onLongPressGesture(std::function<void()> action)
{
    return gesture(LongPressGesture{.ended = std::move(action)});
}

// All of the content's bounds takes its gestures, not only what is seen of it.
struct ContentShapeModifier {
    class Node;
    bool operator==(const ContentShapeModifier&) const = default;
};

class ContentShapeModifier::Node : public GroupNode {
public:
    Node(const NodeContext& context, const ContentShapeModifier&)
        : GroupNode(context)
    {
        group().touches = GroupView::Touches::bounds;
    }

protected:
    void updateModifier(const ContentShapeModifier&) { }
};

inline auto contentShape()
{
    return ContentShapeModifier{};
}

} // namespace platform

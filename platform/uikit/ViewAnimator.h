// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

#include <array>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

// An animatable value as numbers: a rectangle's x, y, width, height; a point; the six of a transform; a
// colour's red, green, blue, alpha; a single number.
struct AnimatableNumbers {
    std::array<double, 6> components{};
    int count = 0;
    bool operator==(const AnimatableNumbers&) const = default;
};

// What is on screen while views move. The views' setters report each change of an animatable value here; from
// then on the value on screen is a function of the frame's time between the two, until it has arrived. The
// time is that of the frame being drawn, so all of one frame shows one moment. While nothing that moves is in sight no
// frames are asked for; what comes back into sight is where it would be by then. Main thread only.
class ViewAnimator {
public:
    enum class Property { bounds, center, transform, alpha, backgroundColor, cornerRadius };

    // The value on screen; none while nothing moves this property: then it is the one that was set.
    static std::optional<AnimatableNumbers> presented(const UIView& view, Property property);

    // Called by a setter after the value was stored. Inside UIView::animate the value on screen goes from
    // where it is to `after`; outside, an animation of this property ends and `after` is on screen at once.
    // The setter marks the view's place dirty before and after this call.
    static void valueChanged(UIView& view, Property property, const AnimatableNumbers& before,
                             const AnimatableNumbers& after);

    // Everything that moves in this view is where it was set; completions are told `false`, later.
    static void removeAll(UIView& view);
    // The same for these properties only; the view's place is marked dirty before and after.
    static void remove(UIView& view, std::initializer_list<Property> properties);
    // The view leaves its window: the same, but for what repeats for ever. That goes on unseen.
    static void viewLeftWindow(UIView& view); // Requires: something moves in it

private:
    friend class UIView;
    struct Engine;
    struct Group;
    static Engine& engine();
};

// What moves in one view.
struct UIView::Animations {
    struct Movement {
        ViewAnimator::Property property;
        AnimatableNumbers from;
        AnimatableNumbers to;
        std::array<double, 6> speed{}; // a second, at the start
        AnimationTiming timing;
        Instant start;
        std::shared_ptr<ViewAnimator::Group> group;
    };

    explicit Animations(UIView& owner);
    Animations(const Animations&) = delete; // the engine holds its address
    Animations& operator=(const Animations&) = delete;
    ~Animations();

    UIView& view;
    std::vector<Movement> movements; // at most one a property
};

} // namespace platform

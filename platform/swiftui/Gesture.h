// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/graphics/Geometry.h"
#include "platform/uikit/Forward.h"

#include <concepts>
#include <functional>
#include <memory>
#include <utility>

namespace platform {

// A gesture is a record: what to look for and what to do. It makes its recogniser once, sets it up anew at each update and
// acts on the recogniser's changes. Actions may remove the very view. Main thread only.
template <class G>
concept Gesture =
    std::copyable<G> && requires(const G& gesture, UIGestureRecognizer& recognizer, UIView& local) {
        { G::makeRecognizer() } -> std::convertible_to<std::shared_ptr<UIGestureRecognizer>>;
        gesture.setUp(recognizer);
        gesture.handleChange(recognizer, local);
    };

// One or more taps or clicks in one place.
class TapGesture {
public:
    int count = 1;
    std::function<void()> ended{};

    TapGesture onEnded(std::function<void()> action) const;

    static std::shared_ptr<UIGestureRecognizer> makeRecognizer();
    void setUp(UIGestureRecognizer& recognizer) const;
    void handleChange(UIGestureRecognizer& recognizer, UIView& local) const;
};

// A press that stays in its place for a while; it has ended when the time is over.
class LongPressGesture {
public:
    double minimumDuration = 0.5; // seconds
    CGFloat maximumDistance = 10; // points
    std::function<void()> ended{};

    LongPressGesture onEnded(std::function<void()> action) const;

    static std::shared_ptr<UIGestureRecognizer> makeRecognizer();
    void setUp(UIGestureRecognizer& recognizer) const;
    void handleChange(UIGestureRecognizer& recognizer, UIView& local) const;
};

enum class CoordinateSpace {
    local, // of the view that the gesture is on
    global // of the window
};

// A press that moves. A distance of nothing begins with the press itself. Ends in exactly one of onEnded and onCancelled:
// the second when something else took the pointer, or the view went.
class DragGesture {
public:
    struct Value {
        Instant time{};
        CGPoint startLocation, location;
        CGVector translation;
        CGVector velocity;                // points a second, of the last tenth of a second
        CGVector predictedEndTranslation; // where it would come to rest if it were let go now
        bool operator==(const Value&) const = default;
    };
    using Action = std::function<void(const Value&)>;

    CGFloat minimumDistance = 10; // points
    CoordinateSpace coordinateSpace = CoordinateSpace::local;
    Action changed{}, ended{};
    std::function<void()> cancelled{};

    DragGesture onChanged(Action action) const;
    DragGesture onEnded(Action action) const;
    DragGesture onCancelled(std::function<void()> action) const;

    static std::shared_ptr<UIGestureRecognizer> makeRecognizer();
    void setUp(UIGestureRecognizer& recognizer) const;
    void handleChange(UIGestureRecognizer& recognizer, UIView& local) const;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/uikit/ViewAnimator.h"

#include "platform/dispatch/DisplayLink.h"
#include "platform/dispatch/RunLoop.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

// What one call of `animate` set in motion. Its completion is posted, exactly once, when the last movement is
// over; posted and not called, because it may delete the very views that are being walked.
struct ViewAnimator::Group {
    explicit Group(AnimationCompletion whenOver)
        : completion(std::move(whenOver))
    {
    }
    Group(const Group&) = delete;
    Group& operator=(const Group&) = delete;
    ~Group()
    {
        if (completion)
            RunLoop::main().perform(
                [completion = std::move(completion), finished = finished] { completion(finished); });
    }

    AnimationCompletion completion;
    bool finished = true;
};

struct ViewAnimator::Engine {
    struct Scope {
        const AnimationTiming* timing = nullptr; // null: no animation
        std::shared_ptr<Group> group;
    };

    void step(Instant time);
    // The value on screen at the time of the frame, or how fast it moves.
    AnimatableNumbers value(const UIView::Animations::Movement& movement) const;
    std::array<double, 6> speed(const UIView::Animations::Movement& movement) const;
    double elapsed(const UIView::Animations::Movement& movement) const
    {
        return std::chrono::duration<double>(frameTime - movement.start).count();
    }

    std::vector<Scope> scopes;
    std::vector<UIView::Animations*> active;
    Token frames;
    Instant frameTime{};
};

ViewAnimator::Engine& ViewAnimator::engine()
{
    // Never destroyed: views that live as long as the process unregister here.
    static auto& engine = *new Engine;
    return engine;
}

UIView::Animations::Animations(UIView& owner)
    : view(owner)
{
    auto& engine = ViewAnimator::engine();
    if (engine.active.empty())
        engine.frameTime = RunLoop::main().clock().now(); // the last frame is long past
    engine.active.push_back(this);
    if (!engine.frames)
        engine.frames = DisplayLink::shared().request([&engine](Instant time) { engine.step(time); });
}

UIView::Animations::~Animations()
{
    for (auto& movement : movements)
        movement.group->finished = false;
    auto& engine = ViewAnimator::engine();
    std::erase(engine.active, this);
    if (engine.active.empty())
        engine.frames.cancel();
}

// A spring is linear in its initial speed, so each component moves by its distance times the movement from
// rest, plus its own speed times what a unit of speed adds to it. So a component that has no way to go
// still swings out.
AnimatableNumbers ViewAnimator::Engine::value(const UIView::Animations::Movement& movement) const
{
    auto rest = movement.timing.sample(elapsed(movement)).progress;
    auto pushed = movement.timing.sample(elapsed(movement), 1).progress - rest;
    auto result = movement.to;
    for (int i = 0; i < result.count; ++i) {
        auto from = movement.from.components[i];
        result.components[i] = from + (movement.to.components[i] - from) * rest + movement.speed[i] * pushed;
    }
    return result;
}

std::array<double, 6> ViewAnimator::Engine::speed(const UIView::Animations::Movement& movement) const
{
    auto rest = movement.timing.sample(elapsed(movement)).velocity;
    auto pushed = movement.timing.sample(elapsed(movement), 1).velocity - rest;
    std::array<double, 6> result{};
    for (int i = 0; i < movement.to.count; ++i)
        result[i] =
            (movement.to.components[i] - movement.from.components[i]) * rest + movement.speed[i] * pushed;
    return result;
}

// Both places, that of the last frame and that of this one, are to be painted; the views' own idea of where they
// are follows `frameTime`, so all report before it moves and all after.
void ViewAnimator::Engine::step(Instant time)
{
    for (auto* animations : active)
        animations->view.markPlaceDirty();
    frameTime = time;
    std::vector<UIView*> views;
    for (auto* animations : active) {
        std::erase_if(animations->movements, [&](auto& movement) {
            return movement.timing.sample(elapsed(movement)).isFinished
                && (movement.speed == std::array<double, 6>{}
                    || movement.timing.sample(elapsed(movement), 1).isFinished);
        });
        views.push_back(&animations->view);
    }
    for (auto* view : views) {
        if (view->animations_->movements.empty())
            view->animations_.reset();
        view->markPlaceDirty();
    }
}

std::optional<AnimatableNumbers> ViewAnimator::presented(const UIView& view, Property property)
{
    if (!view.animations_)
        return std::nullopt;
    for (auto& movement : view.animations_->movements)
        if (movement.property == property)
            return engine().value(movement);
    return std::nullopt;
}

void ViewAnimator::valueChanged(UIView& view, Property property, const AnimatableNumbers& before,
                                const AnimatableNumbers& after)
{
    auto from = before;
    std::array<double, 6> speed{};
    if (view.animations_) {
        auto& movements = view.animations_->movements;
        auto running = std::ranges::find(movements, property, &UIView::Animations::Movement::property);
        if (running != movements.end()) {
            from = engine().value(*running);
            speed = engine().speed(*running);
            running->group->finished = false;
            movements.erase(running);
        }
    }
    auto scope = engine().scopes.empty() ? Engine::Scope{} : engine().scopes.back();
    auto isFinite = std::ranges::all_of(after.components, [](double x) { return std::isfinite(x); })
        && std::ranges::all_of(from.components, [](double x) { return std::isfinite(x); });
    auto isStill = from == after && speed == std::array<double, 6>{};
    // Where nobody sees it nothing moves.
    if (scope.timing && isFinite && !isStill && view.window() && !scope.timing->sample(0).isFinished) {
        if (!view.animations_)
            view.animations_ = std::make_unique<UIView::Animations>(view);
        if (scope.timing->curve != AnimationTiming::Curve::spring)
            speed = {};
        view.animations_->movements.push_back(
            {property, from, after, speed, *scope.timing, RunLoop::main().clock().now(), scope.group});
    }
    if (view.animations_ && view.animations_->movements.empty())
        view.animations_.reset();
}

void ViewAnimator::removeAll(UIView& view)
{
    view.animations_.reset();
}

void UIView::animate(const AnimationTiming& timing, const std::function<void()>& changes,
                     AnimationCompletion completion)
{
    assertOnMainThread();
    auto copy = timing; // what the caller gave may go while `changes` runs
    auto& scopes = ViewAnimator::engine().scopes;
    scopes.push_back({&copy, std::make_shared<ViewAnimator::Group>(std::move(completion))});
    changes();
    scopes.pop_back();
}

void UIView::performWithoutAnimation(const std::function<void()>& changes)
{
    assertOnMainThread();
    auto& scopes = ViewAnimator::engine().scopes;
    scopes.push_back({});
    changes();
    scopes.pop_back();
}

const AnimationTiming* UIView::currentAnimation()
{
    auto& scopes = ViewAnimator::engine().scopes;
    return scopes.empty() ? nullptr : scopes.back().timing;
}

void UIView::removeAllAnimations()
{
    assertOnMainThread();
    if (!animations_)
        return;
    markPlaceDirty();
    ViewAnimator::removeAll(*this);
    markPlaceDirty();
}

bool UIView::isAnimating() const
{
    return animations_ != nullptr;
}

} // namespace platform

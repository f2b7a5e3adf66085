// SPDX-License-Identifier: MIT
#include "platform/uikit/ViewAnimator.h"

#include "platform/dispatch/DisplayLink.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/MaskedPicture.h"
#include "platform/uikit/ScreenSight.h"

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
    void run();
    void pause(); // until the screen changes, or something ends
    void setFrameTime(Instant time);
    std::vector<UIView*> removeFinished();
    bool isSeen(const UIView::Animations& animations) const;
    bool isAnySeen() const;
    std::optional<Instant> endOf(const UIView::Animations::Movement& movement) const; // none: never
    bool isFinished(const UIView::Animations::Movement& movement, double elapsed) const
    {
        return movement.timing.sample(elapsed).isFinished
            && (movement.speed == std::array<double, 6>{} || movement.timing.sample(elapsed, 1).isFinished);
    }
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
    Token changes; // of the screen, while nothing that moves is seen
    Token ending;  // of what ends meanwhile
    Instant frameTime{};
    bool isShown = false; // at `frameTime`
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
    ViewAnimator::engine().active.push_back(this);
}

UIView::Animations::~Animations()
{
    for (auto& movement : movements)
        movement.group->finished = false;
    auto& engine = ViewAnimator::engine();
    std::erase(engine.active, this);
    if (!engine.active.empty())
        return;
    for (auto* token : {&engine.frames, &engine.changes, &engine.ending})
        token->cancel();
}

void ViewAnimator::Engine::run()
{
    changes.cancel();
    ending.cancel();
    MaskedPicture::anythingMayChange();          // what moved unseen was not marked
    setFrameTime(RunLoop::main().clock().now()); // the last frame is long past
    frames = DisplayLink::shared().request([this](Instant time) { step(time); });
    for (auto* animations : active)
        animations->view.markPlaceDirty();
    isShown = isShown || isAnySeen();
}

// What moves is elsewhere from now on.
void ViewAnimator::Engine::setFrameTime(Instant time)
{
    frameTime = time;
    for (auto* animations : active)
        animations->view.visualFrameDidChange();
}

void ViewAnimator::Engine::pause()
{
    frames.cancel();
    changes = whenScreenChanges([this] { run(); });
    std::optional<Instant> first;
    for (auto* animations : active) {
        for (auto& movement : animations->movements) {
            if (auto end = endOf(movement); end && (!first || *end < *first))
                first = end;
        }
    }
    if (first)
        ending = RunLoop::main().schedule(*first, [this] { run(); });
}

std::optional<Instant> ViewAnimator::Engine::endOf(const UIView::Animations::Movement& movement) const
{
    constexpr double longest = 1e8; // seconds
    double early = 0, late = 1;
    while (!isFinished(movement, late)) {
        early = std::exchange(late, late * 2);
        if (late > longest)
            return std::nullopt;
    }
    constexpr double exactness = 1e-3;
    while (late - early > exactness) {
        auto middle = (early + late) / 2;
        (isFinished(movement, middle) ? late : early) = middle;
    }
    return movement.start + std::chrono::ceil<Duration>(std::chrono::duration<double>(late));
}

// Anywhere on its way: a movement may lead out of the window and back. Springs that swing further than that come back too.
bool ViewAnimator::Engine::isSeen(const UIView::Animations& animations) const
{
    auto& view = animations.view;
    auto isFading = std::ranges::any_of(animations.movements,
                                        [](auto& movement) { return movement.property == Property::alpha; });
    if (!isFading && view.presentationAlpha() == 0)
        return false;
    auto way = placeOnScreen(view);
    auto reach = std::hypot(way.width(), way.height());
    for (auto& movement : animations.movements) {
        for (auto& [x, y, width, height, right, down] : {movement.from.components, movement.to.components}) {
            if (movement.property == Property::center)
                way = way.unionWith({{x, y}, {}});
            else if (movement.property == Property::bounds)
                reach = std::max(reach, std::hypot(width, height));
            else if (movement.property == Property::transform) {
                auto bounds = view.presentationBounds();
                auto growth = std::hypot(x, y) + std::hypot(width, height); // the columns of the map
                reach = std::max(
                    reach, std::hypot(bounds.width(), bounds.height()) * growth + std::hypot(right, down));
            }
        }
    }
    auto isInPlace = std::ranges::none_of(animations.movements, [](auto& movement) {
        return movement.property == Property::center || movement.property == Property::bounds
            || movement.property == Property::transform;
    });
    return isInSight(view, isInPlace ? way : way.insetBy(-reach, -reach));
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
    auto wasShown = std::exchange(isShown, isAnySeen());
    // What is on screen from the last frame goes even when nobody sees it go.
    auto isPainted = wasShown || isShown;
    if (isPainted) {
        for (auto* animations : active)
            animations->view.markPlaceDirty();
    } else {
        MaskedPicture::anythingMayChange(); // and nothing is marked
    }
    setFrameTime(time);
    for (auto* view : removeFinished()) {
        if (isPainted)
            view->markPlaceDirty();
    }
    if (!isShown && !active.empty())
        pause();
}

bool ViewAnimator::Engine::isAnySeen() const
{
    return std::ranges::any_of(active, [this](auto* animations) { return isSeen(*animations); });
}

// Gives the views that moved until now.
std::vector<UIView*> ViewAnimator::Engine::removeFinished()
{
    std::vector<UIView*> views;
    for (auto* animations : active) {
        std::erase_if(animations->movements,
                      [&](auto& movement) { return isFinished(movement, elapsed(movement)); });
        views.push_back(&animations->view);
    }
    for (auto* view : views) {
        if (view->animations_->movements.empty())
            view->animations_.reset();
    }
    return views;
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
        // Also what nobody saw until now may come into sight on its new way.
        if (!engine().frames) {
            view.visualFrameDidChange();
            engine().run();
        }
    }
    if (view.animations_ && view.animations_->movements.empty())
        view.animations_.reset();
}

void ViewAnimator::removeAll(UIView& view)
{
    view.animations_.reset();
    view.visualFrameDidChange();
}

void ViewAnimator::remove(UIView& view, std::initializer_list<Property> properties)
{
    auto isMeant = [&](auto& movement) { return std::ranges::count(properties, movement.property) > 0; };
    if (!view.animations_ || std::ranges::none_of(view.animations_->movements, isMeant))
        return;
    view.markPlaceDirty();
    auto& movements = view.animations_->movements;
    for (auto& movement : movements) {
        if (isMeant(movement))
            movement.group->finished = false;
    }
    std::erase_if(movements, isMeant);
    if (movements.empty())
        view.animations_.reset();
    view.visualFrameDidChange();
    view.markPlaceDirty();
}

void ViewAnimator::viewLeftWindow(UIView& view)
{
    auto& movements = view.animations_->movements;
    std::erase_if(movements, [](auto& movement) {
        if (std::isinf(movement.timing.repeatCount))
            return false;
        movement.group->finished = false;
        return true;
    });
    if (movements.empty())
        view.animations_.reset();
    view.visualFrameDidChange();
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

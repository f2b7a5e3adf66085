// SPDX-License-Identifier: MIT
#include "platform/uikit/ScrollMotion.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double wheelTime = 0.05;  // seconds in which about two thirds of a wheel's way are gone
constexpr double smallestWay = 0.5; // points; what is left then goes at once
constexpr double slowest = 10;      // points a second; slower is standing still

CGVector scaled(CGVector vector, double factor)
{
    return {vector.dx * factor, vector.dy * factor};
}

} // namespace

ScrollMotion::ScrollMotion(Kind kind, CGVector left, Instant now)
    : kind_(kind)
    , left_(left)
    , last_(now)
    , start_(now)
{
}

ScrollMotion ScrollMotion::wheel(CGVector way, Instant now)
{
    return {Kind::wheel, way, now};
}

ScrollMotion ScrollMotion::deceleration(CGVector speed, double rate, Instant now)
{
    ScrollMotion motion(Kind::deceleration, speed, now);
    motion.rate_ = std::isfinite(rate) ? std::clamp(rate, 0.5, 0.9999) : 0.998;
    return motion;
}

ScrollMotion ScrollMotion::animation(CGVector way, const AnimationTiming& timing, Instant now)
{
    ScrollMotion motion(Kind::animation, way, now);
    motion.timing_ = timing;
    return motion;
}

void ScrollMotion::extend(CGVector way, Instant now)
{
    left_ = {left_.dx - done_.dx + way.dx, left_.dy - done_.dy + way.dy};
    done_ = {};
    start_ = now;
}

CGVector ScrollMotion::advance(Instant now)
{
    auto seconds = std::max(std::chrono::duration<double>(now - last_).count(), 0.0);
    last_ = std::max(last_, now);
    CGVector step;
    switch (kind_) {
    case Kind::wheel:
        isFinished_ = std::hypot(left_.dx, left_.dy) < smallestWay;
        step = isFinished_ ? left_ : scaled(left_, 1 - std::exp(-seconds / wheelTime));
        left_ = {left_.dx - step.dx, left_.dy - step.dy};
        return step;
    case Kind::deceleration: {
        // The integral of speed x rate^milliseconds.
        auto remaining = std::pow(rate_, seconds * 1000);
        step = scaled(left_, (remaining - 1) / (1000 * std::log(rate_)));
        left_ = scaled(left_, remaining);
        isFinished_ = std::hypot(left_.dx, left_.dy) < slowest;
        return step;
    }
    case Kind::animation: {
        auto sample = timing_.sample(std::chrono::duration<double>(now - start_).count());
        isFinished_ = sample.isFinished;
        auto way = isFinished_ ? left_ : scaled(left_, sample.progress);
        step = {way.dx - done_.dx, way.dy - done_.dy};
        done_ = way;
        return step;
    }
    }
    return step;
}

void ScrollMotion::stopHorizontal()
{
    left_.dx = done_.dx;
    isFinished_ |= left_.dx == done_.dx && left_.dy == done_.dy;
}

void ScrollMotion::stopVertical()
{
    left_.dy = done_.dy;
    isFinished_ |= left_.dx == done_.dx && left_.dy == done_.dy;
}

} // namespace platform

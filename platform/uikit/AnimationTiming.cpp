// SPDX-License-Identifier: MIT
#include "platform/uikit/AnimationTiming.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace platform {

namespace {

// What is left of the way when a spring counts as settled.
constexpr double settledRest = 5e-4;

double finiteOr(double value, double fallback)
{
    return std::isfinite(value) ? value : fallback;
}

// One movement from 0 to 1, without delay and repeats.
struct Stroke {
    double progress = 0;
    double velocity = 0;
};

double bezier(double s, double p1, double p2)
{
    return ((1 + 3 * p1 - 3 * p2) * s + 3 * p2 - 6 * p1) * s * s + 3 * p1 * s;
}

double bezierSlope(double s, double p1, double p2)
{
    return (3 * (1 + 3 * p1 - 3 * p2) * s + 2 * (3 * p2 - 6 * p1)) * s + 3 * p1;
}

// The parameter at which the curve has come to `x`. Newton's method finds it in a few steps where the curve is
// not nearly flat; bisection keeps it inside and finds it elsewhere.
double bezierParameter(double x, double x1, double x2)
{
    double low = 0, high = 1, s = x;
    for (int step = 0; step < 60; ++step) {
        auto error = bezier(s, x1, x2) - x;
        if (std::abs(error) < 1e-9)
            break;
        (error > 0 ? high : low) = s;
        auto slope = bezierSlope(s, x1, x2);
        auto next = slope > 1e-6 ? s - error / slope : -1;
        s = next > low && next < high ? next : (low + high) / 2;
    }
    return s;
}

Stroke cubicStroke(const AnimationTiming& timing, double time)
{
    auto x1 = std::clamp(finiteOr(timing.x1, 0), 0.0, 1.0), x2 = std::clamp(finiteOr(timing.x2, 1), 0.0, 1.0);
    auto y1 = finiteOr(timing.y1, 0), y2 = finiteOr(timing.y2, 1);
    auto s = bezierParameter(std::clamp(time / timing.duration, 0.0, 1.0), x1, x2);
    auto slope = bezierSlope(s, x1, x2);
    return {bezier(s, y1, y2), slope > 1e-6 ? bezierSlope(s, y1, y2) / slope / timing.duration : 0};
}

// The free swing of a mass on a damped spring, let go at distance 1 from rest: u'' + 2 zeta w u' + w^2 u = 0.
class Spring {
public:
    Spring(const AnimationTiming& timing, double initialVelocity)
        : speed_(-finiteOr(initialVelocity, 0))
    {
        auto mass = timing.mass > 0 && std::isfinite(timing.mass) ? timing.mass : 1;
        auto stiffness = timing.stiffness > 0 && std::isfinite(timing.stiffness) ? timing.stiffness : 100;
        frequency_ = std::sqrt(stiffness / mass);
        // An undamped spring would never come to rest.
        damping_ = std::max(finiteOr(timing.damping, 10) / (2 * std::sqrt(stiffness * mass)), 0.01);
    }

    Stroke at(double time) const
    {
        auto [u, du] = displacement(time);
        return {1 - u, -du};
    }

    // When the swing's envelope falls under the rest that counts as settled.
    double settlingTime() const
    {
        auto decades = -std::log(settledRest);
        if (damping_ < 1 - nearlyCritical) {
            auto b = (damping_ * frequency_ + speed_) / swing();
            return (decades + std::log(std::hypot(1, b))) / (damping_ * frequency_);
        }
        if (damping_ > 1 + nearlyCritical) {
            auto [slow, fast] = roots();
            auto second = (speed_ - slow) / (fast - slow);
            return (decades + std::log(std::abs(1 - second) + std::abs(second))) / -slow;
        }
        auto time = decades / frequency_;
        for (int step = 0; step < 20; ++step)
            time = (decades + std::log1p(std::abs(speed_ + frequency_) * time)) / frequency_;
        return time;
    }

private:
    static constexpr double nearlyCritical = 1e-4;

    double swing() const { return frequency_ * std::sqrt(1 - damping_ * damping_); }
    std::pair<double, double> roots() const
    {
        auto width = std::sqrt(damping_ * damping_ - 1);
        return {-frequency_ / (damping_ + width), -frequency_ * (damping_ + width)};
    }

    std::pair<double, double> displacement(double time) const
    {
        if (damping_ < 1 - nearlyCritical) {
            auto rate = damping_ * frequency_, w = swing();
            auto b = (rate + speed_) / w;
            auto decay = std::exp(-rate * time), cosine = std::cos(w * time), sine = std::sin(w * time);
            return {decay * (cosine + b * sine), decay * ((b * w - rate) * cosine - (w + rate * b) * sine)};
        }
        if (damping_ > 1 + nearlyCritical) {
            auto [slow, fast] = roots();
            auto second = (speed_ - slow) / (fast - slow), first = 1 - second;
            auto a = first * std::exp(slow * time), b = second * std::exp(fast * time);
            return {a + b, slow * a + fast * b};
        }
        auto b = speed_ + frequency_, decay = std::exp(-frequency_ * time);
        return {decay * (1 + b * time), decay * (b - frequency_ * (1 + b * time))};
    }

    double frequency_ = 1; // undamped, radians a second
    double damping_ = 1;   // fraction of critical
    double speed_ = 0;     // of the displacement, at the start
};

} // namespace

AnimationTiming AnimationTiming::linear(double duration)
{
    return {.x1 = 0, .y1 = 0, .x2 = 1, .y2 = 1, .duration = duration};
}

AnimationTiming AnimationTiming::easeIn(double duration)
{
    return {.x1 = 0.42, .y1 = 0, .x2 = 1, .y2 = 1, .duration = duration};
}

AnimationTiming AnimationTiming::easeOut(double duration)
{
    return {.x1 = 0, .y1 = 0, .x2 = 0.58, .y2 = 1, .duration = duration};
}

AnimationTiming AnimationTiming::easeInOut(double duration)
{
    return {.x1 = 0.42, .y1 = 0, .x2 = 0.58, .y2 = 1, .duration = duration};
}

AnimationTiming AnimationTiming::spring(double response, double dampingFraction)
{
    if (!(response > 0) || !std::isfinite(response))
        return linear(0);
    auto frequency = 2 * std::numbers::pi / response;
    return {.curve = Curve::spring,
            .duration = response,
            .mass = 1,
            .stiffness = frequency * frequency,
            .damping = 2 * std::max(finiteOr(dampingFraction, 1), 0.0) * frequency};
}

AnimationTiming::Sample AnimationTiming::sample(double elapsed, double initialVelocity) const
{
    auto rate = speed > 0 && std::isfinite(speed) ? speed : 1;
    // Where an endless repetition is after more than some thousand years makes no difference.
    auto time = std::isnan(elapsed) ? 0 : std::clamp(elapsed, 0.0, 1e11);
    time = (time - std::max(finiteOr(delay, 0), 0.0)) * rate;

    Spring swing(*this, curve == Curve::spring ? initialVelocity / rate : 0);
    auto rest = std::max(finiteOr(cycleDelay, 0), 0.0);
    auto cycle = rest + (curve == Curve::spring ? swing.settlingTime() : (duration > 0 ? duration : 0));
    if (!(cycle > rest))
        return {.progress = time < 0 ? 0.0 : 1.0, .isFinished = time >= 0};
    auto cycles = repeatCount > 0 ? repeatCount : 1;
    if (time >= cycle * cycles && !autoreverses && cycles == std::floor(cycles))
        return {.progress = 1, .isFinished = true};

    auto isFinished = time >= cycle * cycles;
    time = std::clamp(time, 0.0, cycle * cycles);
    // The end of the last cycle belongs to it, not to one that follows.
    auto index = isFinished ? std::ceil(cycles) - 1 : std::floor(time / cycle);
    auto within = time - index * cycle;
    auto backwards = autoreverses && std::fmod(index, 2) == 1;
    if (backwards)
        within = cycle - within;
    within -= rest;
    if (within < 0)
        return {};
    auto stroke = curve == Curve::spring ? swing.at(within) : cubicStroke(*this, within);
    return {.progress = stroke.progress,
            .velocity = isFinished ? 0 : stroke.velocity * rate * (backwards ? -1 : 1),
            .isFinished = isFinished};
}

} // namespace platform

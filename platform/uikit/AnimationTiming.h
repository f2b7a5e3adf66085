// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"

namespace platform {

// How a value moves from 0 to 1: the curve, its length, and how often. A plain value; a function of time
// only, so that an interrupted movement continues from where it is.
struct AnimationTiming {
    enum class Curve { cubicBezier, spring };

    Curve curve = Curve::cubicBezier;
    double x1 = 0.42, y1 = 0, x2 = 0.58, y2 = 1; // control points of the cubic; the default eases in and out
    double duration = 0.35; // seconds, without delay and repeats; springs settle by themselves
    double mass = 1, stiffness = 100, damping = 10; // of the spring
    double delay = 0;                               // seconds, once
    double cycleDelay = 0;                          // before the curve in each cycle; at speed 1
    double repeatCount = 1;                         // cycles; infinity repeats for ever
    bool autoreverses = false;                      // every second cycle runs backwards
    double speed = 1;

    static AnimationTiming linear(double duration);
    static AnimationTiming easeIn(double duration);
    static AnimationTiming easeOut(double duration);
    static AnimationTiming easeInOut(double duration);
    // A spring by its response (seconds of one free swing) and damping fraction (1 does not overshoot).
    static AnimationTiming spring(double response, double dampingFraction);

    struct Sample {
        double progress = 0; // 0 at the start value, 1 at the target; springs and cubics may overshoot
        double velocity = 0; // progress a second
        bool isFinished = false;
    };
    // Where the movement is `elapsed` seconds after its start; `initialVelocity` in progress a second.
    // Negative or not-a-number elapsed counts as 0; an empty duration is finished at once.
    Sample sample(double elapsed, double initialVelocity = 0) const;

    bool operator==(const AnimationTiming&) const = default;
};

} // namespace platform

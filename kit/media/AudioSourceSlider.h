// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CMTime.h"
#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/Color.h"
#include "platform/swiftui/View.h"

#include <optional>
#include <string>
#include <tuple>

namespace zelk {

// A thin slider for the position in a medium, with the time that has passed and the time that remains under it. While it is
// dragged playing is paused; afterwards it goes on if it was on. To the keyboard and to assistive technology it is a slider
// that goes by five seconds, or by a twentieth of a length that nobody knows.
//
//     AudioSourceSlider{progress, duration, isPlaying, theme->tintColor()}
//
// A duration that is no number of seconds (indefinite, infinite, invalid) counts as unknown. Main thread only.
struct AudioSourceSlider {
    platform::Binding<double> value; // 0...1
    std::optional<platform::CMTime> duration;
    platform::Binding<bool> isPlaying;
    platform::Color tintColor;

    auto dynamicProperties() { return std::tie(value, isPlaying); }
    platform::AnyView body() const;
};

// The texts under the slider for a position of 0...1. The hour stands in both as soon as the medium is as long as one.
std::string elapsedTimeText(double value, const std::optional<platform::CMTime>& duration);
std::string remainingTimeText(double value, const std::optional<platform::CMTime>& duration);

} // namespace zelk

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/Color.h"
#include "platform/swiftui/State.h"
#include "platform/swiftui/View.h"

#include <optional>
#include <tuple>

namespace zelk {

// The groove of an audio source slider with its thumb: what is dragged. A drag, which begins with the press, pauses playing
// and writes where it is; playing goes on at its end, however it ended, if it was on before. Time runs to the right in every
// language. Main thread only.
struct InnerAudioSourceSlider {
    platform::Binding<double> value; // 0...1
    platform::Binding<bool> isPlaying;
    platform::State<std::optional<bool>> wasPlaying{}; // while it is dragged
    platform::Color tintColor;
    platform::State<std::optional<platform::CGSize>> size{}; // of the groove's place, once it is laid out

    auto dynamicProperties() { return std::tie(value, isPlaying, wasPlaying, size); }
    platform::AnyView body() const;

private:
    void dragged(platform::CGPoint location) const;
    void dragEnded() const;
};

} // namespace zelk

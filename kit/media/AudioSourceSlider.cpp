// SPDX-License-Identifier: MIT
#include "kit/media/AudioSourceSlider.h"

#include "kit/foundation/zelkKitLocalized.h"
#include "kit/media/InnerAudioSourceSlider.h"
#include "kit/media/positionalString.h"
#include "kit/theme/Spacing.h"
#include "platform/swiftui/Spacer.h"
#include "platform/swiftui/Text.h"
#include "platform/swiftui/accessibility.h"
#include "platform/swiftui/adjustable.h"
#include "platform/swiftui/environment.h"
#include "platform/swiftui/monospacedDigit.h"
#include "platform/swiftui/padding.h"
#include "platform/swiftui/stacks.h"

#include <algorithm>
#include <cmath>

namespace zelk {

using namespace platform;

namespace {

constexpr double keySeconds = 5;
constexpr double longestKeyStep = 0.1; // of a short medium

// Of a length that a clock can show.
std::optional<double> secondsOf(const std::optional<CMTime>& duration)
{
    constexpr double longest = 9e18;
    if (!duration || !duration->isNumeric() || std::abs(duration->seconds()) > longest)
        return std::nullopt;
    return duration->seconds();
}

std::string clockText(double seconds, double longest)
{
    return positionalString(seconds,
                            {.resolution = Resolution::seconds,
                             .maxDisplayedTime = longest,
                             .millisecondsSeparator = ".",
                             .millisecondsCharCount = 2});
}

} // namespace

std::string elapsedTimeText(double value, const std::optional<CMTime>& duration)
{
    auto length = secondsOf(duration).value_or(0);
    return clockText(std::clamp(value, 0.0, 1.0) * length, length); // players run a little past their end
}

std::string remainingTimeText(double value, const std::optional<CMTime>& duration)
{
    auto length = secondsOf(duration);
    auto part = std::clamp(value, 0.0, 1.0);
    std::string text("-");
    return text.append(length ? clockText(*length - part * *length, *length) : "00:00");
}

AnyView AudioSourceSlider::body() const
{
    auto position = value.get();
    auto length = secondsOf(duration).value_or(0);
    auto elapsed = elapsedTimeText(position, duration);
    auto labels =
        HStack{Text{elapsed} | accessibilityHidden(), Spacer{}, Text{remainingTimeText(position, duration)}}
        | font(Font::caption()) | monospacedDigit() | foregroundColor(UIColor::secondaryLabel())
        | padding(EdgeSet::horizontal, Spacing::_200);
    auto slider = InnerAudioSourceSlider{.value = value, .isPlaying = isPlaying, .tintColor = tintColor}
        | adjustable({.value = position,
                      .step = length > 0 ? std::min(keySeconds / length, longestKeyStep) : 0,
                      .label = zelkKitLocalized("PLAYER_POSITION"),
                      .spokenValue = elapsed,
                      .onChange = [binding = value](double wish) { binding.set(wish); }});
    return AnyView(VStack{{.spacing = Spacing::_50}, slider, labels}
                   | environment<LayoutDirectionKey>(LayoutDirection::leftToRight));
}

} // namespace zelk

// SPDX-License-Identifier: MIT
#include "kit/media/InnerAudioSourceSlider.h"

#include "kit/theme/GridSize.h"
#include "kit/theme/Opacity.h"
#include "kit/theme/Spacing.h"
#include "platform/swiftui/GeometryReader.h"
#include "platform/swiftui/ZStack.h"
#include "platform/swiftui/appearance.h"
#include "platform/swiftui/effects.h"
#include "platform/swiftui/environment.h"
#include "platform/swiftui/frame.h"
#include "platform/swiftui/gestures.h"
#include "platform/swiftui/onChange.h"
#include "platform/swiftui/padding.h"
#include "platform/swiftui/placement.h"
#include "platform/swiftui/shapes.h"

#include <algorithm>
#include <cmath>

namespace zelk {

using namespace platform;

namespace {

constexpr CGFloat grooveHeight = 4;
constexpr CGFloat thumbDiameter = 0.5 * GridSize::_100;
constexpr CGFloat thumbRadius = 0.25 * GridSize::_100;
constexpr CGFloat sidePadding = Spacing::_200; // of the place that is dragged in, around the groove

auto grooveAndThumb(const GeometryProxy& proxy, double value, const Color& tint,
                    const Binding<std::optional<CGSize>>& size)
{
    auto part = std::isnan(value) ? 0 : std::clamp(value, 0.0, 1.0);
    auto color = tint.color;
    return ZStack{{.alignment = {HorizontalAlignment::leading, VerticalAlignment::center}},
                  Capsule{} | fill(color) | opacity(Opacity::_25) | frame({.height = grooveHeight}),
                  Circle{} | fill(color) | frame({.width = thumbDiameter, .height = thumbDiameter})
                      | offset({.x = part * proxy.size.width})}
    | frame({.width = proxy.size.width, .height = proxy.size.height})
        | onAppear([size, now = proxy.size] { size.set(now); })
        | onChange(proxy.size, [size](const CGSize&, const CGSize& now) { size.set(now); });
}

} // namespace

AnyView InnerAudioSourceSlider::body() const
{
    auto self = *this; // which shares the state
    auto measured = size.binding();
    auto groove =
        GeometryReader{[value = value.get(), tint = tintColor, measured](const GeometryProxy& proxy) {
            return grooveAndThumb(proxy, value, tint, measured);
        }};
    auto drag = DragGesture{.minimumDistance = 0,
                            .changed = [self](const DragGesture::Value& now) { self.dragged(now.location); },
                            .ended = [self](const DragGesture::Value&) { self.dragEnded(); },
                            .cancelled = [self] { self.dragEnded(); }};
    return AnyView(groove | frame({.height = GridSize::_150}) | padding(EdgeSet::horizontal, sidePadding)
                   | contentShape() | gesture(drag)
                   | environment<LayoutDirectionKey>(LayoutDirection::leftToRight));
}

void InnerAudioSourceSlider::dragged(CGPoint location) const
{
    if (!*wasPlaying)
        wasPlaying.set(isPlaying.get());
    isPlaying.set(false);
    if (auto known = *size) {
        auto x = location.x - sidePadding;
        value.set(std::clamp((x - thumbRadius) / known->width, 0.0, 1.0)); // not-a-number stays one
    }
}

void InnerAudioSourceSlider::dragEnded() const
{
    if (*wasPlaying == true)
        isPlaying.set(true);
    wasPlaying.set(std::nullopt);
}

} // namespace zelk

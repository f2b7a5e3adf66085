// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVVideoComposition.h"

#include "platform/avfoundation/AVAsset.h"
#include "platform/avfoundation/AVAssetTrack.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// 0 at the start of the range and before, 1 at its end and after.
double progress(const CMTimeRange& range, const CMTime& time)
{
    const auto length = range.duration.seconds();
    if (!(length > 0))
        return range.start <= time ? 1 : 0;
    return std::clamp((time - range.start).seconds() / length, 0.0, 1.0);
}

double mixed(double start, double end, double part)
{
    return start + (end - start) * part;
}

} // namespace

AVVideoCompositionLayerInstruction::AVVideoCompositionLayerInstruction(const AVAssetTrack& track)
    : trackID_(track.trackID())
{
}

template <class Value>
auto AVVideoCompositionLayerInstruction::rampAt(const std::vector<Ramp<Value>>& ramps, const CMTime& time)
    -> const Ramp<Value>*
{
    if (ramps.empty())
        return nullptr;
    auto later = std::ranges::find_if(ramps, [&time](const auto& ramp) { return time < ramp.range.start; });
    return later == ramps.begin() ? &ramps.front() : &*std::prev(later);
}

template <class Value>
void AVVideoCompositionLayerInstruction::add(std::vector<Ramp<Value>>& ramps, Ramp<Value> ramp)
{
    auto later = std::ranges::find_if(
        ramps, [&ramp](const auto& other) { return ramp.range.start < other.range.start; });
    ramps.insert(later, std::move(ramp));
}

void AVVideoCompositionLayerInstruction::setTransform(const CGAffineTransform& transform, const CMTime& time)
{
    add(transforms_, {transform, transform, {time, CMTime::zero()}});
}

void AVVideoCompositionLayerInstruction::setTransformRamp(const CGAffineTransform& start,
                                                          const CGAffineTransform& end,
                                                          const CMTimeRange& range)
{
    add(transforms_, {start, end, range});
}

CGAffineTransform AVVideoCompositionLayerInstruction::transform(const CMTime& time) const
{
    auto* ramp = rampAt(transforms_, time);
    if (!ramp)
        return {};
    const auto part = progress(ramp->range, time);
    auto& [start, end, range] = *ramp;
    return {mixed(start.a, end.a, part), mixed(start.b, end.b, part),   mixed(start.c, end.c, part),
            mixed(start.d, end.d, part), mixed(start.tx, end.tx, part), mixed(start.ty, end.ty, part)};
}

void AVVideoCompositionLayerInstruction::setOpacity(double opacity, const CMTime& time)
{
    add(opacities_, {opacity, opacity, {time, CMTime::zero()}});
}

void AVVideoCompositionLayerInstruction::setOpacityRamp(double start, double end, const CMTimeRange& range)
{
    add(opacities_, {start, end, range});
}

double AVVideoCompositionLayerInstruction::opacity(const CMTime& time) const
{
    auto* ramp = rampAt(opacities_, time);
    return ramp ? std::clamp(mixed(ramp->start, ramp->end, progress(ramp->range, time)), 0.0, 1.0) : 1;
}

AVVideoComposition AVVideoComposition::propertiesOf(const AVAsset& asset)
{
    AVVideoComposition composition{.frameDuration = CMTime(1, 30)};
    auto tracks = asset.tracksWithMediaType(AVMediaType::video);
    if (tracks.empty())
        return composition;
    auto& track = *tracks.front();
    const auto transform = track.preferredTransform();
    auto size = transform.apply(CGRect{{}, track.naturalSize()}).size;
    composition.renderSize = {std::round(size.width), std::round(size.height)};
    if (auto rate = track.nominalFrameRate(); rate > 0)
        composition.frameDuration = CMTime::makeWithSeconds(1 / rate, 720'000);
    AVVideoCompositionLayerInstruction layer(track);
    layer.setTransform(transform, CMTime::zero());
    composition.instructions = {
        {.timeRange = {CMTime::zero(), CMTime::positiveInfinity()}, .layerInstructions = {layer}}};
    return composition;
}

} // namespace platform

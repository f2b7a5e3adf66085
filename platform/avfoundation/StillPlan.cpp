// SPDX-License-Identifier: MIT
#include "platform/avfoundation/StillPlan_p.h"

#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/MediaSegment_p.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr CMTimeScale nanoseconds = 1'000'000'000;
// A number of seconds that is less than a picture's time by this names the picture still.
constexpr CMTime leniency(1, 2'000'000);
// Less than any picture lasts.
constexpr CMTime instant(1, 90'000);

// A requested time on the timeline of the asset.
struct Window {
    CMTime time;
    CMTime earliest;
    CMTime latest;
};

CMTime cleanTolerance(const CMTime& tolerance)
{
    return tolerance.isValid() && CMTime::zero() < tolerance && !tolerance.isIndefinite() ? tolerance
                                                                                          : CMTime::zero();
}

// Nothing when the time is outside of the asset and its tolerance does not reach in.
std::optional<Window> windowOf(const CMTime& time, const StillSettings& settings, const CMTime& duration)
{
    if (!time.isNumeric() || time.epoch != 0)
        return std::nullopt;
    Window window{time, time - cleanTolerance(settings.toleranceBefore),
                  time + cleanTolerance(settings.toleranceAfter)};
    if (duration <= time) {
        if (duration <= window.earliest)
            return std::nullopt;
        window.time = CMTimeMaximum(duration - instant, window.earliest);
    }
    if (window.time < CMTime::zero()) {
        if (window.latest < CMTime::zero())
            return std::nullopt;
        window.time = CMTime::zero();
    }
    return window;
}

const MediaSegment* nearest(const MediaSegment* before, const MediaSegment* after, const Window& window)
{
    // What is first counts from zero on, what is last to the end.
    if (!before || !after)
        return before ? before : after;
    const bool mayBeBefore = window.earliest < before->target.end();
    const bool mayBeAfter = after->target.start <= window.latest;
    if (mayBeBefore && mayBeAfter)
        return window.time - before->target.end() <= after->target.start - window.time ? before : after;
    return mayBeBefore ? before : mayBeAfter ? after : nullptr;
}

// Where on the track the picture is to be found. Null in a gap.
const MediaSegment* segmentFor(const std::vector<MediaSegment>& segments, const Window& window)
{
    const MediaSegment* before = nullptr;
    const MediaSegment* after = nullptr;
    for (auto& segment : segments) {
        if (segment.isEmpty())
            continue;
        if (segment.target.containsTime(window.time))
            return &segment;
        if (segment.target.start <= window.time)
            before = &segment;
        else if (!after)
            after = &segment;
    }
    return nearest(before, after, window);
}

StillMoment momentWithin(const MediaSegment& segment, Window window, bool isExactly)
{
    const auto base = segment.mediaStream().format->parameters().timeBase;
    const auto shift = segment.target.start - segment.sourceStart;
    if (!segment.isWholeTrack) {
        const auto& start = segment.target.start;
        const auto last = CMTimeMaximum(segment.target.end() - instant, start);
        for (auto* time : {&window.time, &window.earliest, &window.latest})
            *time = CMTimeMinimum(CMTimeMaximum(*time, start), last);
    }
    auto lookup = window.time - shift;
    if (!isExactly)
        lookup += leniency;
    StillMoment moment{.time = ticks(lookup, base, AV_ROUND_DOWN), .shift = shift};
    moment.start = segment.isWholeTrack ? CMTime::negativeInfinity() : segment.target.start;
    moment.earliest = std::min(ticks(window.earliest - shift, base, AV_ROUND_UP), moment.time);
    moment.latest = std::max(ticks(window.latest - shift, base, AV_ROUND_DOWN), moment.time);
    moment.seekTime = moment.time;
    return moment;
}

class Planner {
public:
    explicit Planner(const StillSettings& settings) { plan_.settings = settings; }

    StillPlan plan(const AVAsset& asset, const std::vector<AVRequestedTime>& times)
    {
        auto error = asset.loadError();
        auto tracks = asset.tracksWithMediaType(AVMediaType::video);
        if (!error && tracks.empty())
            error = AVError::noSourceTrack;
        duration_ = asset.duration();
        if (!duration_.isNumeric() || duration_ <= CMTime::zero())
            duration_ = CMTime::positiveInfinity();
        for (auto& time : times) {
            auto* exact = std::get_if<CMTime>(&time);
            auto& request = plan_.requests.emplace_back();
            request.requestedTime =
                exact ? *exact : CMTime::makeWithSeconds(std::get<double>(time), nanoseconds);
            request.error = error;
            request.firstSlot = plan_.requestOfSlot.size();
            if (error)
                continue;
            if (plan_.settings.videoComposition)
                addComposed(tracks, request, exact != nullptr);
            else
                addPlain(*tracks.front(), request, exact != nullptr);
        }
        return std::move(plan_);
    }

private:
    void addPlain(const AVAssetTrack& track, StillRequest& request, bool isExactly)
    {
        auto transform =
            plan_.settings.appliesPreferredTrackTransform ? track.preferredTransform() : CGAffineTransform{};
        auto window = windowOf(request.requestedTime, plan_.settings, duration_);
        if (!window || !addMoment(track, transform, *window, isExactly, request))
            request.error = AVError::noImageAtTime;
    }

    void addComposed(const std::vector<std::shared_ptr<AVAssetTrack>>& tracks, StillRequest& request,
                     bool isExactly)
    {
        auto& composition = *plan_.settings.videoComposition;
        auto& size = composition.renderSize;
        if (!(size.width >= 1) || !(size.height >= 1) || !std::isfinite(size.width * size.height)
            || !composition.frameDuration.isNumeric() || composition.frameDuration <= CMTime::zero()) {
            request.error = AVError::invalidVideoComposition;
            return;
        }
        auto window = windowOf(request.requestedTime, plan_.settings, duration_);
        if (!window) {
            request.error = AVError::noImageAtTime;
            return;
        }
        auto lookup = isExactly ? window->time : window->time + leniency;
        const double frame = std::floor(lookup.seconds() / composition.frameDuration.seconds() + 1e-9);
        request.frameTime = composition.frameDuration.multiplied(
            static_cast<std::int32_t>(std::clamp(frame, 0.0, 2'147'483'647.0)));
        auto instruction = std::ranges::find_if(composition.instructions, [&request](const auto& candidate) {
            return candidate.timeRange.containsTime(request.frameTime);
        });
        if (instruction == composition.instructions.end()) {
            request.error = AVError::invalidVideoComposition;
            return;
        }
        request.backgroundColor = instruction->backgroundColor;
        const Window exact{request.frameTime, request.frameTime, request.frameTime};
        for (auto& layer : instruction->layerInstructions) {
            auto track = std::ranges::find(tracks, layer.trackID(), &AVAssetTrack::trackID);
            if (track != tracks.end() && addMoment(**track, {}, exact, true, request))
                request.layers.push_back(
                    {layer.transform(request.frameTime), layer.opacity(request.frameTime)});
        }
    }

    bool addMoment(const AVAssetTrack& track, const CGAffineTransform& transform, const Window& window,
                   bool isExactly, StillRequest& request)
    {
        const auto segments = track.mediaSegments();
        auto* segment = segmentFor(segments, window);
        if (!segment)
            return false;
        auto session = std::ranges::find_if(plan_.sessions, [&](const StillSession& candidate) {
            return candidate.source == segment->source && candidate.stream == segment->stream
                && candidate.transform == transform;
        });
        if (session == plan_.sessions.end())
            session = plan_.sessions.insert(session, {segment->source, segment->stream, transform, {}});
        auto moment = momentWithin(*segment, window, isExactly);
        moment.slot = plan_.requestOfSlot.size();
        session->moments.push_back(std::move(moment));
        plan_.requestOfSlot.push_back(plan_.requests.size() - 1);
        ++request.slotCount;
        return true;
    }

    StillPlan plan_;
    CMTime duration_;
};

} // namespace

StillPlan planStills(const AVAsset& asset, const StillSettings& settings,
                     const std::vector<AVRequestedTime>& times)
{
    return Planner(settings).plan(asset, times);
}

} // namespace platform

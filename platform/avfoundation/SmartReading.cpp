// SPDX-License-Identifier: MIT
// A cut through H.264 that encodes as little as it can.
//
// 1. Pictures from the range's start to the first instantaneous refresh are decoded and encoded anew.
// 2. From there samples are copied. Of the group of pictures that the range ends in, those are copied that come, in order
//    of decoding, before any that is shown later than one that is left out.
// 3. What remains up to the range's end is decoded and encoded anew. The same becomes of all that follows a sample that is
//    not what was planned for: one of other parameters, hidden, or without a time.
//
// Encoded pictures are never reordered. Decode times are made up for all, so that they grow across the seams and do not
// depend on a container that has none.
#include "platform/avfoundation/SmartReading_p.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/CVPixelBuffer_p.h"
#include "platform/avfoundation/DecodeTimes_p.h"
#include "platform/avfoundation/PictureEncoder_p.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <deque>
#include <utility>

namespace platform {

namespace {

// How many samples are kept back to find the last of them that can be copied, before the first go out.
constexpr std::size_t lookahead = 96;
// A file whose first refresh is later than this is encoded whole.
constexpr CMTime longestSearch{60, 1};

std::span<const std::uint8_t> bytesOf(const CMSampleBuffer& sample)
{
    return {reinterpret_cast<const std::uint8_t*>(sample.data.bytes.data()), sample.data.bytes.size()};
}

CMTime decodeTimeOf(const CMSampleBuffer& sample)
{
    return sample.decodeTimeStamp.isNumeric() ? sample.decodeTimeStamp : sample.presentationTimeStamp;
}

bool isPlain(const AVCodecParameters& codec)
{
    bool isProgressive = codec.field_order == AV_FIELD_PROGRESSIVE || codec.field_order == AV_FIELD_UNKNOWN;
    bool is420 = codec.format == AV_PIX_FMT_YUV420P || codec.format == AV_PIX_FMT_YUVJ420P;
    return codec.codec_id == AV_CODEC_ID_H264 && isProgressive && is420 && codec.extradata_size > 0;
}

// The only piece of media within the range.
std::optional<MediaSegment> onlySegment(const AVAssetTrack& track, const CMTimeRange& range)
{
    auto segments = segmentsWithin(track.mediaSegments(), range);
    std::erase_if(segments, [](const MediaSegment& segment) { return segment.isEmpty(); });
    if (segments.size() != 1 || !segments[0].target.duration.isNumeric())
        return std::nullopt;
    return segments[0];
}

// Of the profiles that an encoder here has.
std::optional<H264Profile> profileOf(const H264ParameterSets& sets)
{
    switch (sets.profile) {
    case 66:
        return H264Profile::baseline;
    case 77:
        return H264Profile::main;
    case 100:
        return H264Profile::high;
    }
    return std::nullopt;
}

VideoSettings settingsLike(const AVCodecParameters& codec, const CMVideoFormat& format, double rate,
                           H264Profile profile)
{
    return {.AVVideoWidthKey = codec.width,
            .AVVideoHeightKey = codec.height,
            .AVVideoQualityKey = 0.7,
            .AVVideoAllowFrameReorderingKey = false,
            .AVVideoProfileLevelKey = profile,
            .AVVideoExpectedSourceFrameRateKey = rate > 0 ? std::optional(rate) : std::nullopt,
            .AVVideoColorPropertiesKey = format.color,
            .AVVideoPixelAspectRatioKey = format.pixelAspectRatio};
}

// Opens an encoder as the reading will, to learn its parameter sets before there is a picture.
Result<std::unique_ptr<PictureEncoder>> openEncoder(const SmartPlan& plan, AVRational timeBase)
{
    auto blank = CVPixelBuffer::make(*plan.settings.AVVideoWidthKey, *plan.settings.AVVideoHeightKey,
                                     plan.pixels, *plan.settings.AVVideoColorPropertiesKey);
    if (!blank)
        return failure(AVError::outOfMemory);
    return PictureEncoder::open(plan.settings, *blank,
                                {.timeBase = timeBase, .parameterSetID = plan.encoderID});
}

std::optional<H264ParameterSets> parameterSetsOf(const PictureEncoder& encoder)
{
    auto& context = encoder.context();
    return H264ParameterSets::fromByteStream(
        {context.extradata, static_cast<std::size_t>(std::max(context.extradata_size, 0))});
}

// Where copying can begin, and how far pictures overtake each other from there on.
struct Beginning {
    CMTime time;
    int depth;
};

// The first sample of the segment that later ones do not look behind. The depth is that of as many samples as are kept
// back.
std::optional<Beginning> findBeginning(const MediaSegment& segment, int lengthSize)
{
    auto& range = segment.target;
    auto reading = makeSampleReading({.range = range, .segments = {segment}, .stop = {}});
    std::vector<CMTime> times; // from the first refresh on
    while (times.size() < lookahead) {
        auto sample = reading->next();
        if (!sample)
            return std::nullopt;
        if (!*sample || (times.empty() && decodeTimeOf(**sample) > range.start + longestSearch))
            break;
        auto time = (*sample)->presentationTimeStamp;
        bool isRefresh = (*sample)->isSync && time >= range.start && time < range.end()
            && isInstantaneousRefresh(bytesOf(**sample), lengthSize);
        if (!times.empty() || isRefresh)
            times.push_back(time);
    }
    if (times.empty())
        return std::nullopt;
    std::ptrdiff_t depth = 0;
    for (auto time = times.begin(); time != times.end(); ++time)
        depth =
            std::max(depth, std::count_if(times.begin(), time, [&](auto& other) { return *time < other; }));
    return Beginning{times.front(), static_cast<int>(depth)};
}

std::int64_t frameTicks(const CMFormatDescription& format)
{
    auto& parameters = format.parameters();
    auto rate = parameters.frameRate.num > 0 ? parameters.frameRate : AVRational{25, 1};
    return std::max<std::int64_t>(av_rescale_q(1, av_inv_q(rate), parameters.timeBase), 1);
}

class SmartReading final : public TrackReading {
public:
    SmartReading(TrackExtent extent, SmartPlan plan)
        : extent_(std::move(extent))
        , plan_(std::move(plan))
        , timeBase_(plan_.format->parameters().timeBase)
        , decodeTimes_(plan_.depth, frameTicks(*plan_.format))
        , expectedTimes_(decodeTimes_)
    {
    }

    Result<std::shared_ptr<const CMSampleBuffer>> next() override
    {
        while (ready_.empty()) {
            if (phase_ == Phase::ended)
                return nullptr;
            TRY(advance());
        }
        auto sample = std::move(ready_.front());
        ready_.pop_front();
        return sample;
    }

private:
    enum class Phase { beginning, head, copying, tail, ended };

    Result<void> advance();
    Result<void> begin();
    Result<void> beginCopying();
    void keep(std::shared_ptr<const CMSampleBuffer> sample);
    bool canCopy(const CMSampleBuffer& sample) const;
    bool isInOrder(const CMSampleBuffer& sample);
    Result<void> copyNext();
    // Gives the longest beginning of the samples kept back that is shown before all of the rest; `rest` is the earliest
    // time that samples not read yet can have.
    void release(const CMTime& rest);
    Result<void> encodeRange(const CMTime& from, const CMTime& to);
    Result<bool> encodeNext();
    Result<void> take(AVPacket& packet);

    const TrackExtent extent_;
    const SmartPlan plan_;
    const AVRational timeBase_;
    Phase phase_ = Phase::beginning;
    std::deque<std::shared_ptr<const CMSampleBuffer>> ready_;

    std::unique_ptr<TrackReading> samples_;
    std::deque<std::shared_ptr<const CMSampleBuffer>> kept_; // in order of decoding
    CMTime shown_;                                           // where what was copied ends
    std::vector<CMTime> latest_; // the greatest times of samples that were kept, as many as can be overtaken
    DecodeTimes decodeTimes_;    // of what is given out
    DecodeTimes expectedTimes_;  // the same with what is kept back

    std::unique_ptr<TrackReading> pictures_;
    std::unique_ptr<PictureEncoder> encoder_;
};

Result<void> SmartReading::advance()
{
    switch (phase_) {
    case Phase::beginning:
        return begin();
    case Phase::head:
    case Phase::tail:
        if (TRY(encodeNext()))
            return {};
        if (phase_ == Phase::head)
            return beginCopying();
        phase_ = Phase::ended;
        return {};
    case Phase::copying:
        return copyNext();
    case Phase::ended:
        break;
    }
    return {};
}

Result<void> SmartReading::begin()
{
    if (plan_.range.start == plan_.firstCopied)
        return beginCopying();
    phase_ = Phase::head;
    return encodeRange(plan_.range.start, plan_.firstCopied);
}

Result<void> SmartReading::beginCopying()
{
    phase_ = Phase::copying;
    expectedTimes_ = decodeTimes_;
    samples_ = makeSampleReading(extent_);
    for (;;) {
        auto sample = TRY(samples_->next());
        if (!sample)
            return failure(AVError::invalidSourceMedia); // not the file that was planned for
        if (!sample->isSync || !canCopy(*sample) || sample->presentationTimeStamp != plan_.firstCopied)
            continue;
        if (!isInOrder(*sample))
            return failure(AVError::invalidSourceMedia);
        keep(std::move(sample));
        return {};
    }
}

void SmartReading::keep(std::shared_ptr<const CMSampleBuffer> sample)
{
    latest_.push_back(sample->presentationTimeStamp);
    std::ranges::sort(latest_);
    if (latest_.size() > DecodeTimes::greatestDepth + 1)
        latest_.erase(latest_.begin());
    kept_.push_back(std::move(sample));
}

void SmartReading::release(const CMTime& rest)
{
    auto end = plan_.range.end();
    // From behind: the earliest that is shown of what follows each sample.
    std::vector<CMTime> earliest(kept_.size() + 1, rest);
    for (std::size_t i = kept_.size(); i-- > 0;)
        earliest[i] = CMTimeMinimum(earliest[i + 1], kept_[i]->presentationTimeStamp);
    std::size_t count = 0;
    CMTime latest = CMTime::negativeInfinity();
    for (std::size_t i = 0; i < kept_.size() && kept_[i]->presentationTimeStamp < end; ++i) {
        latest = CMTimeMaximum(latest, kept_[i]->presentationTimeStamp);
        if (latest < earliest[i + 1])
            count = i + 1;
    }
    if (count > 0)
        shown_ = CMTimeMinimum(earliest[count], end);
    for (; count > 0; --count) {
        auto sample = std::make_shared<CMSampleBuffer>(*kept_.front());
        sample->formatDescription = plan_.format;
        if (sample->duration.isNumeric())
            sample->duration = CMTimeMinimum(sample->duration, end - sample->presentationTimeStamp);
        auto decodeTime = decodeTimes_.next(ticks(sample->presentationTimeStamp, timeBase_));
        precondition(decodeTime.has_value(), "samples were found to be in order when they were kept");
        sample->decodeTimeStamp = mediaTime(*decodeTime, timeBase_);
        ready_.push_back(std::move(sample));
        kept_.pop_front();
    }
}

// Whether the sample is of the kind that was planned for.
bool SmartReading::canCopy(const CMSampleBuffer& sample) const
{
    bool isHidden = sample.trimDurationAtStart.isNumeric() && sample.trimDurationAtStart > CMTime::zero();
    return sample.formatDescription == plan_.sourceFormat && !isHidden
        && sample.presentationTimeStamp.isNumeric();
}

// Whether there is a time to decode the sample at, after those before it.
bool SmartReading::isInOrder(const CMSampleBuffer& sample)
{
    return expectedTimes_.next(ticks(sample.presentationTimeStamp, timeBase_)).has_value();
}

Result<void> SmartReading::copyNext()
{
    auto sample = TRY(samples_->next());
    if (sample && canCopy(*sample) && isInOrder(*sample)) {
        keep(std::move(sample));
        // What is to come overtakes no more than the greatest depth.
        if (kept_.size() > lookahead)
            release(latest_.front());
        return {};
    }
    release(sample ? latest_.front() : CMTime::positiveInfinity());
    samples_.reset();
    bool isWhole = shown_.isNumeric() && shown_ >= plan_.range.end();
    phase_ = isWhole ? Phase::ended : Phase::tail;
    kept_.clear();
    if (!isWhole)
        TRY(encodeRange(shown_.isNumeric() ? shown_ : plan_.firstCopied, plan_.range.end()));
    return {};
}

Result<void> SmartReading::encodeRange(const CMTime& from, const CMTime& to)
{
    auto range = CMTimeRange::fromTimeToTime(from, to);
    pictures_ = makePictureReading(
        {.range = range, .segments = segmentsWithin(extent_.segments, range), .stop = extent_.stop},
        {.kCVPixelBufferPixelFormatTypeKey = plan_.pixels});
    encoder_ = TRY(openEncoder(plan_, timeBase_));
    if (parameterSetsOf(*encoder_) != plan_.encoder)
        return failure(AVError::exportFailed); // the file's description would not hold for them
    return {};
}

Result<bool> SmartReading::encodeNext()
{
    auto handle = [this](AVPacket& packet) { return take(packet); };
    auto picture = TRY(pictures_->next());
    if (!picture) {
        TRY(encoder_->finish(handle));
        encoder_.reset();
        pictures_.reset();
        return false;
    }
    auto begin = ticks(picture->presentationTimeStamp, timeBase_);
    auto end = ticks(picture->presentationTimeStamp + picture->duration, timeBase_);
    TRY(encoder_->encode(*picture->imageBuffer, begin, std::max<std::int64_t>(end - begin, 1), handle));
    return true;
}

Result<void> SmartReading::take(AVPacket& packet)
{
    auto bytes = std::make_shared<std::vector<std::uint8_t>>(
        sliceUnits({packet.data, static_cast<std::size_t>(packet.size)}, plan_.source.lengthSize));
    auto sample = std::make_shared<CMSampleBuffer>();
    sample->formatDescription = plan_.format;
    sample->presentationTimeStamp = mediaTime(packet.pts, timeBase_);
    auto decodeTime = decodeTimes_.next(packet.pts);
    if (!decodeTime)
        return failure(AVError::invalidSourceMedia); // times that do not grow
    sample->decodeTimeStamp = mediaTime(*decodeTime, timeBase_);
    sample->duration = mediaTime(packet.duration, timeBase_);
    sample->isSync = packet.flags & AV_PKT_FLAG_KEY;
    sample->data = {std::as_bytes(std::span(*bytes)), bytes};
    ready_.push_back(std::move(sample));
    return {};
}

} // namespace

std::optional<SmartPlan> planSmartReading(const AVAssetTrack& track, const CMTimeRange& range, CGSize largest)
{
    auto segment = onlySegment(track, range);
    if (!segment || track.hasProtectedContent() || !track.isDecodable())
        return std::nullopt;
    auto& source = *segment->mediaStream().format;
    auto& codec = *source.parameters().codec;
    if (!isPlain(codec) || codec.width > largest.width || codec.height > largest.height
        || codec.width % 2 != 0 || codec.height % 2 != 0 || track.naturalSize().width > largest.width)
        return std::nullopt;
    auto sets = H264ParameterSets::parse({codec.extradata, static_cast<std::size_t>(codec.extradata_size)});
    auto profile = sets ? profileOf(*sets) : std::nullopt;
    if (!profile)
        return std::nullopt;
    auto first = findBeginning(*segment, sets->lengthSize);
    if (!first || first->depth > DecodeTimes::greatestDepth)
        return std::nullopt;
    SmartPlan plan{.sourceFormat = segment->mediaStream().format,
                   .source = *sets,
                   .settings = settingsLike(codec, *source.video(), track.nominalFrameRate(), *profile),
                   .pixels = codec.format == AV_PIX_FMT_YUVJ420P
                       ? CVPixelFormatType::planar420YpCbCr8FullRange
                       : CVPixelFormatType::planar420YpCbCr8,
                   .range = segment->target,
                   .firstCopied = first->time,
                   .depth = std::min(std::max(first->depth, codec.video_delay), DecodeTimes::greatestDepth)};
    plan.encoderID = 31;
    while (plan.encoderID > 0 && sets->usesID(plan.encoderID))
        --plan.encoderID;
    auto encoder = openEncoder(plan, source.parameters().timeBase);
    auto own = encoder ? parameterSetsOf(**encoder) : std::nullopt;
    if (plan.encoderID == 0 || !own || !own->usesID(plan.encoderID))
        return std::nullopt;
    plan.encoder = *own;
    plan.format = withExtradata(source, sets->merged(*own).record());
    return plan;
}

std::unique_ptr<TrackReading> makeSmartReading(TrackExtent extent, SmartPlan plan)
{
    return std::make_unique<SmartReading>(std::move(extent), std::move(plan));
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/avfoundation/SegmentSound_p.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

extern "C" {
#include <libavutil/mathematics.h>
}

namespace platform {

namespace {

// Samples that go into the converter at a time.
constexpr int sliceSize = 4096;
// Milliseconds by which times may deviate from the count of samples: containers round to as much as one.
constexpr int tolerance = 10;
// Seconds. A time that jumps further ahead is a fault of the file.
constexpr int believableGap = 3600;
// Samples; sums of a few of these are no overflow.
constexpr std::int64_t farAway = std::int64_t{1} << 60;

} // namespace

Result<std::unique_ptr<SegmentSound>> SegmentSound::open(const MediaSegment& segment,
                                                         const CMAudioFormat& format, std::stop_token stop)
{
    auto reader = TRY(FrameReader::open(*segment.source, segment.stream, std::move(stop)));
    // The position is rounded once, to a sample; the place to begin decoding may be any before it.
    TRY(reader->seek(ticks(segment.sourceStart, reader->timeBase(), AV_ROUND_DOWN)));
    return std::unique_ptr<SegmentSound>(new SegmentSound(std::move(reader), segment.sourceStart, format));
}

SegmentSound::SegmentSound(std::unique_ptr<FrameReader> reader, const CMTime& start,
                           const CMAudioFormat& format)
    : reader_(std::move(reader))
    , start_(start)
    , format_(format)
    , frame_(makeFrame())
{
}

Result<void> SegmentSound::read(PCMChunk& chunk)
{
    while (chunk.room() > 0 && !(hasEnded_ && !converter_)) {
        const auto before = chunk.size();
        TRY(step(chunk));
        produced_ += chunk.size() - before;
    }
    return {};
}

Result<void> SegmentSound::step(PCMChunk& chunk)
{
    if (isFinishing_)
        return finish(chunk);
    if (converter_ && converter_->isBackedUp())
        return converter_->takeOut(chunk);
    switch (frameState_) {
    case FrameState::none:
        av_frame_unref(frame_.get());
        if (TRY(reader_->next(*frame_))) {
            if (frame_->nb_samples > 0 && frame_->sample_rate > 0)
                frameState_ = FrameState::met;
        } else {
            hasEnded_ = true;
            isFinishing_ = converter_.has_value();
        }
        return {};
    case FrameState::met:
        return meetFrame(chunk);
    case FrameState::placed:
        return feed(chunk);
    }
    return {};
}

// A new form of sound ends the converter of the last one first.
Result<void> SegmentSound::meetFrame(PCMChunk& chunk)
{
    if (converter_ && !converter_->fits(*frame_)) {
        isFinishing_ = true;
        return {};
    }
    if (!converter_)
        TRY(openConverter(chunk));
    placeFrame();
    frameState_ = FrameState::placed;
    return {};
}

Result<void> SegmentSound::openConverter(PCMChunk& chunk)
{
    converter_ = TRY(SoundConverter::open(*frame_, format_));
    const auto previousRate = std::exchange(rate_, frame_->sample_rate);
    const auto origin = ticks(start_, {1, rate_});
    if (previousRate == 0) {
        position_ = origin;
        return {};
    }
    const auto elapsed = av_rescale(position_ - ticks(start_, {1, previousRate}), rate_, previousRate);
    position_ = origin + elapsed;
    skew_ = av_rescale(skew_, rate_, previousRate);
    // The converters' ends are whole samples: what that makes too much or too little is made up for at once.
    const auto due = av_rescale(elapsed, static_cast<std::int64_t>(format_.sampleRate), rate_);
    if (due < produced_)
        converter_->drop(produced_ - due);
    else
        chunk.appendSilence(std::min(due - produced_, chunk.room()));
    return {};
}

// Where the frame begins, in samples. Where the container's ticks are coarser than samples, the codec's frames say
// more: they follow each other without gaps from the encoder's padding on.
std::int64_t SegmentSound::timeOfFrame() const
{
    const auto time =
        std::clamp(av_rescale_q(frame_->pts, reader_->timeBase(), {1, rate_}), -farAway, farAway);
    const auto tick = av_rescale_q(1, reader_->timeBase(), {1, rate_});
    auto& decoder = reader_->decoder().context();
    const auto grid = decoder.frame_size > 0 ? decoder.frame_size : frame_->nb_samples;
    if (tick <= 1 || grid <= tick * 2)
        return time;
    const auto padding = reader_->initialPadding();
    const auto end = time + frame_->nb_samples + padding;
    const auto nearest = (end + grid / 2) / grid * grid;
    return std::abs(nearest - end) <= tick ? nearest - padding - frame_->nb_samples : time;
}

// Where the frame lies beside the position: silence is due before it, or some of it is past.
void SegmentSound::placeFrame()
{
    const auto time = timeOfFrame();
    auto ahead = time - skew_ - position_;
    if (isPlaced_ && ahead > static_cast<std::int64_t>(rate_) * believableGap) {
        skew_ += ahead;
        ahead = 0;
    }
    const auto jitter = static_cast<std::int64_t>(rate_) * tolerance / 1000
        + 2 * av_rescale_q(1, reader_->timeBase(), {1, rate_});
    if (isPlaced_ && std::abs(ahead) <= jitter)
        ahead = 0;
    isPlaced_ = isPlaced_ || ahead + frame_->nb_samples > 0;
    offset_ = static_cast<int>(std::clamp<std::int64_t>(-ahead, 0, frame_->nb_samples));
    silence_ = std::max<std::int64_t>(ahead, 0);
}

Result<void> SegmentSound::feed(PCMChunk& chunk)
{
    if (silence_ > 0) {
        const auto count = static_cast<int>(std::min<std::int64_t>(silence_, SoundConverter::silenceSize));
        silence_ -= count;
        position_ += count;
        return converter_->convertSilence(count, chunk);
    }
    if (const auto count = std::min(frame_->nb_samples - offset_, sliceSize); count > 0) {
        const auto offset = std::exchange(offset_, offset_ + count);
        position_ += count;
        return converter_->convert(*frame_, offset, count, chunk);
    }
    frameState_ = FrameState::none;
    return {};
}

Result<void> SegmentSound::finish(PCMChunk& chunk)
{
    TRY(converter_->drain(chunk));
    if (chunk.room() == 0)
        return {};
    isFinishing_ = false;
    converter_.reset();
    return {};
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/avfoundation/MediaDemuxer_p.h"

#include "platform/avfoundation/FFmpegError_p.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>

namespace platform {

namespace {

// Packets that cannot be read in a row before the rest of the file is given up.
constexpr int patience = 1000;
// Seconds between a stream's packets.
constexpr int believableJump = 10;

} // namespace

std::int64_t MediaDemuxer::origin(int stream) const
{
    return states_[static_cast<std::size_t>(stream)].origin;
}

void MediaDemuxer::select(std::initializer_list<int> streams)
{
    for (int index = 0; index < streamCount(); ++index)
        format_->streams[index]->discard =
            std::ranges::find(streams, index) != streams.end() ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
}

Error MediaDemuxer::failureOf(int code) const
{
    if (file_->isStopped())
        code = AVERROR_EXIT;
    else if (file_->readFailure() < 0)
        code = file_->readFailure();
    return mediaError(code, MediaWork::read, format_->url ? format_->url : "");
}

// The end of the data was met. Whether the index promises more of a selected stream: the file was cut.
bool MediaDemuxer::isCutOff() const
{
    if (!isMovie())
        return false;
    for (int index = 0; index < streamCount(); ++index) {
        auto* stream = format_->streams[index];
        if (stream->discard >= AVDISCARD_ALL || isCover(*stream))
            continue;
        for (int entry = avformat_index_get_entries_count(stream) - 1; entry >= 0; --entry) {
            auto* sample = avformat_index_get_entry(stream, entry);
            if (sample && sample->pos + sample->size > identity().size)
                return true;
        }
    }
    return false;
}

Result<bool> MediaDemuxer::read(AVPacket& packet)
{
    while (!pending_.empty()) {
        auto kept = std::move(pending_.front());
        pending_.pop_front();
        isAtStart_ = false;
        if (stream(kept->stream_index).discard >= AVDISCARD_ALL)
            continue;
        av_packet_move_ref(&packet, kept.get());
        return true;
    }
    isAtStart_ = false;
    return readOn(packet);
}

Result<bool> MediaDemuxer::readOn(AVPacket& packet)
{
    for (int attempts = 0; attempts < patience; ++attempts) {
        if (isStopped())
            return failure(failureOf(AVERROR_EXIT));
        int code = av_read_frame(format_.get(), &packet);
        if (code >= 0) {
            auto* stream = format_->streams[packet.stream_index];
            if (stream->discard >= AVDISCARD_ALL || packet.stream_index >= static_cast<int>(states_.size())) {
                av_packet_unref(&packet);
                --attempts;
                continue;
            }
            repairTimes(packet);
            return true;
        }
        if (isStopped() || file_->readFailure() < 0 || code == AVERROR(ENOMEM))
            return failure(failureOf(code));
        if (isCutOff())
            return failure(failureOf(AVERROR_INVALIDDATA));
        if (code == AVERROR_EOF)
            return false;
    }
    return false; // nothing but damage from here on
}

void MediaDemuxer::repairTimes(AVPacket& packet)
{
    auto& source = stream(packet.stream_index);
    auto& state = states_[static_cast<std::size_t>(packet.stream_index)];
    const bool inOrder =
        source.codecpar->codec_type != AVMEDIA_TYPE_VIDEO || source.codecpar->video_delay == 0;
    if (packet.dts == AV_NOPTS_VALUE && packet.pts == AV_NOPTS_VALUE && inOrder)
        packet.dts = state.nextDts == AV_NOPTS_VALUE ? state.origin : state.nextDts;
    if (packet.pts == AV_NOPTS_VALUE && inOrder)
        packet.pts = packet.dts;
    if (packet.dts == AV_NOPTS_VALUE && inOrder)
        packet.dts = packet.pts;

    auto shift = [&state](std::int64_t& time) {
        if (time != AV_NOPTS_VALUE
            && (__builtin_sub_overflow(time, state.origin, &time)
                || __builtin_add_overflow(time, state.wrapOffset, &time)))
            time = AV_NOPTS_VALUE; // a time beyond all time is none
    };
    shift(packet.dts);
    if (int bits = source.pts_wrap_bits; bits > 0 && bits < 63 && packet.dts != AV_NOPTS_VALUE) {
        const auto period = std::int64_t{1} << bits;
        if (state.lastDts != AV_NOPTS_VALUE && packet.dts < state.lastDts - period / 2) {
            state.wrapOffset += period;
            packet.dts += period;
        }
        // Broadcasts are put together from pieces, each with a clock of its own.
        const auto jump = state.lastDts != AV_NOPTS_VALUE ? packet.dts - state.lastDts : 0;
        if ((format_->iformat->flags & AVFMT_TS_DISCONT)
            && std::abs(jump) > av_rescale_q(believableJump, {1, 1}, source.time_base)) {
            state.wrapOffset -= jump - packet.duration;
            packet.dts -= jump - packet.duration;
        }
        state.lastDts = packet.dts;
    }
    shift(packet.pts);
    if (packet.duration < 0)
        packet.duration = 0;
    // Kept as the container counts: shifted once more when it is used.
    state.nextDts = packet.dts == AV_NOPTS_VALUE
        ? AV_NOPTS_VALUE
        : packet.dts - state.wrapOffset + state.origin + packet.duration;
}

Result<void> MediaDemuxer::goToStart(int stream)
{
    if (isAtStart_)
        return {};
    forgetTimes();
    auto start = format_->streams[stream]->start_time;
    if (start == AV_NOPTS_VALUE)
        start = 0;
    // The way back is different in each kind of container; the last one suits those without any index.
    int code =
        avformat_seek_file(format_.get(), stream, INT64_MIN, std::min<std::int64_t>(start, 0), start, 0);
    if (code < 0)
        code = av_seek_frame(format_.get(), stream, start, AVSEEK_FLAG_BACKWARD);
    if (code < 0)
        code = av_seek_frame(format_.get(), -1, 0, AVSEEK_FLAG_BYTE);
    if (code < 0)
        return failure(failureOf(code));
    isAtStart_ = true;
    return {};
}

void MediaDemuxer::forgetTimes()
{
    pending_.clear();
    for (auto& state : states_)
        state.lastDts = state.nextDts = AV_NOPTS_VALUE, state.wrapOffset = 0;
}

// Reads on to a place where decoding can begin and keeps that packet. Whether it is early enough.
Result<bool> MediaDemuxer::findKey(int stream, std::int64_t time)
{
    auto packet = makePacket();
    while (TRY(read(*packet))) {
        if (packet->stream_index == stream && (packet->flags & AV_PKT_FLAG_KEY)) {
            // A picture that does not say when it is shown is shown soon after it is decoded.
            auto shown = packet->pts;
            if (shown == AV_NOPTS_VALUE && packet->dts != AV_NOPTS_VALUE)
                shown = packet->dts + av_rescale_q(1, {1, 2}, this->stream(stream).time_base);
            pending_.push_back(std::move(packet));
            return shown != AV_NOPTS_VALUE && shown <= time;
        }
        av_packet_unref(packet.get());
    }
    return false;
}

Result<void> MediaDemuxer::seek(int stream, std::int64_t time)
{
    // Each time further back: containers find the place by times of decoding, or by guessing from the size.
    const auto second = av_rescale_q(1, {1, 1}, this->stream(stream).time_base);
    for (std::int64_t back : {std::int64_t{0}, second / 4, 2 * second, 8 * second, 32 * second}) {
        if (time - back <= 0)
            break;
        forgetTimes();
        if (av_seek_frame(format_.get(), stream, time - back + origin(stream), AVSEEK_FLAG_BACKWARD) < 0)
            break;
        isAtStart_ = false;
        if (TRY(findKey(stream, time)))
            return {};
        if (isStopped())
            return failure(failureOf(AVERROR_EXIT));
    }
    return goToStart(stream);
}

} // namespace platform

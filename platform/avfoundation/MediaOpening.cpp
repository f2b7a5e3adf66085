// SPDX-License-Identifier: MIT
// How a MediaDemuxer comes to be: what it opens, and what it finds out at once.
#include "platform/avfoundation/FFmpegError_p.h"
#include "platform/avfoundation/MediaDemuxer_p.h"

#include <cerrno>
#include <string_view>
#include <utility>

extern "C" {
#include <libavutil/dict.h>
}

namespace platform {

namespace {

// Containers of media that files have. Play lists, image sequences, captures and texts are not among them: they
// read other files, or read anything as media.
constexpr const char* containers = "mov,mp4,m4a,3gp,3g2,mj2,matroska,webm,avi,mp3,aac,wav,w64,aiff,caf,flac,"
                                   "ogg,mpegts,mpeg,mpegvideo,flv,live_flv,"
                                   "asf,amr,amrnb,amrwb,ac3,eac3,dts,truehd,h264,hevc,m4v,av1,obu,ivf,mxf,"
                                   "nut,au,gif,wv,ape,tta,tak,yuv4mpegpipe,dv,"
                                   "rm,aptx,sbc,mpc,mpc8,oma,voc,vc1";

constexpr std::int64_t probeBytes = 5'000'000;
constexpr std::int64_t probeDuration = 10 * AV_TIME_BASE;
constexpr int packetsLookedAt = 64;

int refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**)
{
    return AVERROR(EACCES);
}

int isInterrupted(void* file)
{
    return static_cast<MediaFile*>(file)->isStopped();
}

FormatInput makeInput(MediaFile& file)
{
    FormatInput format(avformat_alloc_context());
    if (!format)
        return format;
    format->pb = file.context();
    format->flags |= AVFMT_FLAG_CUSTOM_IO;
    format->io_open = refuseToOpen;
    format->interrupt_callback = {isInterrupted, &file};
    format->probesize = probeBytes;
    format->max_analyze_duration = probeDuration;
    format->max_streams = greatestStreamCount;
    return format;
}

} // namespace

bool isCover(const AVStream& stream)
{
    return stream.disposition & (AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS);
}

bool MediaDemuxer::isMovie() const
{
    return std::string_view(format_->iformat->name).starts_with("mov,");
}

Result<std::unique_ptr<MediaDemuxer>> MediaDemuxer::open(const std::string& path, std::stop_token stop)
{
    silenceMediaLibrary();
    auto file = TRY(MediaFile::open(path));
    file->setStopToken(std::move(stop));
    auto name = path.substr(path.rfind('/') + 1);
    auto format = makeInput(*file);
    if (!format)
        return failure(mediaError(AVERROR(ENOMEM), MediaWork::open, name));

    AVDictionary* options = nullptr;
    av_dict_set(&options, "format_whitelist", containers, 0);
    auto* raw = format.release(); // freed by the call when it fails
    int code = avformat_open_input(&raw, name.c_str(), nullptr, &options);
    av_dict_free(&options);
    format.reset(code < 0 ? nullptr : raw);
    if (code >= 0)
        code = avformat_find_stream_info(format.get(), nullptr);
    if (file->isStopped())
        code = AVERROR_EXIT;
    else if (file->readFailure() < 0)
        code = file->readFailure();
    else if (code >= 0 && format->nb_streams == 0)
        code = AVERROR_INVALIDDATA;
    if (code < 0)
        return failure(mediaError(code, MediaWork::open, name));
    return std::unique_ptr<MediaDemuxer>(new MediaDemuxer(std::move(file), std::move(format)));
}

MediaDemuxer::MediaDemuxer(std::unique_ptr<MediaFile> file, FormatInput format)
    : file_(std::move(file))
    , format_(std::move(format))
    , states_(format_->nb_streams)
{
    findOrigin();
    lookForEncryption();
}

void MediaDemuxer::findOrigin()
{
    if (isMovie())
        return;
    if (std::string_view(format_->iformat->name) == "avi")
        return findOriginOfPictures();
    const AVStream* first = nullptr;
    for (int index = 0; index < streamCount(); ++index) {
        auto& candidate = stream(index);
        auto type = candidate.codecpar->codec_type;
        if (isCover(candidate) || candidate.start_time == AV_NOPTS_VALUE
            || (type != AVMEDIA_TYPE_VIDEO && type != AVMEDIA_TYPE_AUDIO))
            continue;
        if (!first
            || av_compare_ts(candidate.start_time, candidate.time_base, first->start_time, first->time_base)
                < 0)
            first = &candidate;
    }
    // Times before zero are what a decoder needs in advance, except in streams of broadcasts, whose clock begins
    // anywhere and wraps around.
    if (!first || (first->start_time < 0 && !(format_->iformat->flags & AVFMT_TS_DISCONT)))
        return;
    for (int index = 0; index < streamCount(); ++index)
        states_[static_cast<std::size_t>(index)].origin =
            av_rescale_q(first->start_time, first->time_base, stream(index).time_base);
}

// AVI counts pictures from zero as they are decoded, and shows the first at zero all the same.
void MediaDemuxer::findOriginOfPictures()
{
    for (int index = 0; index < streamCount(); ++index) {
        auto& video = stream(index);
        if (video.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && video.avg_frame_rate.num > 0)
            states_[static_cast<std::size_t>(index)].origin =
                av_rescale_q(video.codecpar->video_delay, av_inv_q(video.avg_frame_rate), video.time_base);
    }
}

// Movies tell it of each packet only.
void MediaDemuxer::lookForEncryption()
{
    if (!isMovie())
        return;
    auto isAwaited = [this](int index) {
        auto type = stream(index).codecpar->codec_type;
        return !isCover(stream(index)) && (type == AVMEDIA_TYPE_VIDEO || type == AVMEDIA_TYPE_AUDIO);
    };
    int awaited = 0;
    for (int index = 0; index < streamCount(); ++index)
        awaited += isAwaited(index);
    for (int count = 0; count < packetsLookedAt && awaited > 0; ++count) {
        auto packet = makePacket();
        if (!readOn(*packet).value_or(false))
            return; // whoever reads meets the same
        auto& state = states_[static_cast<std::size_t>(packet->stream_index)];
        state.isEncrypted =
            state.isEncrypted || av_packet_get_side_data(packet.get(), AV_PKT_DATA_ENCRYPTION_INFO, nullptr);
        if (!std::exchange(state.wasSeen, true))
            awaited -= isAwaited(packet->stream_index);
        pending_.push_back(std::move(packet));
    }
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/avfoundation/FFmpegCapture_p.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/FFmpegError_p.h"
#include "platform/avfoundation/FFmpegTime_p.h"
#include "platform/avfoundation/MediaDecoder_p.h"
#include "platform/avfoundation/PictureConverter_p.h"
#include "platform/avfoundation/SoundConverter_p.h"

#include <dlfcn.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

extern "C" {
#include <libavdevice/version.h>
#include <libavutil/macros.h>
}

namespace platform {

using namespace std::chrono_literals;

namespace {

constexpr auto pause = 4ms; // between two looks at a device that has nothing yet
constexpr std::int64_t longestChunk = 48'000;

// The library registers what it knows with the demuxers, so one function is all that is needed of it.
bool hasDevices()
{
    static const bool isThere = [] {
        void* library =
            ::dlopen("libavdevice.so." AV_STRINGIFY(LIBAVDEVICE_VERSION_MAJOR), RTLD_NOW | RTLD_LOCAL);
        auto* registerAll =
            library ? reinterpret_cast<void (*)()>(::dlsym(library, "avdevice_register_all")) : nullptr;
        if (registerAll)
            registerAll();
        return registerAll != nullptr;
    }();
    return isThere;
}

enum class Stage { opening, reading };

Error captureError(int code, Stage stage)
{
    switch (AVUNERROR(code)) {
    case EBUSY:
    case ENOSPC: // no room left on the bus, which other devices use
        return AVError::deviceInUseByAnotherApplication;
    case EACCES:
    case EPERM:
        return AVError::applicationIsNotAuthorizedToUseDevice;
    case ENODEV:
    case ENXIO:
    case ENOENT:
    case ENOTTY:
    case ENOTDIR:
    case EISDIR:
    case ECONNREFUSED:
        return stage == Stage::opening ? AVError::deviceNotConnected : AVError::deviceWasDisconnected;
    case EIO: // a plug that is pulled while a picture is on its way
        return stage == Stage::opening ? AVError::deviceNotConnected : AVError::deviceWasDisconnected;
    case EINVAL:
        if (stage == Stage::opening)
            return AVError::fileFormatNotRecognized;
        break;
    default:
        break;
    }
    return mediaError(code, stage == Stage::opening ? MediaWork::open : MediaWork::read);
}

class FFmpegCapture : public CaptureStream {
public:
    FFmpegCapture(AVMediaType mediaType, const std::stop_token& stop)
        : mediaType_(mediaType)
        , stop_(stop)
    {
    }

    Result<void> open(const FFmpegCaptureInput& input)
    {
        auto* format = canCaptureWith(input.format) ? av_find_input_format(input.format.c_str()) : nullptr;
        if (!format)
            return failure(AVError::deviceNotConnected);
        auto* context = avformat_alloc_context();
        if (!context)
            return failure(AVError::outOfMemory);
        context->interrupt_callback = {&isStopped, this};
        context->flags |= AVFMT_FLAG_NONBLOCK;
        AVDictionary* options = nullptr;
        for (const auto& [key, value] : input.options)
            av_dict_set(&options, key.c_str(), value.c_str(), 0);
        int code = avformat_open_input(&context, input.device.c_str(), format, &options);
        av_dict_free(&options);
        if (code < 0) // which has freed the context
            return std::unexpected(captureError(code, Stage::opening));
        input_.reset(context);
        if (context->nb_streams == 0)
            return failure(AVError::fileFormatNotRecognized);
        const auto& stream = *context->streams[0];
        decoder_ = TRY(MediaDecoder::open(*stream.codecpar, stream.time_base, stream.avg_frame_rate,
                                          {.threads = 1})); // more would hold pictures back
        timeBase_ = stream.time_base;
        auto rate = av_q2d(stream.avg_frame_rate.den ? stream.avg_frame_rate : AVRational{30, 1});
        interval_ = CMTime::makeWithSeconds(rate > 0 ? 1 / rate : 1.0 / 30, 90'000);
        return {};
    }

    Result<std::optional<CMSampleBuffer>> read(const std::stop_token& stop) override
    {
        while (!stop.stop_requested()) {
            if (TRY(decoder_->receive(*frame_)))
                return TRY(sampleOf(*frame_));
            int code = av_read_frame(input_.get(), packet_.get());
            if (code == AVERROR(EAGAIN)) {
                wait(stop);
                continue;
            }
            if (code == AVERROR_EXIT)
                break;
            if (code < 0)
                return std::unexpected(
                    captureError(code == AVERROR_EOF ? AVERROR(ENODEV) : code, Stage::reading));
            auto sent = packet_->stream_index == 0 ? decoder_->send(packet_.get()) : Result<void>();
            av_packet_unref(packet_.get());
            if (!sent)
                return std::unexpected(sent.error());
        }
        return std::nullopt;
    }

private:
    static int isStopped(void* self)
    {
        return static_cast<FFmpegCapture*>(self)->stop_.stop_requested() ? 1 : 0;
    }

    void wait(const std::stop_token& stop)
    {
        std::unique_lock lock(mutex_);
        stopped_.wait_for(lock, stop, pause, [] { return false; });
    }

    Result<CMSampleBuffer> sampleOf(const AVFrame& frame)
    {
        CMSampleBuffer sample;
        sample.presentationTimeStamp = mediaTime(frame.pts, timeBase_).convertScale(90'000);
        if (mediaType_ == AVMediaType::video) {
            sample.imageBuffer = TRY(converter_.convert(frame));
            sample.duration = interval_;
            return sample;
        }
        const CMAudioFormat form{.sampleRate = static_cast<double>(frame.sample_rate),
                                 .channels = frame.ch_layout.nb_channels,
                                 .bitsPerChannel = 16};
        if (!sound_ || !sound_->fits(frame)) {
            sound_ = TRY(SoundConverter::open(frame, form));
            soundFormat_ = CMFormatDescription::linearPCM(form);
        }
        PCMChunk chunk(form, longestChunk);
        TRY(sound_->convert(frame, 0, frame.nb_samples, chunk));
        sample.formatDescription = soundFormat_;
        sample.sampleCount = chunk.size();
        sample.duration = CMTime(chunk.size(), frame.sample_rate);
        sample.data = chunk.takeBytes();
        return sample;
    }

    const AVMediaType mediaType_;
    const std::stop_token stop_;
    FormatInput input_;
    std::unique_ptr<MediaDecoder> decoder_;
    AVRational timeBase_{1, 1'000'000};
    CMTime interval_;
    PictureConverter converter_{
        PixelBufferAttributes{.kCVPixelBufferPixelFormatTypeKey = CVPixelFormatType::planar420YpCbCr8}};
    std::optional<SoundConverter> sound_;
    std::shared_ptr<const CMFormatDescription> soundFormat_;
    const Packet packet_ = makePacket();
    const Frame frame_ = makeFrame();
    std::mutex mutex_; // only to wait by
    std::condition_variable_any stopped_;
};

} // namespace

bool canCaptureWith(const std::string& format)
{
    silenceMediaLibrary();
    return hasDevices() && av_find_input_format(format.c_str()) != nullptr;
}

Result<std::unique_ptr<CaptureStream>> openFFmpegCapture(const FFmpegCaptureInput& input,
                                                         const std::stop_token& stop)
{
    auto stream = std::make_unique<FFmpegCapture>(input.mediaType, stop);
    TRY(stream->open(input));
    return stream;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/avfoundation/PictureEncoder_p.h"

#include "platform/avfoundation/CVPixelBuffer_p.h"
#include "platform/avfoundation/TrackWriting_p.h"

#include <algorithm>
#include <string>
#include <utility>

namespace platform {

namespace {

// What x264 calls a constant quality; 0.6 gives 20, and 6 more halve the size.
double constantRateFactor(double quality)
{
    return 38 - 30 * std::clamp(quality, 0.0, 1.0);
}

bool isEncodable(AVPixelFormat format)
{
    return format == AV_PIX_FMT_YUV420P || format == AV_PIX_FMT_YUVJ420P || format == AV_PIX_FMT_NV12;
}

// Pictures keep their numbers, so the file says what the source said they mean. Numbers that were made from red,
// green and blue here are of the usual matrix for their size.
void describeColor(AVCodecContext& context, const VideoSettings& settings, const CVPixelBuffer& picture)
{
    auto color = settings.AVVideoColorPropertiesKey.value_or(picture.color());
    bool isRGB = picture.pixelFormatType() == CVPixelFormatType::BGRA32;
    if (isRGB && (color.matrix == AVCOL_SPC_RGB || color.matrix == AVCOL_SPC_UNSPECIFIED))
        color.matrix = context.height > 576 ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
    context.color_primaries = static_cast<AVColorPrimaries>(color.primaries);
    context.color_trc = static_cast<AVColorTransferCharacteristic>(color.transfer);
    context.colorspace = static_cast<AVColorSpace>(color.matrix);
    context.color_range = color.isFullRange && !isRGB ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
}

const char* profileName(H264Profile profile)
{
    switch (profile) {
    case H264Profile::baseline:
        return "baseline";
    case H264Profile::main:
        return "main";
    case H264Profile::high:
        break;
    }
    return "high";
}

void describe(AVCodecContext& context, const VideoSettings& settings, const CVPixelBuffer& first,
              const PictureEncoderOptions& options)
{
    auto even = [](int size) { return std::max(2, size / 2 * 2); };
    context.width = settings.AVVideoWidthKey.value_or(even(first.width()));
    context.height = settings.AVVideoHeightKey.value_or(even(first.height()));
    auto format = static_cast<AVPixelFormat>(first.frame().picture->format);
    context.pix_fmt = isEncodable(format) ? format : AV_PIX_FMT_YUV420P;
    context.time_base = options.timeBase;
    if (auto rate = settings.AVVideoExpectedSourceFrameRateKey; rate && *rate > 0)
        context.framerate = av_d2q(*rate, 1 << 16);
    auto aspect = settings.AVVideoPixelAspectRatioKey.value_or(first.pixelAspectRatio());
    context.sample_aspect_ratio = av_d2q(aspect > 0 ? aspect : 1, 1 << 12);
    context.gop_size = settings.AVVideoMaxKeyFrameIntervalKey;
    context.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (!settings.AVVideoAllowFrameReorderingKey)
        context.max_b_frames = 0;
    describeColor(context, settings, first);
}

} // namespace

Result<std::unique_ptr<PictureEncoder>> PictureEncoder::open(const VideoSettings& settings,
                                                             const CVPixelBuffer& first,
                                                             const PictureEncoderOptions& options)
{
    auto* codec = videoEncoder(settings);
    if (!codec)
        return failure(AVError::encoderNotFound);
    CodecContext context(avcodec_alloc_context3(codec));
    if (!context)
        return failure(AVError::outOfMemory);
    describe(*context, settings, first, options);
    AVDictionary* dictionary = nullptr;
    av_dict_set(&dictionary, "preset", "veryfast", 0);
    if (settings.AVVideoAverageBitRateKey)
        context->bit_rate = *settings.AVVideoAverageBitRateKey;
    else
        av_dict_set(&dictionary, "crf",
                    std::to_string(constantRateFactor(settings.AVVideoQualityKey)).c_str(), 0);
    if (settings.AVVideoProfileLevelKey)
        av_dict_set(&dictionary, "profile", profileName(*settings.AVVideoProfileLevelKey), 0);
    if (options.parameterSetID != 0)
        av_dict_set(&dictionary, "x264-params", ("sps-id=" + std::to_string(options.parameterSetID)).c_str(),
                    0);
    int code = avcodec_open2(context.get(), codec, &dictionary);
    av_dict_free(&dictionary);
    if (code < 0)
        return std::unexpected(mediaError(code, MediaWork::encode));
    return std::unique_ptr<PictureEncoder>(new PictureEncoder(std::move(context)));
}

Result<void> PictureEncoder::prepareScaler(const CVPixelBuffer& picture)
{
    auto& source = *picture.frame().picture;
    bool isFull = picture.color().isFullRange || picture.pixelFormatType() == CVPixelFormatType::BGRA32;
    ScalerInput input{source.width, source.height, source.format, isFull};
    if (scaler_ && input == scalerInput_)
        return {};
    // The default quality; the tables of colours cost as much as some pictures, so they are made once.
    scaler_.reset(sws_getContext(source.width, source.height, static_cast<AVPixelFormat>(source.format),
                                 context_->width, context_->height, context_->pix_fmt, SWS_BICUBIC, nullptr,
                                 nullptr, nullptr));
    if (!scaler_)
        return failure(AVError::exportFailed);
    scalerInput_ = input;
    auto* table = sws_getCoefficients(context_->colorspace);
    sws_setColorspaceDetails(scaler_.get(), table, isFull, table, context_->color_range == AVCOL_RANGE_JPEG,
                             0, 1 << 16, 1 << 16);
    return {};
}

Result<Frame> PictureEncoder::converted(const CVPixelBuffer& picture)
{
    auto& source = *picture.frame().picture;
    auto frame = makeFrame();
    if (source.width == context_->width && source.height == context_->height
        && source.format == context_->pix_fmt) {
        int code = av_frame_ref(frame.get(), &source);
        if (code < 0)
            return std::unexpected(mediaError(code, MediaWork::encode));
        return frame;
    }
    TRY(prepareScaler(picture));
    frame->width = context_->width;
    frame->height = context_->height;
    frame->format = context_->pix_fmt;
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        return failure(AVError::outOfMemory);
    int code = sws_scale(scaler_.get(), source.data, source.linesize, 0, source.height, frame->data,
                         frame->linesize);
    if (code < 0)
        return std::unexpected(mediaError(code, MediaWork::encode));
    return frame;
}

Result<void> PictureEncoder::encode(const CVPixelBuffer& picture, std::int64_t pts, std::int64_t duration,
                                    const Take& take)
{
    auto frame = TRY(converted(picture));
    frame->pts = pts;
    frame->pict_type = AV_PICTURE_TYPE_NONE; // the source's choice does not bind the encoder
    if (duration > 0)
        durations_[pts] = duration;
    return send(frame.get(), take);
}

Result<void> PictureEncoder::finish(const Take& take)
{
    return send(nullptr, take);
}

Result<void> PictureEncoder::send(const AVFrame* frame, const Take& take)
{
    return platform::encode(*context_, frame, *packet_, [&](AVPacket& packet) {
        if (auto found = durations_.find(packet.pts); found != durations_.end()) {
            packet.duration = found->second;
            durations_.erase(found);
        }
        return take(packet);
    });
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CMFormatDescription_p.h"

#include "platform/avfoundation/AudioSettings.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>

extern "C" {
#include <libavutil/bswap.h>
}

namespace platform {

namespace {

struct Name {
    AVCodecID codec;
    FourCharCode code;
};
constexpr Name names[] = {
    {AV_CODEC_ID_H264, fourCharCode("avc1")},  {AV_CODEC_ID_HEVC, fourCharCode("hvc1")},
    {AV_CODEC_ID_AV1, fourCharCode("av01")},   {AV_CODEC_ID_VP9, fourCharCode("vp09")},
    {AV_CODEC_ID_VP8, fourCharCode("vp08")},   {AV_CODEC_ID_MPEG4, fourCharCode("mp4v")},
    {AV_CODEC_ID_MJPEG, fourCharCode("jpeg")}, {AV_CODEC_ID_MPEG2VIDEO, fourCharCode("mp2v")},
    {AV_CODEC_ID_AAC, fourCharCode("aac ")},   {AV_CODEC_ID_ALAC, fourCharCode("alac")},
    {AV_CODEC_ID_MP3, fourCharCode(".mp3")},   {AV_CODEC_ID_MP2, fourCharCode(".mp2")},
    {AV_CODEC_ID_FLAC, fourCharCode("flac")},  {AV_CODEC_ID_OPUS, fourCharCode("opus")},
    {AV_CODEC_ID_AC3, fourCharCode("ac-3")},   {AV_CODEC_ID_EAC3, fourCharCode("ec-3")},
};

bool isLinearPCM(AVCodecID codec)
{
    return codec >= AV_CODEC_ID_FIRST_AUDIO && codec < AV_CODEC_ID_ADPCM_IMA_QT
        && codec != AV_CODEC_ID_PCM_ALAW && codec != AV_CODEC_ID_PCM_MULAW;
}

FourCharCode subType(const AVCodecParameters& codec)
{
    if (isLinearPCM(codec.codec_id))
        return kAudioFormatLinearPCM;
    auto found = std::ranges::find(names, codec.codec_id, &Name::codec);
    // Containers keep the first letter in the lowest byte.
    return found != std::end(names) ? found->code : av_bswap32(codec.codec_tag);
}

AVMediaType kindOf(::AVMediaType type)
{
    switch (type) {
    case AVMEDIA_TYPE_VIDEO:
        return AVMediaType::video;
    case AVMEDIA_TYPE_AUDIO:
        return AVMediaType::audio;
    case AVMEDIA_TYPE_SUBTITLE:
        return AVMediaType::subtitle;
    default:
        return AVMediaType::metadata;
    }
}

struct PCMForm {
    AVCodecID codec;
    int bits;
    bool isFloat, isBigEndian;
};
constexpr PCMForm pcmForms[] = {
    {AV_CODEC_ID_PCM_U8, 8, false, false},     {AV_CODEC_ID_PCM_U8, 8, false, true},
    {AV_CODEC_ID_PCM_S16LE, 16, false, false}, {AV_CODEC_ID_PCM_S16BE, 16, false, true},
    {AV_CODEC_ID_PCM_S24LE, 24, false, false}, {AV_CODEC_ID_PCM_S24BE, 24, false, true},
    {AV_CODEC_ID_PCM_S32LE, 32, false, false}, {AV_CODEC_ID_PCM_S32BE, 32, false, true},
    {AV_CODEC_ID_PCM_F32LE, 32, true, false},  {AV_CODEC_ID_PCM_F32BE, 32, true, true},
    {AV_CODEC_ID_PCM_F64LE, 64, true, false},  {AV_CODEC_ID_PCM_F64BE, 64, true, true},
};

CMAudioFormat audioFormat(const AVCodecParameters& codec)
{
    CMAudioFormat format{.sampleRate = static_cast<double>(codec.sample_rate),
                         .channels = codec.ch_layout.nb_channels};
    if (!isLinearPCM(codec.codec_id))
        return format;
    format.bitsPerChannel = av_get_bits_per_sample(codec.codec_id);
    if (auto form = std::ranges::find(pcmForms, codec.codec_id, &PCMForm::codec);
        form != std::end(pcmForms)) {
        format.isFloat = form->isFloat;
        format.isBigEndian = form->isBigEndian;
    }
    return format;
}

} // namespace

std::shared_ptr<const CMFormatDescription> withExtradata(const CMFormatDescription& format,
                                                         std::span<const std::uint8_t> extradata)
{
    auto& parameters = format.parameters();
    CodecParameters codec(avcodec_parameters_alloc());
    precondition(codec && avcodec_parameters_copy(codec.get(), parameters.codec.get()) >= 0,
                 "no memory for a format description");
    av_freep(&codec->extradata);
    codec->extradata_size = 0;
    codec->extradata =
        static_cast<std::uint8_t*>(av_mallocz(extradata.size() + AV_INPUT_BUFFER_PADDING_SIZE));
    precondition(codec->extradata != nullptr, "no memory for a format description");
    std::ranges::copy(extradata, codec->extradata);
    codec->extradata_size = static_cast<int>(extradata.size());
    return makeFormatDescription(*codec, parameters.timeBase, parameters.frameRate,
                                 parameters.pixelAspectRatio);
}

AVCodecID pcmCodec(const CMAudioFormat& format)
{
    for (auto& form : pcmForms)
        if (form.bits == format.bitsPerChannel && form.isFloat == format.isFloat
            && form.isBigEndian == format.isBigEndian)
            return form.codec;
    return AV_CODEC_ID_NONE;
}

std::shared_ptr<const CMFormatDescription> makeFormatDescription(const AVCodecParameters& codec,
                                                                 AVRational timeBase, AVRational frameRate,
                                                                 AVRational pixelAspectRatio)
{
    auto parameters = std::make_shared<CMFormatDescription::Parameters>();
    parameters->codec.reset(avcodec_parameters_alloc());
    precondition(parameters->codec && avcodec_parameters_copy(parameters->codec.get(), &codec) >= 0,
                 "no memory for a format description");
    parameters->timeBase = timeBase;
    parameters->frameRate = frameRate;
    if (pixelAspectRatio.num > 0 && pixelAspectRatio.den > 0)
        parameters->pixelAspectRatio = pixelAspectRatio;
    return std::make_shared<CMFormatDescription>(std::move(parameters));
}

std::shared_ptr<const CMFormatDescription> CMFormatDescription::linearPCM(const CMAudioFormat& format)
{
    CodecParameters codec(avcodec_parameters_alloc());
    precondition(codec != nullptr, "no memory for a format description");
    codec->codec_type = AVMEDIA_TYPE_AUDIO;
    codec->codec_id = pcmCodec(format);
    codec->sample_rate = static_cast<int>(format.sampleRate);
    codec->bits_per_coded_sample = format.bitsPerChannel;
    av_channel_layout_default(&codec->ch_layout, format.channels);
    auto description = std::make_shared<CMFormatDescription>(*makeFormatDescription(*codec, {0, 1}));
    description->audio_ = format;
    return description;
}

CMFormatDescription::CMFormatDescription(std::shared_ptr<const Parameters> parameters)
    : parameters_(std::move(parameters))
    , mediaType_(kindOf(parameters_->codec->codec_type))
    , mediaSubType_(subType(*parameters_->codec))
    , codecName_(avcodec_get_name(parameters_->codec->codec_id))
{
    auto& codec = *parameters_->codec;
    if (mediaType_ == AVMediaType::audio)
        audio_ = audioFormat(codec);
    if (mediaType_ == AVMediaType::video)
        video_ = {.width = codec.width,
                  .height = codec.height,
                  .pixelAspectRatio = av_q2d(parameters_->pixelAspectRatio),
                  .color = {.primaries = codec.color_primaries,
                            .transfer = codec.color_trc,
                            .matrix = codec.color_space,
                            .isFullRange = codec.color_range == AVCOL_RANGE_JPEG}};
}

} // namespace platform

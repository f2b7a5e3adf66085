// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/TrackWriting_p.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

extern "C" {
#include <libavutil/audio_fifo.h>
#include <libavutil/opt.h>
}

namespace platform {

namespace {

using AudioFifo = std::unique_ptr<AVAudioFifo, decltype([](AVAudioFifo* fifo) { av_audio_fifo_free(fifo); })>;

constexpr std::int64_t longestGap = 24 * 60 * 60; // seconds; a longer one is a broken time

// What the resampler calls linear PCM of that form. The library computes with native byte order; the forms in files
// have both, and whoever reads for a writer gives the native one.
AVSampleFormat sampleFormat(const CMAudioFormat& format)
{
    auto packed = AV_SAMPLE_FMT_NONE;
    if (format.isFloat)
        packed = format.bitsPerChannel == 64 ? AV_SAMPLE_FMT_DBL : AV_SAMPLE_FMT_FLT;
    else if (format.bitsPerChannel == 8)
        packed = AV_SAMPLE_FMT_U8;
    else if (format.bitsPerChannel == 16)
        packed = AV_SAMPLE_FMT_S16;
    else if (format.bitsPerChannel == 32)
        packed = AV_SAMPLE_FMT_S32;
    return format.isNonInterleaved ? av_get_planar_sample_fmt(packed) : packed;
}

// Sound that is compressed, or brought into another form of linear PCM, on its way into the file.
class AudioTrackWriting final : public TrackWriting {
public:
    AudioTrackWriting(const TrackPlace& place, const AudioSettings& settings)
        : place_(place)
        , settings_(settings)
    {
    }

    Result<void> append(const CMSampleBuffer& sample, const CMTimeRange& session) override;
    Result<void> finish() override;

private:
    Result<void> open(const CMAudioFormat& source);
    Result<void> openResampler();
    // Sound of the source's form, `planes` as the resampler takes them. Null is silence.
    Result<void> take(const std::uint8_t* const* planes, std::int64_t count);
    Result<void> takeSilence(std::int64_t count);
    Result<void> encodeFrames(bool isLast);
    Result<void> drainResampler();
    std::vector<const std::uint8_t*> planes(const CMSampleBuffer& sample, std::int64_t skip) const;
    bool isPassedOn() const { return !resampler_; }

    const TrackPlace place_;
    const AudioSettings settings_;
    CMAudioFormat source_;
    AVSampleFormat sourceFormat_ = AV_SAMPLE_FMT_NONE;
    CodecContext encoder_;
    Resampler resampler_; // null when the source has the encoder's form
    AudioFifo fifo_;
    Packet packet_ = makePacket();
    std::int64_t nextSource_ = 0; // sample frames since the session began, by the source's rate
    std::int64_t written_ = 0;    // sample frames of the encoder's, from its first
    std::int64_t firstPts_ = 0;
    bool hasBegun_ = false;
};

Result<void> AudioTrackWriting::open(const CMAudioFormat& source)
{
    source_ = source;
    sourceFormat_ = sampleFormat(source);
    auto* codec = audioEncoder(settings_);
    if (!codec || sourceFormat_ == AV_SAMPLE_FMT_NONE || source.isBigEndian || source.channels < 1
        || source.sampleRate < 1)
        return failure(AVError::encoderNotFound);
    encoder_.reset(avcodec_alloc_context3(codec));
    if (!encoder_)
        return failure(AVError::outOfMemory);
    encoder_->sample_rate = static_cast<int>(settings_.AVSampleRateKey.value_or(source.sampleRate));
    encoder_->sample_fmt = codec->sample_fmts ? codec->sample_fmts[0] : sourceFormat_;
    av_channel_layout_default(&encoder_->ch_layout,
                              settings_.AVNumberOfChannelsKey.value_or(source.channels));
    encoder_->time_base = {1, encoder_->sample_rate};
    encoder_->bit_rate = settings_.AVEncoderBitRateKey.value_or(96'000 * encoder_->ch_layout.nb_channels);
    encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    int code = avcodec_open2(encoder_.get(), codec, nullptr);
    if (code < 0)
        return std::unexpected(mediaError(code, MediaWork::encode));
    fifo_.reset(av_audio_fifo_alloc(encoder_->sample_fmt, encoder_->ch_layout.nb_channels, 4096));
    if (!fifo_)
        return failure(AVError::outOfMemory);
    TRY(openResampler());
    CodecParameters parameters(avcodec_parameters_alloc());
    if (!parameters || avcodec_parameters_from_context(parameters.get(), encoder_.get()) < 0)
        return failure(AVError::outOfMemory);
    return place_.muxer.describe(place_.track,
                                 place_.description(std::move(parameters), encoder_->time_base));
}

Result<void> AudioTrackWriting::openResampler()
{
    if (encoder_->sample_fmt == sourceFormat_ && encoder_->sample_rate == source_.sampleRate
        && encoder_->ch_layout.nb_channels == source_.channels)
        return {};
    AVChannelLayout layout{};
    av_channel_layout_default(&layout, source_.channels);
    SwrContext* context = nullptr;
    int code =
        swr_alloc_set_opts2(&context, &encoder_->ch_layout, encoder_->sample_fmt, encoder_->sample_rate,
                            &layout, sourceFormat_, static_cast<int>(source_.sampleRate), 0, nullptr);
    resampler_.reset(context);
    if (code >= 0)
        code = swr_init(context);
    if (code < 0)
        return std::unexpected(mediaError(code, MediaWork::encode));
    return {};
}

std::vector<const std::uint8_t*> AudioTrackWriting::planes(const CMSampleBuffer& sample,
                                                           std::int64_t skip) const
{
    auto size = static_cast<std::int64_t>(av_get_bytes_per_sample(sourceFormat_));
    auto* begin = reinterpret_cast<const std::uint8_t*>(sample.data.bytes.data());
    if (!source_.isNonInterleaved)
        return {begin + skip * size * source_.channels};
    std::vector<const std::uint8_t*> result;
    for (int channel = 0; channel < source_.channels; ++channel)
        result.push_back(begin + (channel * sample.sampleCount + skip) * size);
    return result;
}

Result<void> AudioTrackWriting::append(const CMSampleBuffer& sample, const CMTimeRange& session)
{
    if (!sample.formatDescription || !sample.formatDescription->audio())
        return failure(AVError::operationNotSupportedForAsset);
    auto& format = *sample.formatDescription->audio();
    if (!encoder_)
        TRY(open(format));
    else if (format != source_)
        return failure(AVError::operationNotSupportedForAsset);

    AVRational rate{1, static_cast<int>(source_.sampleRate)};
    auto begin = ticks(sample.presentationTimeStamp - session.start, rate);
    std::int64_t end = session.end().isNumeric() ? ticks(session.end() - session.start, rate) : INT64_MAX;
    if (begin == AV_NOPTS_VALUE)
        return failure(AVError::invalidSourceMedia);
    begin = std::min(begin, end);
    if (!hasBegun_)
        nextSource_ = std::max<std::int64_t>(begin, 0);
    // Times are told in ticks of their own: one sample to either side is no gap.
    else if (begin >= nextSource_ - 1 && begin <= nextSource_ + 1)
        begin = nextSource_;
    auto count = std::min(begin + sample.sampleCount, end) - std::max(begin, nextSource_);
    if (count <= 0)
        return {};
    if (!hasBegun_ && MediaMuxer::hasTimes(place_.fileType))
        firstPts_ = av_rescale_q(nextSource_, rate, encoder_->time_base);
    hasBegun_ = true;
    if (begin > nextSource_) {
        if (begin - nextSource_ > longestGap * static_cast<std::int64_t>(source_.sampleRate))
            return failure(AVError::invalidSourceMedia);
        TRY(takeSilence(begin - nextSource_));
        nextSource_ = begin;
    }
    TRY(take(planes(sample, nextSource_ - begin).data(), count));
    nextSource_ += count;
    return {};
}

Result<void> AudioTrackWriting::takeSilence(std::int64_t count)
{
    constexpr std::int64_t most = 16384;
    std::vector<std::uint8_t> silence(
        static_cast<std::size_t>(most * av_get_bytes_per_sample(sourceFormat_) * source_.channels));
    std::vector<std::uint8_t*> planes(static_cast<std::size_t>(source_.channels), silence.data());
    av_samples_set_silence(planes.data(), 0, static_cast<int>(most), source_.channels, sourceFormat_);
    while (count > 0) {
        auto part = std::min(count, most);
        TRY(take(planes.data(), part));
        count -= part;
    }
    return {};
}

Result<void> AudioTrackWriting::take(const std::uint8_t* const* planes, std::int64_t count)
{
    constexpr std::int64_t most = 1 << 20; // the library counts in int
    auto size = av_get_bytes_per_sample(sourceFormat_);
    std::vector<const std::uint8_t*> at(planes, planes + (source_.isNonInterleaved ? source_.channels : 1));
    while (count > 0) {
        auto part = static_cast<int>(std::min(count, most));
        if (isPassedOn()) {
            auto** data = reinterpret_cast<void**>(const_cast<std::uint8_t**>(at.data()));
            if (av_audio_fifo_write(fifo_.get(), data, part) < part)
                return failure(AVError::outOfMemory);
        } else {
            auto room = swr_get_out_samples(resampler_.get(), part);
            auto converted = makeFrame();
            converted->format = encoder_->sample_fmt;
            converted->nb_samples = std::max(room, 1);
            av_channel_layout_copy(&converted->ch_layout, &encoder_->ch_layout);
            int code = av_frame_get_buffer(converted.get(), 0);
            if (code >= 0)
                code = swr_convert(resampler_.get(), converted->extended_data, converted->nb_samples,
                                   at.data(), part);
            if (code >= 0)
                code = av_audio_fifo_write(fifo_.get(), reinterpret_cast<void**>(converted->extended_data),
                                           code);
            if (code < 0)
                return std::unexpected(mediaError(code, MediaWork::encode));
        }
        for (auto& plane : at)
            plane +=
                static_cast<std::ptrdiff_t>(part) * size * (source_.isNonInterleaved ? 1 : source_.channels);
        count -= part;
        TRY(encodeFrames(false));
    }
    return {};
}

Result<void> AudioTrackWriting::drainResampler()
{
    if (isPassedOn())
        return {};
    auto rest = swr_get_out_samples(resampler_.get(), 0);
    if (rest <= 0)
        return {};
    auto converted = makeFrame();
    converted->format = encoder_->sample_fmt;
    converted->nb_samples = rest;
    av_channel_layout_copy(&converted->ch_layout, &encoder_->ch_layout);
    int code = av_frame_get_buffer(converted.get(), 0);
    if (code >= 0)
        code = swr_convert(resampler_.get(), converted->extended_data, rest, nullptr, 0);
    if (code > 0)
        code = av_audio_fifo_write(fifo_.get(), reinterpret_cast<void**>(converted->extended_data), code);
    if (code < 0)
        return std::unexpected(mediaError(code, MediaWork::encode));
    return {};
}

Result<void> AudioTrackWriting::encodeFrames(bool isLast)
{
    // An encoder without a frame size takes any; large ones cost less.
    int wanted = encoder_->frame_size > 0 ? encoder_->frame_size : 4096;
    while (av_audio_fifo_size(fifo_.get()) >= (isLast ? 1 : wanted)) {
        auto frame = makeFrame();
        frame->format = encoder_->sample_fmt;
        frame->sample_rate = encoder_->sample_rate;
        frame->nb_samples = std::min(wanted, av_audio_fifo_size(fifo_.get()));
        av_channel_layout_copy(&frame->ch_layout, &encoder_->ch_layout);
        int code = av_frame_get_buffer(frame.get(), 0);
        if (code >= 0)
            code = av_audio_fifo_read(fifo_.get(), reinterpret_cast<void**>(frame->extended_data),
                                      frame->nb_samples);
        if (code < 0)
            return std::unexpected(mediaError(code, MediaWork::encode));
        frame->pts = firstPts_ + written_;
        written_ += frame->nb_samples;
        TRY(encode(*encoder_, frame.get(), *packet_,
                   [&](AVPacket& packet) { return place_.muxer.write(place_.track, packet); }));
    }
    return {};
}

Result<void> AudioTrackWriting::finish()
{
    if (!encoder_) {
        if (!settings_.AVSampleRateKey || !settings_.AVNumberOfChannelsKey)
            return place_.muxer.drop(place_.track);
        CMAudioFormat source{.sampleRate = *settings_.AVSampleRateKey,
                             .channels = *settings_.AVNumberOfChannelsKey,
                             .bitsPerChannel = 16};
        TRY(open(source));
    }
    TRY(drainResampler());
    TRY(encodeFrames(true));
    return encode(*encoder_, nullptr, *packet_,
                  [&](AVPacket& packet) { return place_.muxer.write(place_.track, packet); });
}

} // namespace

CMAudioFormat pcmFormat(const AudioSettings& settings, const CMAudioFormat& source)
{
    bool isFloat = settings.AVLinearPCMIsFloatKey.value_or(false);
    return {.sampleRate = settings.AVSampleRateKey.value_or(source.sampleRate),
            .channels = settings.AVNumberOfChannelsKey.value_or(source.channels),
            .bitsPerChannel = settings.AVLinearPCMBitDepthKey.value_or(isFloat ? 32 : 16),
            .isFloat = isFloat,
            .isBigEndian = settings.AVLinearPCMIsBigEndianKey.value_or(false),
            .isNonInterleaved = settings.AVLinearPCMIsNonInterleaved.value_or(false)};
}

const AVCodec* audioEncoder(const AudioSettings& settings)
{
    if (settings.AVFormatIDKey == kAudioFormatLinearPCM) {
        auto format = pcmFormat(settings, {.sampleRate = 48000, .channels = 1});
        format.isNonInterleaved = false; // there are no such files
        return avcodec_find_encoder(pcmCodec(format));
    }
    if (settings.AVFormatIDKey == kAudioFormatMPEG4AAC)
        return avcodec_find_encoder(AV_CODEC_ID_AAC);
    if (settings.AVFormatIDKey == kAudioFormatAppleLossless)
        return avcodec_find_encoder(AV_CODEC_ID_ALAC);
    return nullptr;
}

std::unique_ptr<TrackWriting> makeAudioTrackWriting(const TrackPlace& place, const AudioSettings& settings)
{
    return std::make_unique<AudioTrackWriting>(place, settings);
}

} // namespace platform

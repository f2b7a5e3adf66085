// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/PCMChunk_p.h"
#include "platform/avfoundation/SoundConverter_p.h"
#include "platform/avfoundation/TrackWriting_p.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

extern "C" {
#include <libavutil/audio_fifo.h>
}

namespace platform {

namespace {

using AudioFifo = std::unique_ptr<AVAudioFifo, decltype([](AVAudioFifo* fifo) { av_audio_fifo_free(fifo); })>;

constexpr std::int64_t longestGap = 24 * 60 * 60; // seconds; a longer one is a broken time
constexpr int sliceSize = 4096;                   // sample frames that are converted at a time
constexpr std::size_t mostChannels = 64;

// Linear PCM in memory, a plane a channel or one for all.
struct Stretch {
    std::array<const std::uint8_t*, mostChannels> planes{};
    std::int64_t count = 0;            // sample frames
    std::shared_ptr<const void> owner; // of the planes
};

std::size_t bytesPerFrame(const CMAudioFormat& format) // of a plane
{
    return static_cast<std::size_t>(format.bitsPerChannel / 8
                                    * (format.isNonInterleaved ? 1 : format.channels));
}

std::size_t planeCount(const CMAudioFormat& format)
{
    return format.isNonInterleaved ? static_cast<std::size_t>(format.channels) : 1;
}

// `count` frames from `skip` on of memory that holds `total`.
Stretch stretchOf(const CMBlockBuffer& data, const CMAudioFormat& format, std::int64_t total,
                  std::int64_t skip, std::int64_t count)
{
    Stretch stretch{.count = count, .owner = data.owner};
    auto* begin = reinterpret_cast<const std::uint8_t*>(data.bytes.data());
    const auto size = bytesPerFrame(format);
    for (std::size_t plane = 0; plane < planeCount(format); ++plane)
        stretch.planes[plane] =
            begin + (plane * static_cast<std::size_t>(total) + static_cast<std::size_t>(skip)) * size;
    return stretch;
}

// Sound on its way into the file: put onto the session's timeline without gaps, and brought into the form that the file,
// or its encoder, takes.
class SoundTrackWriting : public TrackWriting {
public:
    SoundTrackWriting(const TrackPlace& place, const AudioSettings& settings)
        : place_(place)
        , settings_(settings)
    {
    }

    Result<void> append(const CMSampleBuffer& sample, const CMTimeRange& session) override;
    Result<void> finish() override;

protected:
    // Describes the track for sound that was `source`; the form that put takes.
    virtual Result<CMAudioFormat> open(const CMAudioFormat& source) = 0;
    virtual Result<void> put(const Stretch& stretch) = 0;
    virtual Result<void> end() { return {}; }

    const TrackPlace place_;
    const AudioSettings settings_;
    std::int64_t firstPts_ = 0; // sample frames of the file's since the session began
    const Packet packet_ = makePacket();

private:
    Result<void> begin(const CMAudioFormat& source);
    Result<void> take(const Stretch& stretch);
    Result<void> takeSilence(std::int64_t count);
    // Puts what the chunk holds, and makes it ready to be filled again.
    Result<void> flush(PCMChunk& chunk);

    CMAudioFormat source_;
    CMAudioFormat target_;
    std::optional<SoundConverter> converter_; // nothing when the source has the target's form
    std::int64_t nextSource_ = 0;             // sample frames since the session began, by the source's rate
    bool isOpen_ = false;
    bool hasBegun_ = false;
};

Result<void> SoundTrackWriting::begin(const CMAudioFormat& source)
{
    // What is read for a writer has the native byte order, and sizes that are computed with.
    bool isUsable = pcmCodec(source) != AV_CODEC_ID_NONE && !source.isBigEndian && source.bitsPerChannel != 24
        && source.channels >= 1 && source.channels <= static_cast<int>(mostChannels)
        && source.sampleRate >= 1;
    if (!isUsable)
        return failure(AVError::encoderNotFound);
    source_ = source;
    target_ = TRY(open(source));
    isOpen_ = true;
    if (source_ == target_)
        return {};
    auto form = makeFrame();
    form->format = sampleFormat(source_);
    form->sample_rate = static_cast<int>(source_.sampleRate);
    av_channel_layout_default(&form->ch_layout, source_.channels);
    converter_ = TRY(SoundConverter::open(*form, target_));
    return {};
}

Result<void> SoundTrackWriting::append(const CMSampleBuffer& sample, const CMTimeRange& session)
{
    auto* format = sample.formatDescription && sample.formatDescription->audio()
        ? &*sample.formatDescription->audio()
        : nullptr;
    if (!format || (isOpen_ && *format != source_))
        return failure(AVError::operationNotSupportedForAsset);
    if (!isOpen_)
        TRY(begin(*format));
    const auto size =
        bytesPerFrame(source_) * planeCount(source_) * static_cast<std::size_t>(sample.sampleCount);
    AVRational rate{1, static_cast<int>(source_.sampleRate)};
    auto begin = ticks(sample.presentationTimeStamp - session.start, rate);
    if (begin == AV_NOPTS_VALUE || sample.sampleCount < 0 || sample.data.bytes.size() < size)
        return failure(AVError::invalidSourceMedia);
    std::int64_t end = session.end().isNumeric() ? ticks(session.end() - session.start, rate) : INT64_MAX;
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
        firstPts_ = av_rescale_q(nextSource_, rate, {1, static_cast<int>(target_.sampleRate)});
    hasBegun_ = true;
    if (begin > nextSource_) {
        if (begin - nextSource_ > longestGap * static_cast<std::int64_t>(source_.sampleRate))
            return failure(AVError::invalidSourceMedia);
        TRY(takeSilence(begin - nextSource_));
        nextSource_ = begin;
    }
    TRY(take(stretchOf(sample.data, source_, sample.sampleCount, nextSource_ - begin, count)));
    nextSource_ += count;
    return {};
}

Result<void> SoundTrackWriting::takeSilence(std::int64_t count)
{
    constexpr std::int64_t most = 16384;
    PCMChunk chunk(source_, most);
    chunk.appendSilence(most);
    auto silence = chunk.takeBytes();
    for (; count > 0; count -= most)
        TRY(take(stretchOf(silence, source_, most, 0, std::min(count, most))));
    return {};
}

Result<void> SoundTrackWriting::take(const Stretch& stretch)
{
    if (!converter_)
        return put(stretch);
    PCMChunk chunk(target_, 4 * sliceSize);
    for (std::int64_t done = 0; done < stretch.count;) {
        const auto count = static_cast<int>(std::min<std::int64_t>(stretch.count - done, sliceSize));
        auto planes = stretch.planes;
        for (std::size_t plane = 0; plane < planeCount(source_); ++plane)
            planes[plane] += bytesPerFrame(source_) * static_cast<std::size_t>(done);
        TRY(converter_->convert(planes.data(), count, chunk));
        for (; converter_->isBackedUp(); TRY(converter_->takeOut(chunk)))
            TRY(flush(chunk));
        done += count;
    }
    return flush(chunk);
}

Result<void> SoundTrackWriting::flush(PCMChunk& chunk)
{
    const auto count = chunk.size();
    auto bytes = chunk.takeBytes();
    chunk = PCMChunk(target_, 4 * sliceSize);
    return count > 0 ? put(stretchOf(bytes, target_, count, 0, count)) : Result<void>();
}

Result<void> SoundTrackWriting::finish()
{
    if (!isOpen_) {
        if (!settings_.AVSampleRateKey || !settings_.AVNumberOfChannelsKey)
            return place_.muxer.drop(place_.track);
        TRY(begin({.sampleRate = *settings_.AVSampleRateKey,
                   .channels = *settings_.AVNumberOfChannelsKey,
                   .bitsPerChannel = 16}));
    }
    for (bool hasMore = converter_.has_value(); hasMore;) {
        PCMChunk chunk(target_, 4 * sliceSize);
        TRY(converter_->drain(chunk));
        hasMore = chunk.room() == 0;
        TRY(flush(chunk));
    }
    return end();
}

// Samples go into the file as they are in memory, without being copied.
class PCMTrackWriting final : public SoundTrackWriting {
public:
    using SoundTrackWriting::SoundTrackWriting;

private:
    Result<CMAudioFormat> open(const CMAudioFormat& source) override
    {
        auto format = pcmFormat(settings_, source);
        format.isNonInterleaved = false; // there are no such files
        CodecParameters codec(avcodec_parameters_alloc());
        if (!codec)
            return failure(AVError::outOfMemory);
        codec->codec_type = AVMEDIA_TYPE_AUDIO;
        codec->codec_id = pcmCodec(format);
        codec->sample_rate = static_cast<int>(format.sampleRate);
        codec->bits_per_coded_sample = format.bitsPerChannel;
        av_channel_layout_default(&codec->ch_layout, format.channels);
        codec->block_align = static_cast<int>(bytesPerFrame(format));
        codec->bit_rate = std::int64_t{8} * codec->block_align * codec->sample_rate;
        size_ = bytesPerFrame(format);
        TRY(place_.muxer.describe(
            place_.track, place_.description(std::move(codec), {1, static_cast<int>(format.sampleRate)})));
        return format;
    }

    Result<void> put(const Stretch& stretch) override
    {
        constexpr std::int64_t most = 1 << 20; // sizes are int there
        for (std::int64_t done = 0; done < stretch.count; done += most) {
            auto count = std::min(stretch.count - done, most);
            auto owner = std::make_unique<std::shared_ptr<const void>>(stretch.owner);
            auto letGo = [](void* held, std::uint8_t*) {
                delete static_cast<std::shared_ptr<const void>*>(held);
            };
            auto* bytes =
                const_cast<std::uint8_t*>(stretch.planes[0]) + static_cast<std::size_t>(done) * size_;
            auto size = static_cast<std::size_t>(count) * size_;
            packet_->buf = av_buffer_create(bytes, size, letGo, owner.get(), AV_BUFFER_FLAG_READONLY);
            if (!packet_->buf)
                return failure(AVError::outOfMemory);
            static_cast<void>(owner.release()); // the packet's
            packet_->data = bytes;
            packet_->size = static_cast<int>(size);
            packet_->pts = packet_->dts = firstPts_ + written_;
            packet_->duration = count;
            packet_->flags = AV_PKT_FLAG_KEY;
            written_ += count;
            TRY(place_.muxer.write(place_.track, *packet_));
            av_packet_unref(packet_.get());
        }
        return {};
    }

    std::size_t size_ = 0;     // bytes of a sample frame
    std::int64_t written_ = 0; // sample frames
};

// Sound that is compressed on its way.
class EncodedSoundWriting final : public SoundTrackWriting {
public:
    using SoundTrackWriting::SoundTrackWriting;

private:
    Result<CMAudioFormat> open(const CMAudioFormat& source) override;
    Result<void> put(const Stretch& stretch) override;
    Result<void> end() override;
    Result<void> encodeFrames(int least);

    CodecContext encoder_;
    AudioFifo fifo_; // up to a frame of the encoder's
    std::int64_t written_ = 0;
};

// How the encoder's samples are called here.
CMAudioFormat formatOf(const AVCodecContext& encoder)
{
    auto packed = av_get_packed_sample_fmt(encoder.sample_fmt);
    return {.sampleRate = static_cast<double>(encoder.sample_rate),
            .channels = encoder.ch_layout.nb_channels,
            .bitsPerChannel = 8 * av_get_bytes_per_sample(encoder.sample_fmt),
            .isFloat = packed == AV_SAMPLE_FMT_FLT || packed == AV_SAMPLE_FMT_DBL,
            .isNonInterleaved = av_sample_fmt_is_planar(encoder.sample_fmt) != 0};
}

Result<CMAudioFormat> EncodedSoundWriting::open(const CMAudioFormat& source)
{
    auto* codec = audioEncoder(settings_);
    if (!codec)
        return failure(AVError::encoderNotFound);
    encoder_.reset(avcodec_alloc_context3(codec));
    if (!encoder_)
        return failure(AVError::outOfMemory);
    encoder_->sample_rate = static_cast<int>(settings_.AVSampleRateKey.value_or(source.sampleRate));
    encoder_->sample_fmt = codec->sample_fmts[0];
    av_channel_layout_default(&encoder_->ch_layout,
                              settings_.AVNumberOfChannelsKey.value_or(source.channels));
    encoder_->time_base = {1, encoder_->sample_rate};
    encoder_->bit_rate = settings_.AVEncoderBitRateKey.value_or(96'000 * encoder_->ch_layout.nb_channels);
    encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    int code = avcodec_open2(encoder_.get(), codec, nullptr);
    if (code < 0)
        return std::unexpected(mediaError(code, MediaWork::encode));
    fifo_.reset(av_audio_fifo_alloc(encoder_->sample_fmt, encoder_->ch_layout.nb_channels, 4096));
    CodecParameters parameters(avcodec_parameters_alloc());
    if (!fifo_ || !parameters || avcodec_parameters_from_context(parameters.get(), encoder_.get()) < 0)
        return failure(AVError::outOfMemory);
    TRY(place_.muxer.describe(place_.track, place_.description(std::move(parameters), encoder_->time_base)));
    return formatOf(*encoder_);
}

Result<void> EncodedSoundWriting::put(const Stretch& stretch)
{
    auto planes = stretch.planes;
    auto** data = const_cast<std::uint8_t**>(planes.data()); // the library's interface leaves out a const
    if (av_audio_fifo_write(fifo_.get(), reinterpret_cast<void**>(data), static_cast<int>(stretch.count)) < 0)
        return failure(AVError::outOfMemory);
    return encodeFrames(encoder_->frame_size);
}

Result<void> EncodedSoundWriting::encodeFrames(int least)
{
    while (av_audio_fifo_size(fifo_.get()) >= least) {
        auto frame = makeFrame();
        frame->format = encoder_->sample_fmt;
        frame->sample_rate = encoder_->sample_rate;
        frame->nb_samples = std::min(encoder_->frame_size, av_audio_fifo_size(fifo_.get()));
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

Result<void> EncodedSoundWriting::end()
{
    TRY(encodeFrames(1));
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
    if (settings.AVFormatIDKey == kAudioFormatLinearPCM)
        return std::make_unique<PCMTrackWriting>(place, settings);
    return std::make_unique<EncodedSoundWriting>(place, settings);
}

} // namespace platform

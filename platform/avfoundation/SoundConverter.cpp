// SPDX-License-Identifier: MIT
#include "platform/avfoundation/SoundConverter_p.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/FFmpegError_p.h"

#include <algorithm>

extern "C" {
#include <libavutil/opt.h>
}

namespace platform {

namespace {

constexpr int greatestChannelCount = 64;

// A layout of the library's, freed with this.
struct Layout {
    AVChannelLayout value{};
    Layout() = default;
    ~Layout() { av_channel_layout_uninit(&value); }
    Layout(const Layout&) = delete; // owns
    Layout& operator=(const Layout&) = delete;
};

std::uint64_t maskOf(const AVChannelLayout& layout)
{
    return layout.order == AV_CHANNEL_ORDER_NATIVE ? layout.u.mask : 0;
}

bool hasPlaces(const AVChannelLayout& layout)
{
    return layout.order == AV_CHANNEL_ORDER_NATIVE;
}

// Channels in no known places: each goes to one output in turn, or each output takes one in turn; averaged.
std::vector<double> dealtMatrix(int inputs, int outputs)
{
    std::vector<double> matrix(static_cast<std::size_t>(inputs * outputs));
    for (int output = 0; output < outputs; ++output) {
        if (inputs < outputs) {
            matrix[static_cast<std::size_t>(output * inputs + output % inputs)] = 1;
            continue;
        }
        const int share = (inputs - output - 1) / outputs + 1;
        for (int input = output; input < inputs; input += outputs)
            matrix[static_cast<std::size_t>(output * inputs + input)] = 1.0 / share;
    }
    return matrix;
}

Resampler makeResampler(AVChannelLayout& input, const AVFrame& frame, AVChannelLayout& output,
                        const CMAudioFormat& format, bool deals)
{
    SwrContext* raw = nullptr;
    int code =
        swr_alloc_set_opts2(&raw, &output, sampleFormat(format), static_cast<int>(format.sampleRate), &input,
                            static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr);
    Resampler resampler(raw);
    if (code < 0)
        return nullptr;
    // Floating-point samples are mixed as carefully as integers: full channels add up to a full one.
    av_opt_set_double(raw, "rematrix_maxval", 1.0, 0);
    if (deals) {
        auto matrix = dealtMatrix(input.nb_channels, output.nb_channels);
        if (swr_set_matrix(raw, matrix.data(), input.nb_channels) < 0)
            return nullptr;
    }
    return swr_init(raw) < 0 ? nullptr : std::move(resampler);
}

} // namespace

Result<SoundConverter> SoundConverter::open(const AVFrame& frame, const CMAudioFormat& output)
{
    const int inputs = frame.ch_layout.nb_channels;
    if (inputs <= 0 || inputs > greatestChannelCount || frame.sample_rate <= 0)
        return failure(AVError::decodeFailed);
    Layout input, target;
    av_channel_layout_default(&target.value, output.channels);
    if (hasPlaces(frame.ch_layout))
        av_channel_layout_copy(&input.value, &frame.ch_layout);
    else
        av_channel_layout_default(&input.value, inputs);
    if (inputs == output.channels && !(hasPlaces(input.value) && hasPlaces(target.value))) {
        av_channel_layout_uninit(&target.value);
        av_channel_layout_copy(&target.value, &input.value);
    }

    SoundConverter converter;
    const bool isSpread = inputs == 1 && output.channels == 2; // at full level in both, as players do
    const bool deals =
        isSpread || (inputs != output.channels && !(hasPlaces(input.value) && hasPlaces(target.value)));
    converter.resampler_ = makeResampler(input.value, frame, target.value, output, deals);
    if (!converter.resampler_ && !deals) // places that the rule says nothing of
        converter.resampler_ = makeResampler(input.value, frame, target.value, output, true);
    if (!converter.resampler_)
        return failure(AVError::decodeFailed);
    converter.format_ = static_cast<AVSampleFormat>(frame.format);
    converter.rate_ = frame.sample_rate;
    converter.channels_ = inputs;
    converter.mask_ = maskOf(frame.ch_layout);
    return converter;
}

bool SoundConverter::fits(const AVFrame& frame) const
{
    return frame.format == format_ && frame.sample_rate == rate_ && frame.ch_layout.nb_channels == channels_
        && maskOf(frame.ch_layout) == mask_;
}

Result<void> SoundConverter::run(const std::uint8_t* const* input, int count, PCMChunk& chunk)
{
    auto places = chunk.end();
    const auto room = chunk.room();
    // The library's interface leaves out one const.
    auto** source = const_cast<const std::uint8_t**>(input);
    int produced = swr_convert(resampler_.get(), places.data(), static_cast<int>(room), source, count);
    if (produced < 0)
        return failure(mediaError(produced, MediaWork::decode));
    chunk.grow(produced);
    isBackedUp_ = produced == room;
    return {};
}

Result<void> SoundConverter::convert(const AVFrame& frame, int offset, int count, PCMChunk& chunk)
{
    std::array<const std::uint8_t*, greatestChannelCount> planes{};
    const bool isPlanar = av_sample_fmt_is_planar(format_);
    const auto step =
        static_cast<std::ptrdiff_t>(av_get_bytes_per_sample(format_)) * (isPlanar ? 1 : channels_);
    for (int plane = 0; plane < (isPlanar ? channels_ : 1); ++plane)
        planes[static_cast<std::size_t>(plane)] = frame.extended_data[plane] + step * offset;
    return run(planes.data(), count, chunk);
}

Result<void> SoundConverter::convertSilence(int count, PCMChunk& chunk)
{
    if (silence_.empty()) {
        silence_.resize(static_cast<std::size_t>(av_get_bytes_per_sample(format_) * channels_) * silenceSize);
        if (av_get_packed_sample_fmt(format_) == AV_SAMPLE_FMT_U8)
            std::ranges::fill(silence_, std::uint8_t{0x80});
    }
    std::array<const std::uint8_t*, greatestChannelCount> planes{};
    planes.fill(silence_.data()); // silent channels may share their samples
    return run(planes.data(), std::min(count, silenceSize), chunk);
}

Result<void> SoundConverter::takeOut(PCMChunk& chunk)
{
    // Without planes it would be the end.
    std::array<const std::uint8_t*, greatestChannelCount> nothing{};
    return run(nothing.data(), 0, chunk);
}

Result<void> SoundConverter::drain(PCMChunk& chunk)
{
    return run(nullptr, 0, chunk);
}

void SoundConverter::drop(std::int64_t frames)
{
    swr_drop_output(resampler_.get(), static_cast<int>(frames));
}

} // namespace platform

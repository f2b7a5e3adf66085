// SPDX-License-Identifier: MIT
#include "platform/avfoundation/PCMChunk_p.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace platform {

static_assert(std::endian::native == std::endian::little,
              "foreign samples are swapped from little-endian ones");

AVSampleFormat sampleFormat(const CMAudioFormat& format)
{
    auto packed = format.isFloat      ? (format.bitsPerChannel == 64 ? AV_SAMPLE_FMT_DBL : AV_SAMPLE_FMT_FLT)
        : format.bitsPerChannel == 8  ? AV_SAMPLE_FMT_U8
        : format.bitsPerChannel == 16 ? AV_SAMPLE_FMT_S16
                                      : AV_SAMPLE_FMT_S32;
    return format.isNonInterleaved ? av_get_planar_sample_fmt(packed) : packed;
}

PCMChunk::PCMChunk(const CMAudioFormat& format, std::int64_t capacity)
    : format_(format)
    , capacity_(capacity)
    , limit_(capacity)
    , planes_(format.isNonInterleaved ? static_cast<std::size_t>(format.channels) : 1)
    , bytesPerFrame_(static_cast<std::size_t>(av_get_bytes_per_sample(sampleFormat(format)))
                     * static_cast<std::size_t>(format.isNonInterleaved ? 1 : format.channels))
    , bytes_(planes_ * bytesPerFrame_ * static_cast<std::size_t>(capacity))
{
}

std::array<std::uint8_t*, 64> PCMChunk::end()
{
    std::array<std::uint8_t*, 64> places{};
    for (std::size_t plane = 0; plane < planes_; ++plane)
        places[plane] = bytes_.data()
            + bytesPerFrame_
                * (plane * static_cast<std::size_t>(capacity_) + static_cast<std::size_t>(size_));
    return places;
}

void PCMChunk::appendSilence(std::int64_t frames)
{
    if (frames <= 0)
        return;
    const int silence = !format_.isFloat && format_.bitsPerChannel == 8 ? 0x80 : 0;
    auto places = end();
    for (std::size_t plane = 0; plane < planes_; ++plane)
        std::memset(places[plane], silence, bytesPerFrame_ * static_cast<std::size_t>(frames));
    size_ += frames;
}

CMBlockBuffer PCMChunk::takeBytes()
{
    closeUp();
    if (format_.bitsPerChannel == 24)
        packTo24Bits();
    if (format_.isBigEndian && format_.bitsPerChannel > 8)
        swapBytes(static_cast<std::size_t>(format_.bitsPerChannel) / 8);
    size_ = 0;
    auto owner = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes_));
    return {std::as_bytes(std::span(*owner)), owner};
}

// Planes of a chunk that is not full lie apart.
void PCMChunk::closeUp()
{
    const auto length = bytesPerFrame_ * static_cast<std::size_t>(size_);
    for (std::size_t plane = 1; plane < planes_; ++plane)
        std::memmove(bytes_.data() + plane * length,
                     bytes_.data() + plane * bytesPerFrame_ * static_cast<std::size_t>(capacity_), length);
    bytes_.resize(planes_ * length);
}

void PCMChunk::packTo24Bits()
{
    const auto samples = bytes_.size() / 4;
    for (std::size_t sample = 0; sample < samples; ++sample)
        std::memmove(bytes_.data() + 3 * sample, bytes_.data() + 4 * sample + 1, 3); // the low byte goes
    bytes_.resize(3 * samples);
}

void PCMChunk::swapBytes(std::size_t width)
{
    for (std::size_t begin = 0; begin + width <= bytes_.size(); begin += width)
        std::reverse(bytes_.data() + begin, bytes_.data() + begin + width);
}

} // namespace platform

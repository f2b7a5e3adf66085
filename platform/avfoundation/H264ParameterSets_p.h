// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace platform {

// What a decoder of H.264 must know before the first picture, as files hold it beside the samples (ISO/IEC 14496-15,
// AVCDecoderConfigurationRecord). Of 8-bit 4:2:0 video only.
struct H264ParameterSets {
    std::uint8_t profile = 0;
    std::uint8_t compatibility = 0;
    std::uint8_t level = 0;
    int lengthSize = 4; // bytes of the length before each unit of a sample
    std::vector<std::string> sequence;
    std::vector<std::string> picture;

    // Nothing when the bytes are not such a record.
    static std::optional<H264ParameterSets> parse(std::span<const std::uint8_t> record);
    // From units with start codes, as encoders give them.
    static std::optional<H264ParameterSets> fromByteStream(std::span<const std::uint8_t> bytes);

    std::vector<std::uint8_t> record() const;
    // Whether a sequence or picture parameter set has that number.
    bool usesID(int id) const;
    // These and the others together: pictures of both can be decoded. The lengths stay as they are here.
    H264ParameterSets merged(const H264ParameterSets& other) const;

    bool operator==(const H264ParameterSets&) const = default;
};

// The units that hold the slices of a picture, of a packet with start codes, in the form of a sample.
std::vector<std::uint8_t> sliceUnits(std::span<const std::uint8_t> byteStream, int lengthSize);

// Whether a sample begins a stream anew: no later picture refers to anything before it.
bool isInstantaneousRefresh(std::span<const std::uint8_t> sample, int lengthSize);

} // namespace platform

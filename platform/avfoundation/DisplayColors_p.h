// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

struct AVFrame;

namespace platform {

// Brings colours that a display of ordinary brightness and gamut does not have to those it has (sRGB).
//
// Pictures of high dynamic range (PQ, HLG) are turned into light relative to diffuse white (203 cd/m2); what is brighter
// than a display can be is compressed by the curve of ITU-R BT.2390, on the greatest of the three components, so that hues
// stay; then the gamut is converted, and what is outside of it clipped. Pictures of a wide gamut only keep their shades of
// grey as they are. One thread at a time.
class DisplayColors {
public:
    // Null when the picture is shown as it is.
    static std::optional<DisplayColors> make(const AVFrame& frame);

    // Whether it is made for pictures like this one.
    bool suits(const AVFrame& frame) const;

    // `source`: red, green, blue, 16 bits each. `target`: blue, green, red, unused, 8 bits each.
    void convertRow(const std::uint16_t* source, std::uint8_t* target, int width) const;

private:
    enum class Transfer { display, pq, hlg };
    enum class Gamut { bt709, displayP3, bt2020 };
    struct Kind {
        Transfer transfer;
        Gamut gamut;
        double peak; // of the picture, relative to diffuse white; 1 when it is not of high dynamic range
        bool operator==(const Kind&) const = default;
    };
    using Light = std::array<float, 3>;

    explicit DisplayColors(const Kind& kind);
    static Kind kindOf(const AVFrame& frame);
    void makeCompression();
    float compression(float greatest) const;
    void addSystemGamma(Light& light) const;

    Kind kind_;
    std::vector<float> linear_;      // light of a component's value, by its upper bits
    std::vector<float> systemGamma_; // of HLG: the factor of the scene's light, by its square root
    std::vector<float> compression_; // the factor of light, by the square root of its part of the peak
};

} // namespace platform

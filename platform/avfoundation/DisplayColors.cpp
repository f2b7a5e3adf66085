// SPDX-License-Identifier: MIT
#include "platform/avfoundation/DisplayColors_p.h"

#include "platform/avfoundation/FrameColors_p.h"

#include <algorithm>
#include <cmath>

extern "C" {
#include <libavutil/mastering_display_metadata.h>
}

namespace platform {

namespace {

constexpr double diffuseWhite = 203; // cd/m2, ITU-R BT.2408
constexpr double peakOfPQ = 10'000;
// What HLG is displayed at, and PQ mostly mastered for.
constexpr double usualPeak = 1000;

constexpr int componentBits = 12; // of 16: all that a picture has
constexpr std::size_t tableSize = 1 << componentBits;
constexpr std::size_t encodingSize = 1 << 14;

// SMPTE ST 2084: from a value 0...1 to light, 1 at 10,000 cd/m2, and back.
constexpr double m1 = 2610.0 / 16384, m2 = 2523.0 / 32, c1 = 3424.0 / 4096, c2 = 2413.0 / 128,
                 c3 = 2392.0 / 128;

double lightOfPQ(double value)
{
    const double root = std::pow(value, 1 / m2);
    return std::pow(std::max(root - c1, 0.0) / (c2 - c3 * root), 1 / m1);
}

double valueOfPQ(double light)
{
    const double power = std::pow(light, m1);
    return std::pow((c1 + c2 * power) / (1 + c3 * power), m2);
}

// ARIB STD-B67: from a value 0...1 to the scene's light 0...1.
double lightOfHLG(double value)
{
    constexpr double a = 0.17883277, b = 0.28466892, c = 0.55991073;
    return value <= 0.5 ? value * value / 3 : (std::exp((value - c) / a) + b) / 12;
}

double lightOfSRGB(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

const std::vector<std::uint8_t>& sRGBEncoding()
{
    // Never destroyed: threads may still run while the process exits.
    static const auto& table = *new std::vector<std::uint8_t>([] {
        std::vector<std::uint8_t> bytes(encodingSize);
        for (std::size_t index = 0; index < encodingSize; ++index) {
            const double light = static_cast<double>(index) / (encodingSize - 1);
            const double value =
                light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
            bytes[index] = static_cast<std::uint8_t>(std::lround(value * 255));
        }
        return bytes;
    }());
    return table;
}

constexpr float toBT709[3][9] = {
    {1, 0, 0, 0, 1, 0, 0, 0, 1},
    {1.2249F, -0.2249F, 0, -0.0420F, 1.0420F, 0, -0.0197F, -0.0786F, 1.0983F},               // Display P3
    {1.6605F, -0.5877F, -0.0728F, -0.1246F, 1.1330F, -0.0084F, -0.0182F, -0.1006F, 1.1188F}, // BT.2020
};

// How bright the picture gets, in cd/m2, as far as it says.
double peakOf(const AVFrame& frame)
{
    double peak = 0;
    if (auto* data = av_frame_get_side_data(&frame, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL))
        peak = reinterpret_cast<const AVContentLightMetadata*>(data->data)->MaxCLL;
    auto* data = av_frame_get_side_data(&frame, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA);
    if (auto* mastering = data ? reinterpret_cast<const AVMasteringDisplayMetadata*>(data->data) : nullptr;
        mastering && peak == 0 && mastering->has_luminance && mastering->max_luminance.den > 0)
        peak = av_q2d(mastering->max_luminance);
    return peak > 0 ? std::clamp(peak, diffuseWhite, peakOfPQ) : usualPeak;
}

} // namespace

DisplayColors::Kind DisplayColors::kindOf(const AVFrame& frame)
{
    Kind kind{Transfer::display, Gamut::bt709, 1};
    if (frame.color_trc == AVCOL_TRC_SMPTE2084)
        kind = {Transfer::pq, Gamut::bt709, peakOf(frame) / diffuseWhite};
    else if (frame.color_trc == AVCOL_TRC_ARIB_STD_B67)
        kind = {Transfer::hlg, Gamut::bt709, usualPeak / diffuseWhite};
    const bool isHDR = kind.transfer != Transfer::display;
    if (frame.color_primaries == AVCOL_PRI_BT2020
        || (isHDR && frame.color_primaries == AVCOL_PRI_UNSPECIFIED))
        kind.gamut = Gamut::bt2020;
    else if (frame.color_primaries == AVCOL_PRI_SMPTE432)
        kind.gamut = Gamut::displayP3;
    return kind;
}

std::optional<DisplayColors> DisplayColors::make(const AVFrame& frame)
{
    auto kind = kindOf(frame);
    if (kind == Kind{Transfer::display, Gamut::bt709, 1})
        return std::nullopt;
    return DisplayColors(kind);
}

bool DisplayColors::suits(const AVFrame& frame) const
{
    return kind_ == kindOf(frame);
}

DisplayColors::DisplayColors(const Kind& kind)
    : kind_(kind)
    , linear_(tableSize)
{
    for (std::size_t index = 0; index < tableSize; ++index) {
        const double value = static_cast<double>(index) / (tableSize - 1);
        const double light = kind.transfer == Transfer::pq ? lightOfPQ(value) * peakOfPQ / diffuseWhite
            : kind.transfer == Transfer::hlg               ? lightOfHLG(value)
                                                           : lightOfSRGB(value);
        linear_[index] = static_cast<float>(light);
    }
    if (kind.transfer == Transfer::hlg) {
        systemGamma_.resize(tableSize);
        for (std::size_t index = 0; index < tableSize; ++index) {
            const double root = static_cast<double>(index) / (tableSize - 1);
            systemGamma_[index] = static_cast<float>(kind.peak * std::pow(root * root, 0.2));
        }
    }
    if (kind.peak > 1)
        makeCompression();
}

// ITU-R BT.2390: nothing changes up to a knee; above it a spline reaches the display's white at the picture's peak.
// It works on PQ values, which are even steps to the eye, as parts of the peak's.
void DisplayColors::makeCompression()
{
    compression_.resize(tableSize, 1);
    const double peakValue = valueOfPQ(kind_.peak * diffuseWhite / peakOfPQ);
    const double white = valueOfPQ(diffuseWhite / peakOfPQ) / peakValue;
    const double knee = 1.5 * white - 0.5;
    for (std::size_t index = 1; index < tableSize; ++index) {
        const double root = static_cast<double>(index) / (tableSize - 1);
        const double light = root * root * kind_.peak;
        const double value = valueOfPQ(light * diffuseWhite / peakOfPQ) / peakValue;
        if (value <= knee)
            continue;
        const double t = (value - knee) / (1 - knee), t2 = t * t, t3 = t2 * t;
        const double compressed =
            (2 * t3 - 3 * t2 + 1) * knee + (t3 - 2 * t2 + t) * (1 - knee) + (3 * t2 - 2 * t3) * white;
        compression_[index] =
            static_cast<float>(lightOfPQ(compressed * peakValue) * peakOfPQ / diffuseWhite / light);
    }
}

float DisplayColors::compression(float greatest) const
{
    const auto peak = static_cast<float>(kind_.peak);
    if (greatest >= peak)
        return 1 / greatest;
    return compression_[static_cast<std::size_t>(std::sqrt(greatest / peak) * (tableSize - 1))];
}

// What HLG holds is the scene's light; a display raises it to a power of its luminance.
void DisplayColors::addSystemGamma(Light& light) const
{
    const float luminance = 0.2627F * light[0] + 0.678F * light[1] + 0.0593F * light[2];
    const float gain =
        systemGamma_[static_cast<std::size_t>(std::sqrt(std::min(luminance, 1.0F)) * (tableSize - 1))];
    for (float& component : light)
        component *= gain;
}

void DisplayColors::convertRow(const std::uint16_t* source, std::uint8_t* target, int width) const
{
    const auto& encoding = sRGBEncoding();
    const auto& matrix = toBT709[static_cast<std::size_t>(kind_.gamut)];
    for (int x = 0; x < width; ++x, source += 3, target += 4) {
        Light light;
        for (std::size_t part = 0; part < 3; ++part)
            light[part] = linear_[static_cast<std::size_t>(source[part] >> (16 - componentBits))];
        if (kind_.transfer == Transfer::hlg)
            addSystemGamma(light);
        if (kind_.peak > 1) {
            const float gain = compression(std::max({light[0], light[1], light[2]}));
            for (float& component : light)
                component *= gain;
        }
        for (std::size_t part = 0; part < 3; ++part) {
            const float* row = matrix + 3 * part;
            const float shown = row[0] * light[0] + row[1] * light[1] + row[2] * light[2];
            const auto index =
                static_cast<std::size_t>(std::clamp(shown, 0.0F, 1.0F) * (encodingSize - 1) + 0.5F);
            target[2 - part] = encoding[index];
        }
        target[3] = 255;
    }
}

} // namespace platform

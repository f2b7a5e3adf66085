// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMediaType.h"
#include "platform/avfoundation/CVPixelBuffer.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace platform {

struct CMAudioFormat {
    // Hertz, and 0 when the file does not say.
    double sampleRate = 0;
    int channels = 0;
    // Of linear PCM, 0 otherwise.
    int bitsPerChannel = 0;
    bool isFloat = false;
    bool isBigEndian = false;
    bool isNonInterleaved = false;
    bool operator==(const CMAudioFormat&) const = default;
};

struct CMVideoFormat {
    // Pixels as coded, before rotation.
    int width = 0;
    int height = 0;
    // Width of a pixel divided by its height.
    double pixelAspectRatio = 1;
    ColorDescription color;
    bool operator==(const CMVideoFormat&) const = default;
};

// What the samples of a track are. Immutable; any thread.
class CMFormatDescription {
public:
    AVMediaType mediaType() const { return mediaType_; }
    // 'avc1', 'aac ', 'lpcm', ...; 0 when the format has no such name.
    FourCharCode mediaSubType() const { return mediaSubType_; }
    // The codec in words, "h264"; for people and logs.
    const std::string& codecName() const { return codecName_; }
    // One of the two is there, as the media type says; neither for other types.
    const std::optional<CMAudioFormat>& audio() const { return audio_; }
    const std::optional<CMVideoFormat>& video() const { return video_; }

    // Linear PCM, as a reader gives it. Other descriptions come from files.
    static std::shared_ptr<const CMFormatDescription> linearPCM(const CMAudioFormat& format);

    // What the codec library needs to know about samples that are passed on as they are. Private.
    struct Parameters;
    explicit CMFormatDescription(std::shared_ptr<const Parameters> parameters);
    const Parameters& parameters() const { return *parameters_; }

private:
    std::shared_ptr<const Parameters> parameters_;
    AVMediaType mediaType_;
    FourCharCode mediaSubType_ = 0;
    std::string codecName_;
    std::optional<CMAudioFormat> audio_;
    std::optional<CMVideoFormat> video_;
};

} // namespace platform

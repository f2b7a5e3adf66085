// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CVPixelBuffer.h"
#include "platform/avfoundation/FFmpegHandles_p.h"
#include "platform/avfoundation/FFmpegTime_p.h"
#include "platform/avfoundation/VideoSettings.h"
#include "platform/foundation/Result.h"

#include <functional>
#include <map>
#include <memory>

namespace platform {

struct PictureEncoderOptions {
    // Of the pictures' times.
    AVRational timeBase{1, 90000};
    // The number of the parameter sets in the stream, from 0 to 31.
    int parameterSetID = 0;
};

// Compresses pictures with H.264. One thread at a time.
class PictureEncoder {
public:
    using Take = std::function<Result<void>(AVPacket&)>;

    // What the settings leave open is taken from `first`. AVError::encoderNotFound when there is no encoder for them.
    static Result<std::unique_ptr<PictureEncoder>>
    open(const VideoSettings& settings, const CVPixelBuffer& first, const PictureEncoderOptions& options);

    // Its extradata holds the parameter sets, in the form of a byte stream.
    const AVCodecContext& context() const { return *context_; }

    // Times are in ticks and grow from call to call; a duration of 0 is not known. Packets have the durations of their
    // pictures.
    Result<void> encode(const CVPixelBuffer& picture, std::int64_t pts, std::int64_t duration,
                        const Take& take);
    // What is under way. No call follows.
    Result<void> finish(const Take& take);

private:
    explicit PictureEncoder(CodecContext context)
        : context_(std::move(context))
    {
    }
    struct ScalerInput {
        int width = 0, height = 0, format = 0;
        bool isFullRange = false;
        bool operator==(const ScalerInput&) const = default;
    };
    Result<void> prepareScaler(const CVPixelBuffer& picture);
    // The picture in the encoder's size and form.
    Result<Frame> converted(const CVPixelBuffer& picture);
    Result<void> send(const AVFrame* frame, const Take& take);

    const CodecContext context_;
    Scaler scaler_; // of the last picture that needed one
    ScalerInput scalerInput_;
    const Packet packet_ = makePacket();
    // of the pictures that the encoder has; it forgets them
    std::map<std::int64_t, std::int64_t> durations_;
};

} // namespace platform

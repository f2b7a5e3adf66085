// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureOutput.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/graphics/Geometry.h"

#include <memory>
#include <mutex>
#include <optional>

namespace platform {

class PictureConverter;

class AVCaptureVideoDataOutputSampleBufferDelegate {
public:
    virtual ~AVCaptureVideoDataOutputSampleBufferDelegate() = default;
    virtual void captureOutputDidOutput(AVCaptureOutput& output, const CMSampleBuffer& sample) = 0;
};

// Hands the session's pictures to a queue, the newest only: one that comes while the queue has not got to the one before takes
// its place. Converted on the device's thread. Any thread.
class AVCaptureVideoDataOutput : public AVCaptureOutput {
public:
    AVCaptureVideoDataOutput();
    ~AVCaptureVideoDataOutput() override;

    // The form of the pictures, from the next one on; the default is BGRA32 of the device's size.
    void setVideoSettings(const PixelBufferAttributes& settings);
    // Of the last picture as the device gave it, in pixels; zero before the first.
    CGSize sourceSize() const;
    void setSampleBufferDelegate(std::weak_ptr<AVCaptureVideoDataOutputSampleBufferDelegate> delegate,
                                 std::shared_ptr<DispatchQueue> queue);

protected:
    void take(AVMediaType mediaType, const CMSampleBuffer& sample) override;

private:
    void handOut();

    // of the device's thread
    std::unique_ptr<PictureConverter> converter_;
    PixelBufferAttributes converted_;
    // guarded by mutex_
    mutable std::mutex mutex_;
    CGSize sourceSize_;
    PixelBufferAttributes settings_;
    std::weak_ptr<AVCaptureVideoDataOutputSampleBufferDelegate> delegate_;
    std::shared_ptr<DispatchQueue> queue_;
    std::optional<CMSampleBuffer> latest_;
};

} // namespace platform

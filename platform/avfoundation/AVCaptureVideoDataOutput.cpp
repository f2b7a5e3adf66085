// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVCaptureVideoDataOutput.h"

#include "platform/avfoundation/CVPixelBuffer_p.h"
#include "platform/avfoundation/PictureConverter_p.h"

#include <utility>

namespace platform {

AVCaptureVideoDataOutput::AVCaptureVideoDataOutput() = default;
AVCaptureVideoDataOutput::~AVCaptureVideoDataOutput() = default;

void AVCaptureVideoDataOutput::setVideoSettings(const PixelBufferAttributes& settings)
{
    std::lock_guard lock(mutex_);
    settings_ = settings;
}

CGSize AVCaptureVideoDataOutput::sourceSize() const
{
    std::lock_guard lock(mutex_);
    return sourceSize_;
}

void AVCaptureVideoDataOutput::setSampleBufferDelegate(
    std::weak_ptr<AVCaptureVideoDataOutputSampleBufferDelegate> delegate,
    std::shared_ptr<DispatchQueue> queue)
{
    std::lock_guard lock(mutex_);
    delegate_ = std::move(delegate);
    queue_ = std::move(queue);
}

void AVCaptureVideoDataOutput::take(AVMediaType mediaType, const CMSampleBuffer& sample)
{
    if (mediaType != AVMediaType::video || !sample.imageBuffer)
        return;
    {
        std::lock_guard lock(mutex_);
        if (!queue_ || delegate_.expired())
            return;
        if (!converter_ || converted_ != settings_) {
            converted_ = settings_;
            converter_ = std::make_unique<PictureConverter>(converted_);
        }
    }
    auto picture = converter_->convert(*sample.imageBuffer->frame().picture);
    if (!picture)
        return; // there is no memory for it; perhaps there is for the next one
    auto given = sample;
    given.imageBuffer = std::move(*picture);
    std::lock_guard lock(mutex_);
    sourceSize_ = {static_cast<double>(sample.imageBuffer->width()),
                   static_cast<double>(sample.imageBuffer->height())};
    auto isAwaited = latest_.has_value();
    latest_ = std::move(given);
    if (!isAwaited)
        queue_->async([self = sharedFrom(this)] { self->handOut(); });
}

void AVCaptureVideoDataOutput::handOut()
{
    std::optional<CMSampleBuffer> sample;
    std::shared_ptr<AVCaptureVideoDataOutputSampleBufferDelegate> told;
    {
        std::lock_guard lock(mutex_);
        sample.swap(latest_);
        told = delegate_.lock();
    }
    if (told && sample)
        told->captureOutputDidOutput(*this, *sample);
}

} // namespace platform

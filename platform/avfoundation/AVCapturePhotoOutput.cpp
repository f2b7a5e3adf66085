// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVCapturePhotoOutput.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/JPEGEncoding_p.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/currentDate.h"

#include <utility>

namespace platform {

namespace {

PropertyListDictionary metadataOf(const PhotoFacts& facts, const CVPixelBuffer& picture)
{
    PropertyListDictionary tiff{{"Orientation", PropertyListValue(1)}, {"DateTime", facts.date}};
    if (!facts.model.empty())
        tiff.emplace("Model", facts.model);
    PropertyListDictionary exif{{"DateTimeOriginal", facts.date},
                                {"OffsetTimeOriginal", facts.offset},
                                {"PixelXDimension", PropertyListValue(picture.width())},
                                {"PixelYDimension", PropertyListValue(picture.height())}};
    return {{"{TIFF}", PropertyListValue(std::move(tiff))},
            {"{Exif}", PropertyListValue(std::move(exif))},
            {"PixelWidth", PropertyListValue(picture.width())},
            {"PixelHeight", PropertyListValue(picture.height())},
            {"Orientation", PropertyListValue(1)}};
}

} // namespace

void AVCapturePhotoOutput::capturePhoto(std::weak_ptr<AVCapturePhotoCaptureDelegate> delegate)
{
    assertOnMainThread();
    std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(delegate));
}

void AVCapturePhotoOutput::setCameraModel(std::string model)
{
    assertOnMainThread();
    std::lock_guard lock(mutex_);
    model_ = std::move(model);
}

void AVCapturePhotoOutput::take(AVMediaType mediaType, const CMSampleBuffer& sample)
{
    if (mediaType != AVMediaType::video || !sample.imageBuffer)
        return;
    Delegates waiting;
    PhotoFacts facts = factsAt(currentDate());
    {
        std::lock_guard lock(mutex_);
        if (waiting_.empty())
            return;
        waiting.swap(waiting_);
        facts.model = model_;
    }
    auto jpeg = encodeJPEG(*sample.imageBuffer, facts);
    if (!jpeg)
        return tell(std::move(waiting), {}, jpeg.error());
    tell(std::move(waiting), {std::move(*jpeg), metadataOf(facts, *sample.imageBuffer), sample.imageBuffer},
         std::nullopt);
}

void AVCapturePhotoOutput::handleEnd(AVMediaType mediaType, const std::optional<Error>& error)
{
    if (mediaType != AVMediaType::video)
        return;
    Delegates waiting;
    {
        std::lock_guard lock(mutex_);
        waiting.swap(waiting_);
    }
    if (!waiting.empty())
        tell(std::move(waiting), {}, error.value_or(Error(AVError::sessionNotRunning)));
}

void AVCapturePhotoOutput::tell(Delegates delegates, AVCapturePhoto photo, std::optional<Error> error)
{
    DispatchQueue::main()->async([self = sharedFrom(this), delegates = std::move(delegates),
                                  photo = std::move(photo), error = std::move(error)] {
        for (const auto& each : delegates) {
            if (auto delegate = each.lock())
                delegate->photoOutputDidFinishProcessingPhoto(*self, photo, error);
        }
    });
}

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureOutput.h"
#include "platform/foundation/Date.h"
#include "platform/foundation/PropertyList.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace platform {

// A photo as it was taken. Any thread.
struct AVCapturePhoto {
    std::string fileDataRepresentation; // JPEG, with what `metadata` says in it
    PropertyListDictionary metadata;    // "{TIFF}", "{Exif}", "PixelWidth", "PixelHeight", "Orientation"
    std::shared_ptr<const CVPixelBuffer> pixelBuffer;
};

class AVCapturePhotoOutput;

class AVCapturePhotoCaptureDelegate {
public:
    virtual ~AVCapturePhotoCaptureDelegate() = default;
    // Once for each photo asked for. On the main thread.
    virtual void photoOutputDidFinishProcessingPhoto(AVCapturePhotoOutput& output,
                                                     const AVCapturePhoto& photo,
                                                     const std::optional<Error>& error) = 0;
};

// Takes photos from a session's camera.
class AVCapturePhotoOutput : public AVCaptureOutput {
public:
    // Takes the next picture of the camera; the photo is made on the camera's thread. Main thread only.
    void capturePhoto(std::weak_ptr<AVCapturePhotoCaptureDelegate> delegate);
    // What photos say that took them; empty: nothing. Main thread only.
    void setCameraModel(std::string model);

protected:
    void take(AVMediaType mediaType, const CMSampleBuffer& sample) override;
    void handleEnd(AVMediaType mediaType, const std::optional<Error>& error) override;

private:
    using Delegates = std::vector<std::weak_ptr<AVCapturePhotoCaptureDelegate>>;
    void tell(Delegates delegates, AVCapturePhoto photo, std::optional<Error> error);

    // guarded by mutex_
    std::mutex mutex_;
    Delegates waiting_;
    std::string model_;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVVideoComposition.h"
#include "platform/avfoundation/CMTime.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/Result.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/UIImage.h"

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <variant>
#include <vector>

namespace platform {

class AVAsset;
struct StillSettings;

enum class AVAssetImageGeneratorResult { succeeded, failed, cancelled };

// A moment for which a picture is asked: a media time, or a plain number, which is seconds. A number cannot say most
// pictures' times exactly, so half a microsecond less than one still names that picture.
using AVRequestedTime = std::variant<CMTime, double>;

// Makes pictures of moments of an asset's first video track.
//
// Which one: the picture on screen at the time, or another that begins within the tolerances about it, whichever is
// found with less work (a key picture, mostly). The first picture counts from zero on and the last one to the end of the
// asset. A time before zero, or at the end or later, is outside: it has a picture only if its tolerance reaches back in.
//
// A call takes the settings that it finds. It opens the file once and decodes each group of pictures that it needs once,
// whatever order the times come in; letting go of the generator does not end it. Settings: one thread at a time.
class AVAssetImageGenerator : public NSObject {
public:
    // `actualTime` is where the picture that was made begins. Without a picture it is invalid, and `error` says why: a
    // failure, or AVError::operationCancelled.
    using CompletionHandler = std::function<void(
        const CMTime& requestedTime, const std::optional<UIImage>& image, const CMTime& actualTime,
        AVAssetImageGeneratorResult result, const std::optional<Error>& error)>;

    explicit AVAssetImageGenerator(std::shared_ptr<AVAsset> asset);
    ~AVAssetImageGenerator() override;

    const std::shared_ptr<AVAsset>& asset() const { return asset_; }

    // Whether pictures are turned and mirrored as the track asks. Default: not. A composition says that itself.
    bool appliesPreferredTrackTransform() const;
    void setAppliesPreferredTrackTransform(bool applies);

    // Pixels. Pictures are made smaller to fit within, in their proportions on screen, and never larger. A side that is
    // zero, negative or no number does not limit. Default: zero.
    CGSize maximumSize() const;
    void setMaximumSize(CGSize size);

    // How far the picture may begin from the requested time. Default: positive infinity, any picture. Zero asks for the
    // one on screen; so do negative and invalid times.
    CMTime requestedTimeToleranceBefore() const;
    void setRequestedTimeToleranceBefore(const CMTime& tolerance);
    CMTime requestedTimeToleranceAfter() const;
    void setRequestedTimeToleranceAfter(const CMTime& tolerance);

    // How the asset's video tracks are laid together. Pictures then have the composition's render size (smaller when
    // maximumSize says so) and are those of its frame at the time, whatever the tolerances. A composition without a size or
    // a frame duration, or without an instruction at a time, fails with AVError::invalidVideoComposition; a track that
    // has no picture at a time, or is not there, is left out.
    const std::optional<AVVideoComposition>& videoComposition() const;
    void setVideoComposition(std::optional<AVVideoComposition> composition);

    // Decodes on the calling thread, which it blocks. `actualTime` may be null.
    //
    // Errors: AVError::noImageAtTime, noSourceTrack (no video), contentIsProtected, decoderNotFound, decodeFailed,
    // invalidVideoComposition; those of reading; the asset's loadError.
    [[nodiscard]] Result<UIImage> copyCGImage(const CMTime& time, CMTime* actualTime = nullptr) const;

    // Returns at once; `handler` is called exactly once for each time, in the order of the times, each as soon as those
    // before it are done, on a thread of the port, one call after the other. It is released after the last. Calls of one
    // process share a few threads.
    void generateCGImagesAsynchronously(const std::vector<AVRequestedTime>& times, CompletionHandler handler);

    // What is still to be done of all calls ends as cancelled, with its handlers called. Any thread.
    void cancelAllCGImageGeneration();

private:
    // fixed after construction
    const std::shared_ptr<AVAsset> asset_;
    const std::unique_ptr<StillSettings> settings_;
    // guarded by the mutex of Cancelling
    struct Cancelling;
    const std::unique_ptr<Cancelling> cancelling_;
};

} // namespace platform

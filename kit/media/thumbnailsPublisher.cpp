// SPDX-License-Identifier: MIT
#include "kit/media/thumbnailsPublisher.h"

#include "kit/foundation/kitLogger.h"

#include "platform/avfoundation/AVAssetImageGenerator.h"
#include "platform/combine/Just.h"
#include "platform/combine/PassthroughSubject.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

namespace zelk {

using namespace platform;

namespace {

// Main thread only, the last release included: subscribers go with it.
struct ThumbnailStream {
    std::vector<UIImage> images;
    PassthroughSubject<std::vector<UIImage>> subject;

    static std::shared_ptr<ThumbnailStream> make()
    {
        return std::shared_ptr<ThumbnailStream>(new ThumbnailStream, [](ThumbnailStream* stream) {
            std::unique_ptr<ThumbnailStream> released(stream);
            if (!isOnMainThread())
                DispatchQueue::main()->async([released = std::move(released)] { });
        });
    }

    void receive(const std::optional<UIImage>& image, const std::optional<Error>& error)
    {
        if (image) {
            images.push_back(*image);
            subject.send(images);
        } else if (error) {
            subject.complete(Completion::failure(*error));
        } else {
            preconditionFailure("no image, no error");
        }
    }
};

ThumbnailsPublisher emptyThumbnails()
{
    return Just(std::vector<UIImage>()).eraseToAnyPublisher();
}

std::string debugDescription(CGFloat value)
{
    char digits[32];
    auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
    std::string text(digits, end);
    return std::isfinite(value) && text.find_first_of(".e") == std::string::npos ? text + ".0" : text;
}

std::string debugDescription(CGSize size)
{
    return "(" + debugDescription(size.width) + ", " + debugDescription(size.height) + ")";
}

std::string fixedPoint(double value)
{
    char digits[400];
    std::snprintf(digits, sizeof digits, "%f", value);
    return digits;
}

// From 0 through (1 - 1/count) of the duration. The end itself is among them only if a step meets it exactly.
std::vector<double> spreadTimes(double duration, int count)
{
    const double step = duration / count;
    precondition(step != 0, "a stride of zero never gets to its end");
    const double end = (1 - 1.0 / count) * duration;
    std::vector<double> times;
    if (step < 0)
        return times; // the end is ahead of the start
    for (double index = 0, time = 0; time <= end; time = std::fma(++index, step, 0.0))
        times.push_back(time);
    return times;
}

} // namespace

ThumbnailsPublisher thumbnailsPublisher(std::shared_ptr<AVAsset> asset, const ThumbnailsAtTimes& request)
{
    AVAssetImageGenerator generator(std::move(asset));
    generator.setMaximumSize(request.maximumSize);
    generator.setAppliesPreferredTrackTransform(true);
    generator.setVideoComposition(request.videoComposition);
    generator.setRequestedTimeToleranceBefore(request.requestedTimeToleranceBefore);
    generator.setRequestedTimeToleranceAfter(request.requestedTimeToleranceAfter);

    auto stream = ThumbnailStream::make();
    auto publisher = stream->subject.eraseToAnyPublisher();
    generator.generateCGImagesAsynchronously(
        {request.times.begin(), request.times.end()},
        [stream = std::move(stream)](const CMTime&, const std::optional<UIImage>& image, const CMTime&,
                                     AVAssetImageGeneratorResult, const std::optional<Error>& error) {
            DispatchQueue::main()->async([stream, image, error] { stream->receive(image, error); });
        });
    return publisher;
}

ThumbnailsPublisher thumbnailsPublisher(std::shared_ptr<AVAsset> asset, const ThumbnailsByCount& request)
{
    const auto duration = asset->duration();
    if (!(CMTime::zero() < duration) || !duration.isNumeric()) {
        kitLogger().error("asked to generate thumbnails with invalid duration: "
                          + fixedPoint(duration.seconds()));
        return emptyThumbnails();
    }
    if (request.maximumSize.width == 0 || request.maximumSize.height == 0) {
        kitLogger().error("asked to generate thumbnails with invalid size: "
                          + debugDescription(request.maximumSize));
        return emptyThumbnails();
    }
    return thumbnailsPublisher(
        std::move(asset),
        ThumbnailsAtTimes{.times = spreadTimes(duration.seconds(), request.count),
                          .maximumSize = request.maximumSize,
                          .videoComposition = request.videoComposition,
                          .requestedTimeToleranceBefore = request.requestedTimeToleranceBefore,
                          .requestedTimeToleranceAfter = request.requestedTimeToleranceAfter});
}

} // namespace zelk

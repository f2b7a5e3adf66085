// SPDX-License-Identifier: MIT
#include "platform/services/FilmPlayback.h"

#include "platform/avfoundation/AVAssetReader.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/graphics/UIImage_p.h"

#include <QtGui/QTransform>

#include <algorithm>
#include <cmath>
#include <deque>
#include <mutex>
#include <utility>

namespace platform {

namespace {

constexpr std::size_t mostAhead = 8; // pictures
constexpr double farBehind = 1;      // seconds
constexpr CMTimeScale timescale = 600;

// Shares the pixels of the buffer.
QImage imageOf(const std::shared_ptr<const CVPixelBuffer>& buffer)
{
    auto* owner = new std::shared_ptr(buffer);
    return QImage(
        reinterpret_cast<const uchar*>(buffer->baseAddress(0)), buffer->width(), buffer->height(),
        static_cast<qsizetype>(buffer->bytesPerRow(0)), QImage::Format_RGB32,
        [](void* kept) { delete static_cast<std::shared_ptr<const CVPixelBuffer>*>(kept); }, owner);
}

// The size that pictures are decoded at: as they lie in the file, and even.
PixelBufferAttributes attributesFor(const AVAssetTrack& track, CGSize room)
{
    auto lying = track.naturalSize();
    auto standing = track.preferredTransform().apply(CGRect{{}, lying}).size;
    auto factor = std::min(
        {room.width / std::max(standing.width, 1.0), room.height / std::max(standing.height, 1.0), 1.0});
    auto even = [factor](double side) {
        return std::max(static_cast<int>(std::lround(side * factor / 2)) * 2, 2);
    };
    return {.kCVPixelBufferWidthKey = even(lying.width), .kCVPixelBufferHeightKey = even(lying.height)};
}

} // namespace

struct FilmPlayback::Work : std::enable_shared_from_this<FilmPlayback::Work> {
    // fixed after construction
    const Options options;
    const std::shared_ptr<DispatchQueue> queue = DispatchQueue::make("org.zelk.platform.film-playback");

    // guarded by mutex
    struct Picture {
        double time;
        UIImage image;
    };
    std::mutex mutex;
    std::deque<Picture> ahead;
    double wanted;
    bool isFilling = false, hasBegun = false, isOver = false;
    std::shared_ptr<AVAssetReader> reader;

    // the queue's thread only
    std::shared_ptr<AVAssetReaderTrackOutput> output;
    double decoded;

    explicit Work(const Options& given)
        : options(given)
        , wanted(given.start)
        , decoded(given.start)
    {
    }

    // With the mutex held.
    void fill()
    {
        if (!isOver && ahead.size() <= mostAhead / 2 && !std::exchange(isFilling, true))
            queue->async([self = shared_from_this()] { self->decodeSome(); });
    }
    void decodeSome()
    {
        for (;;) {
            std::optional<double> place;
            {
                std::lock_guard lock(mutex);
                if (isOver || ahead.size() >= mostAhead) {
                    isFilling = false;
                    return;
                }
                if (!output || wanted > decoded + farBehind)
                    place = std::max(wanted, decoded);
            }
            auto isOpen = !place || open(*place);
            auto sample = isOpen ? output->copyNextSampleBuffer() : nullptr;
            std::optional<Picture> picture;
            if (sample && sample->imageBuffer) {
                decoded = sample->presentationTimeStamp.seconds();
                picture = Picture{decoded, upright(imageOf(sample->imageBuffer))};
            }
            std::lock_guard lock(mutex);
            hasBegun = true;
            isOver |= !sample;
            if (picture && !isOver)
                ahead.push_back(std::move(*picture));
        }
    }
    bool open(double place)
    {
        auto made = AVAssetReader::make(options.asset);
        if (!made)
            return false;
        output = std::make_shared<AVAssetReaderTrackOutput>(options.track,
                                                            attributesFor(*options.track, options.size));
        if (!(*made)->canAdd(*output))
            return false;
        (*made)->add(output);
        (*made)->setTimeRange({CMTime::makeWithSeconds(place, timescale),
                               CMTime::makeWithSeconds(std::max(options.end - place, 0.0), timescale)});
        decoded = place;
        std::lock_guard lock(mutex);
        reader = *made;
        return reader->startReading();
    }
    UIImage upright(QImage picture) const
    {
        auto turn = options.track->preferredTransform();
        QTransform turned(turn.a, turn.b, turn.c, turn.d, 0, 0);
        return imageFrom(turned.isIdentity() ? std::move(picture) : picture.transformed(turned), 1);
    }
};

FilmPlayback::FilmPlayback(const Options& options)
    : work_(std::make_shared<Work>(options))
{
    std::lock_guard lock(work_->mutex);
    work_->fill();
}

FilmPlayback::~FilmPlayback()
{
    std::lock_guard lock(work_->mutex);
    work_->isOver = true;
    work_->ahead.clear();
    if (work_->reader)
        work_->reader->cancelReading();
}

bool FilmPlayback::isStarting() const
{
    std::lock_guard lock(work_->mutex);
    return !work_->hasBegun;
}

std::optional<UIImage> FilmPlayback::pictureAt(double seconds)
{
    std::lock_guard lock(work_->mutex);
    work_->wanted = seconds;
    std::optional<UIImage> latest;
    while (!work_->ahead.empty() && work_->ahead.front().time <= seconds) {
        latest = std::move(work_->ahead.front().image);
        work_->ahead.pop_front();
    }
    work_->fill();
    return latest;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVURLAsset.h"

#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/avfoundation/MediaSegment_p.h"

namespace platform {

namespace {

// A track of a file.
class FileTrack final : public AVAssetTrack {
public:
    FileTrack(std::weak_ptr<AVAsset> asset, std::shared_ptr<const MediaSource> source, std::size_t stream)
        : AVAssetTrack(std::move(asset), source->streams()[stream].trackID,
                       source->streams()[stream].mediaType)
        , source_(std::move(source))
        , position_(stream)
        , stream_(source_->streams()[stream])
    {
    }

    CMTimeRange timeRange() const override { return stream_.timeRange; }
    std::vector<std::shared_ptr<const CMFormatDescription>> formatDescriptions() const override
    {
        return {stream_.format};
    }
    CGSize naturalSize() const override { return stream_.naturalSize; }
    CGAffineTransform preferredTransform() const override { return stream_.preferredTransform; }
    double nominalFrameRate() const override { return stream_.frameRate; }
    std::int32_t naturalTimeScale() const override { return stream_.format->parameters().timeBase.den; }
    double estimatedDataRate() const override { return stream_.dataRate; }
    std::string languageCode() const override { return stream_.languageCode; }
    bool hasProtectedContent() const override { return stream_.isProtected; }
    bool isDecodable() const override { return stream_.isDecodable; }

    std::vector<MediaSegment> mediaSegments() const override
    {
        std::vector<MediaSegment> segments;
        auto& range = stream_.timeRange;
        if (CMTime::zero() < range.start)
            segments.push_back({.target = {CMTime::zero(), range.start}});
        segments.push_back({.source = source_,
                            .stream = static_cast<int>(position_),
                            .sourceStart = range.start,
                            .target = range,
                            .isWholeTrack = !stream_.isTimeRangeBinding});
        return segments;
    }

private:
    const std::shared_ptr<const MediaSource> source_;
    const std::size_t position_;
    const MediaStream& stream_;
};

} // namespace

AVURLAsset::AVURLAsset(URL url, AVURLAssetOptions options)
    : url_(std::move(url))
    , options_(options)
{
}

AVURLAsset::~AVURLAsset() = default;

void AVURLAsset::ensureLoaded() const
{
    std::call_once(loaded_, [this] {
        if (!url_.isFileURL()) {
            loadError_ = NSError(NSCocoaError::fileReadUnsupportedScheme);
            return;
        }
        auto precise =
            options_.AVURLAssetPreferPreciseDurationAndTimingKey ? PreciseTiming::yes : PreciseTiming::no;
        auto source = MediaSource::open(url_.path(), precise);
        if (!source) {
            loadError_ = source.error();
            return;
        }
        source_ = *std::move(source);
        auto self = std::static_pointer_cast<AVAsset>(
            std::const_pointer_cast<NSObject>(std::shared_ptr<const NSObject>(weak_from_this().lock())));
        for (std::size_t stream = 0; stream < source_->streams().size(); ++stream)
            tracks_.push_back(std::make_shared<FileTrack>(self, source_, stream));
    });
}

CMTime AVURLAsset::duration() const
{
    ensureLoaded();
    return source_ ? source_->duration() : CMTime::invalid();
}

std::vector<std::shared_ptr<AVAssetTrack>> AVURLAsset::tracks() const
{
    ensureLoaded();
    return tracks_;
}

std::vector<AVMetadataItem> AVURLAsset::metadata() const
{
    ensureLoaded();
    return source_ ? source_->metadata() : std::vector<AVMetadataItem>{};
}

std::optional<Error> AVURLAsset::loadError() const
{
    ensureLoaded();
    return loadError_;
}

} // namespace platform

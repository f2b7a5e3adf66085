// SPDX-License-Identifier: MIT
#include "kit/data/CachedAsyncImageModel.h"

#include "kit/data/AsyncImageLoadingError.h"
#include "kit/data/CachedAsyncImageLoads_p.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Precondition.h"
#include "platform/network/URLCache.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <mutex>
#include <utility>

namespace zelk {

using namespace platform;

namespace {

// What the first frame has time for, of a picture that comes faster with fewer pixels; all it needs comes a moment later.
constexpr double firstFramePixelCount = 600'000;

// Two at a time: more would only take memory.
DispatchQueue& nextDecodingQueue()
{
    static const std::array queues{DispatchQueue::make("zelk.image-decoding.0"),
                                   DispatchQueue::make("zelk.image-decoding.1")};
    static std::size_t next = 0; // main thread only
    return *queues[next++ % queues.size()];
}

// The platform's default configuration but for the cache. Views with the same cache share it while one of them lives.
std::shared_ptr<URLSession> sessionCaching(const std::shared_ptr<URLCache>& cache)
{
    static std::mutex mutex;
    static std::map<URLCache*, std::weak_ptr<URLSession>> sessions; // guarded by mutex
    std::lock_guard lock(mutex);
    auto& known = sessions[cache.get()];
    auto session = known.lock();
    if (!session) {
        auto configuration = URLSessionConfiguration::defaultSession();
        configuration.urlCache = cache;
        session = URLSession::make(std::move(configuration));
        known = session;
        std::erase_if(sessions, [](const auto& entry) { return entry.second.expired(); });
    }
    return session;
}

int pixels(CGFloat points, double displayScale)
{
    constexpr double most = 1 << 20;
    return static_cast<int>(std::clamp(std::ceil(points * displayScale - 1e-6), 1.0, most));
}

AsyncImagePhase phaseOf(const std::optional<ShownPicture>& picture)
{
    return picture ? picture->phase() : AsyncImagePhase::failure(AsyncImage::LoadingError());
}

PixelSize forFirstFrame(const ShownPicture& shown, const std::optional<PixelSize>& needed)
{
    auto wanted = needed.value_or(shown.picture->fullSize());
    auto count = static_cast<double>(wanted.count());
    if (!shown.picture->isFasterWithFewerPixels() || count <= firstFramePixelCount)
        return wanted;
    auto factor = std::sqrt(firstFramePixelCount / count);
    return {static_cast<int>(wanted.width * factor), static_cast<int>(wanted.height * factor)};
}

} // namespace

CachedAsyncImageSource makeCachedAsyncImageSource(std::optional<URL> url,
                                                  std::optional<URLRequest> urlRequest,
                                                  const std::shared_ptr<URLCache>& urlCache, CGFloat scale,
                                                  const Transaction& transaction)
{
    precondition(!url || !urlRequest, "a cached image loads a URL or a request, not both");
    if (url)
        urlRequest.emplace(*std::move(url));
    return {std::move(urlRequest), sessionCaching(urlCache), scale, transaction};
}

CachedAsyncImageModel::CachedAsyncImageModel(const CachedAsyncImageSource& source)
    : phase_(std::make_shared<StateCell<AsyncImagePhase>>(AsyncImagePhase()))
{
    assertOnMainThread();
    const auto& cache = source.session->configuration().urlCache;
    auto cached = source.request && cache ? cache->cachedResponse(*source.request) : std::nullopt;
    if (!cached)
        return;
    auto& data = cached->sharedData();
    shown_ = rememberedPicture(data, source.scale);
    if (!shown_)
        shown_ = deferredPicture(data, source.scale, std::nullopt);
    phase_->set(phaseOf(shown_));
}

void CachedAsyncImageModel::load(const CachedAsyncImageSource& source, std::stop_token token)
{
    assertOnMainThread();
    if (!source.request)
        return setPhase({}, std::nullopt, source.transaction.animation);
    loadImageData(*source.request, source.session, token,
                  [weakSelf = weak_from_this(), source, token](const ImageLoadOutcome& outcome) {
                      if (auto self = weakSelf.lock())
                          self->handleOutcome(source, outcome, token);
                  });
}

void CachedAsyncImageModel::handleOutcome(const CachedAsyncImageSource& source,
                                          const ImageLoadOutcome& outcome, const std::stop_token& token)
{
    auto animation = source.transaction.animation;
    if (!outcome.data)
        return setPhase(AsyncImagePhase::failure(outcome.data.error()), std::nullopt, animation);
    // What is shown already came from the same bytes, as a rule, when the cache has answered: then nothing changes.
    auto shown = shown_ && shown_->scale == source.scale ? shown_ : std::nullopt;
    nextDecodingQueue().async([weakSelf = weak_from_this(), outcome, shown = std::move(shown),
                               needed = sufficientSize(), scale = source.scale, animation, token] {
        const auto& data = *outcome.data;
        if (token.stop_requested() || (shown && *shown->data == *data))
            return;
        auto picture = decodedPicture(data, scale, needed);
        auto isQuiet = outcome.isFromLocalCache && picture;
        RunLoop::main().perform([weakSelf, picture = std::move(picture),
                                 animation = isQuiet ? std::nullopt : animation, token]() mutable {
            if (auto self = weakSelf.lock(); self && !token.stop_requested())
                self->show(std::move(picture), animation);
        });
    });
}

void CachedAsyncImageModel::setPhase(AsyncImagePhase phase, std::optional<ShownPicture> shown,
                                     const std::optional<Animation>& animation)
{
    ++change_;
    shown_ = std::move(shown);
    auto set = [this, &phase] { phase_->set(std::move(phase)); };
    if (animation)
        withAnimation(animation, set);
    else
        set();
}

void CachedAsyncImageModel::show(std::optional<ShownPicture> picture,
                                 const std::optional<Animation>& animation)
{
    auto phase = phaseOf(picture);
    setPhase(std::move(phase), std::move(picture), animation);
}

void CachedAsyncImageModel::notePlaced(const ProposedSize& offer, CGSize size, double displayScale)
{
    offer_ = offer;
    placedSize_ = size;
    displayScale_ = displayScale;
    refitIfNeeded();
}

// In pixels; none means all of them.
std::optional<PixelSize> CachedAsyncImageModel::sufficientSize() const
{
    if (shown_ && placedSize_) // the picture is there, and the layout knows it
        return PixelSize{pixels(placedSize_->width, displayScale_),
                         pixels(placedSize_->height, displayScale_)};
    auto isKnown = [](const std::optional<CGFloat>& length) { return length && std::isfinite(*length); };
    if (!isKnown(offer_.width) && !isKnown(offer_.height))
        return std::nullopt;
    return PixelSize{isKnown(offer_.width) ? pixels(*offer_.width, displayScale_) : 1,
                     isKnown(offer_.height) ? pixels(*offer_.height, displayScale_) : 1};
}

// Called during layout: changes nothing at once.
void CachedAsyncImageModel::refitIfNeeded()
{
    auto needed = sufficientSize();
    if (!shown_ || (shown_->size && shown_->fits(needed)) || std::exchange(refitting_, change_) == change_)
        return;
    auto isFirst = !shown_->size;
    if (isFirst)
        shown_->picture->setSufficientSize(forFirstFrame(*shown_, needed));
    nextDecodingQueue().async([weakSelf = weak_from_this(), shown = *shown_, needed, isFirst,
                               change = change_]() mutable {
        if (weakSelf.expired())
            return; // it has scrolled by
        auto picture = isFirst ? decoded(std::move(shown)) : decodedPicture(shown.data, shown.scale, needed);
        RunLoop::main().perform([weakSelf, picture = std::move(picture), isFirst, change]() mutable {
            auto self = weakSelf.lock();
            if (!self || self->change_ != change)
                return;
            if (isFirst && picture) {
                self->shown_ = std::move(picture); // as it is on screen
                self->refitting_.reset();
            } else if (isFirst || picture) {
                self->show(std::move(picture), std::nullopt);
            }
            self->refitIfNeeded();
        });
    });
}

void CachedAsyncImageState::connect(ViewNode& node, std::shared_ptr<void>& storage)
{
    if (!storage)
        storage = std::make_shared<CachedAsyncImageModel>(source_);
    model_ = std::static_pointer_cast<CachedAsyncImageModel>(storage);
    node.dependOn(model_->phaseCell());
}

} // namespace zelk

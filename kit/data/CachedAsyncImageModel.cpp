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
#include <span>
#include <utility>

namespace zelk {

using namespace platform;

namespace {

// A picture of more pixels is refused: 256 MB when decoded whole.
constexpr long long maximumPixelCount = 64LL * 1024 * 1024;
// What the first frame has time for: so many pixels as they are, and of a larger picture so many that making fewer of them
// does not take longer than decoding them.
constexpr long long firstFramePixelCount = 600'000;
constexpr double reducedPixelCount = 100'000;
// A picture is decoded again when it is shown larger than this, compared with what it was decoded for,
constexpr double toleratedMagnification = 1.25;
// or when it has so many times the pixels that it needs.
constexpr long long toleratedWaste = 6;

std::span<const std::byte> bytes(const std::string& data)
{
    return std::as_bytes(std::span(data.data(), data.size()));
}

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
{
    assertOnMainThread();
    const auto& cache = source.session->configuration().urlCache;
    auto cached = source.request && cache ? cache->cachedResponse(*source.request) : std::nullopt;
    Decoded first;
    if (cached)
        first = decodeForFirstFrame(cached->sharedData(), source.scale);
    phase_ = std::make_shared<StateCell<AsyncImagePhase>>(std::move(first.phase));
    shown_ = std::move(first.shown);
}

CachedAsyncImageModel::Decoded CachedAsyncImageModel::decode(const std::shared_ptr<const std::string>& data,
                                                             CGFloat scale,
                                                             std::optional<PixelSize> sufficientSize)
{
    auto decoded = decodeImage(
        bytes(*data),
        {.scale = scale, .sufficientSize = sufficientSize, .maximumPixelCount = maximumPixelCount});
    if (!decoded)
        return {AsyncImagePhase::failure(AsyncImage::LoadingError()), std::nullopt};
    PixelSize size{decoded->image.pixelWidth(), decoded->image.pixelHeight()};
    return {AsyncImagePhase::success({.image = std::move(decoded->image)}),
            Shown{data, scale, decoded->fullSize, size}};
}

// Nothing is known of the layout yet: a large picture comes with fewer pixels, and all it needs a moment later.
CachedAsyncImageModel::Decoded
CachedAsyncImageModel::decodeForFirstFrame(const std::shared_ptr<const std::string>& data, CGFloat scale)
{
    auto full = imagePixelSize(bytes(*data));
    if (!full || full->count() <= firstFramePixelCount)
        return decode(data, scale, std::nullopt);
    auto factor = std::sqrt(reducedPixelCount / static_cast<double>(full->count()));
    return decode(data, scale,
                  PixelSize{static_cast<int>(full->width * factor), static_cast<int>(full->height * factor)});
}

void CachedAsyncImageModel::load(const CachedAsyncImageSource& source, std::stop_token token)
{
    assertOnMainThread();
    if (!source.request)
        return setPhase({}, source.transaction.animation);
    loadImageData(*source.request, source.session, token,
                  [weakSelf = weak_from_this(), source, token](const ImageLoadOutcome& outcome) {
                      if (auto self = weakSelf.lock())
                          self->handleOutcome(source, outcome, token);
                  });
}

void CachedAsyncImageModel::handleOutcome(const CachedAsyncImageSource& source,
                                          const ImageLoadOutcome& outcome, const std::stop_token& token)
{
    if (!outcome.data)
        return setPhase({AsyncImagePhase::failure(outcome.data.error()), std::nullopt},
                        source.transaction.animation);
    auto animation = outcome.isFromLocalCache ? std::nullopt : source.transaction.animation;
    // What is shown already came from the same bytes, as a rule, when the cache has answered: then nothing changes.
    auto shown = shown_ && shown_->scale == source.scale && fits(sufficientSize()) ? shown_ : std::nullopt;
    nextDecodingQueue().async([weakSelf = weak_from_this(), data = *outcome.data, shown = std::move(shown),
                               needed = sufficientSize(), scale = source.scale, animation, token] {
        if (token.stop_requested() || (shown && *shown->data == *data))
            return;
        RunLoop::main().perform(
            [weakSelf, decoded = decode(data, scale, needed), animation, token]() mutable {
                if (auto self = weakSelf.lock(); self && !token.stop_requested())
                    self->setPhase(std::move(decoded), animation);
            });
    });
}

void CachedAsyncImageModel::setPhase(Decoded decoded, const std::optional<Animation>& animation)
{
    ++change_;
    shown_ = std::move(decoded.shown);
    auto set = [this, phase = std::move(decoded.phase)]() mutable { phase_->set(std::move(phase)); };
    if (animation)
        withAnimation(animation, set);
    else
        set();
}

void CachedAsyncImageModel::notePlaced(const ProposedSize& offer, CGSize size, double displayScale)
{
    offer_ = offer;
    placedSize_ = size;
    displayScale_ = displayScale;
    if (shown_ && !fits(sufficientSize()))
        refit();
}

// In pixels; none means all of them.
std::optional<PixelSize> CachedAsyncImageModel::sufficientSize() const
{
    if (shown_) // the picture is there, and the layout knows it
        return PixelSize{pixels(placedSize_.width, displayScale_), pixels(placedSize_.height, displayScale_)};
    auto isKnown = [](const std::optional<CGFloat>& length) { return length && std::isfinite(*length); };
    if (!isKnown(offer_.width) && !isKnown(offer_.height))
        return std::nullopt;
    return PixelSize{isKnown(offer_.width) ? pixels(*offer_.width, displayScale_) : 1,
                     isKnown(offer_.height) ? pixels(*offer_.height, displayScale_) : 1};
}

// Whether what is shown has the pixels that are needed, and not many more. Requires: a picture is shown.
bool CachedAsyncImageModel::fits(const std::optional<PixelSize>& needed) const
{
    auto suffices = [](int has, int full, int wanted) {
        return has >= full || wanted <= has * toleratedMagnification;
    };
    auto wanted = needed.value_or(shown_->fullSize);
    // Of what covers the place on both axes.
    auto factor = std::max(static_cast<double>(wanted.width) / shown_->fullSize.width,
                           static_cast<double>(wanted.height) / shown_->fullSize.height);
    auto enough = factor * factor * static_cast<double>(shown_->fullSize.count());
    return suffices(shown_->size.width, shown_->fullSize.width, wanted.width)
        && suffices(shown_->size.height, shown_->fullSize.height, wanted.height)
        && static_cast<double>(shown_->size.count()) <= toleratedWaste * std::max(enough, 1.0);
}

// Called during layout: changes nothing at once.
void CachedAsyncImageModel::refit()
{
    if (std::exchange(isRefitting_, true))
        return;
    nextDecodingQueue().async(
        [weakSelf = weak_from_this(), shown = *shown_, needed = sufficientSize(), change = change_] {
            RunLoop::main().perform(
                [weakSelf, decoded = decode(shown.data, shown.scale, needed), change]() mutable {
                    auto self = weakSelf.lock();
                    if (!self)
                        return;
                    self->isRefitting_ = false;
                    if (self->change_ == change && decoded.shown)
                        self->setPhase(std::move(decoded), std::nullopt);
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

// SPDX-License-Identifier: MIT
#include "kit/data/ShownPicture.h"

#include "kit/data/Cache.h"

#include <algorithm>
#include <utility>

namespace zelk {

using namespace platform;

namespace {

// A picture of more pixels is refused: 256 MB when decoded whole.
constexpr long long maximumPixelCount = 64LL * 1024 * 1024;
constexpr long rememberedBytes = 16L * 1024 * 1024;
// A picture is decoded again when it is shown larger than this, compared with what it was decoded for,
constexpr double toleratedMagnification = 1.25;
// or when it has so many times the pixels that it needs.
constexpr double toleratedWaste = 6;

// By the address of the data, which is nobody else's while it is remembered.
Cache<const std::string*, ShownPicture>& remembered()
{
    static auto& cache = *[] {
        auto* made = new Cache<const std::string*, ShownPicture>; // threads may decode when statics go
        made->setTotalCostLimit(rememberedBytes);
        return made;
    }();
    return cache;
}

} // namespace

AsyncImagePhase ShownPicture::phase() const
{
    return AsyncImagePhase::success({.image = picture->image()});
}

bool ShownPicture::fits(const std::optional<PixelSize>& needed) const
{
    if (needed && needed == decodedFor)
        return true;
    auto full = picture->fullSize();
    auto suffices = [](int has, int whole, int wanted) {
        return has >= whole || wanted <= has * toleratedMagnification;
    };
    auto wanted = needed.value_or(full);
    // Of what covers the place on both axes.
    auto factor = std::max(static_cast<double>(wanted.width) / full.width,
                           static_cast<double>(wanted.height) / full.height);
    auto enough = factor * factor * static_cast<double>(full.count());
    return suffices(size->width, full.width, wanted.width)
        && suffices(size->height, full.height, wanted.height)
        && static_cast<double>(size->count()) <= toleratedWaste * std::max(enough, 1.0);
}

std::optional<ShownPicture> rememberedPicture(const std::shared_ptr<const std::string>& data, CGFloat scale)
{
    auto known = remembered().value(data.get());
    return known && known->scale == scale ? known : std::nullopt;
}

std::optional<ShownPicture> deferredPicture(const std::shared_ptr<const std::string>& data, CGFloat scale,
                                            const std::optional<PixelSize>& needed)
{
    auto picture = DeferredImage::make(
        data, {.scale = scale, .sufficientSize = needed, .maximumPixelCount = maximumPixelCount});
    if (!picture)
        return std::nullopt;
    return ShownPicture{data, scale, *std::move(picture), std::nullopt, std::nullopt};
}

std::optional<ShownPicture> decoded(ShownPicture picture)
{
    picture.size = picture.picture->decode();
    if (!picture.size)
        return std::nullopt;
    auto cost = static_cast<long>(picture.data->size()) + 4 * static_cast<long>(picture.size->count());
    remembered().setValue(picture, picture.data.get(), cost);
    return picture;
}

std::optional<ShownPicture> decodedPicture(const std::shared_ptr<const std::string>& data, CGFloat scale,
                                           const std::optional<PixelSize>& needed)
{
    if (auto known = rememberedPicture(data, scale); known && known->fits(needed))
        return known;
    auto picture = deferredPicture(data, scale, needed);
    if (!picture)
        return std::nullopt;
    picture->decodedFor = needed;
    return decoded(*std::move(picture));
}

} // namespace zelk

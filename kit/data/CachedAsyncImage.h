// SPDX-License-Identifier: MIT
#pragma once

#include "kit/data/CachedAsyncImageModel.h"
#include "kit/data/CachedAsyncImageNode.h"
#include "platform/network/URLCache.h"
#include "platform/swiftui/AsyncImagePhase.h"
#include "platform/swiftui/Closure.h"
#include "platform/swiftui/ConditionalContent.h"
#include "platform/swiftui/Image.h"
#include "platform/swiftui/Transaction.h"
#include "platform/swiftui/View.h"
#include "platform/swiftui/task.h"

#include <concepts>
#include <memory>
#include <optional>
#include <tuple>
#include <type_traits>
#include <utility>

namespace zelk {

// What a CachedAsyncImage is made with. Either a URL, which is asked for with the platform's default settings, or a request;
// neither gives the empty phase.
struct CachedAsyncImageOptions {
    std::optional<platform::URL> url = std::nullopt;
    std::optional<platform::URLRequest> urlRequest = std::nullopt;
    // Null: nothing is kept.
    std::shared_ptr<platform::URLCache> urlCache = platform::URLCache::shared();
    platform::CGFloat scale = 1; // pixels of the data per point
    // With which the phase changes, where it changes visibly late. Of the form with phases only.
    platform::Transaction transaction = {};
};

namespace detail {

struct ImageItself {
    platform::Image operator()(const platform::AsyncImagePhase& phase) const
    {
        return phase.image() ? *phase.image() : platform::Image{};
    }
};

template <class MakeContent, class MakePlaceholder>
struct ImageOrPlaceholder {
    platform::Closure<MakeContent> makeContent;
    platform::Closure<MakePlaceholder> makePlaceholder;

    auto operator()(const platform::AsyncImagePhase& phase) const
    {
        return platform::when(
            phase.image() != nullptr, [&] { return makeContent(*phase.image()); },
            [&] { return makePlaceholder(); });
    }
};

} // namespace detail

template <class MakeContent>
concept MakesViewOfPhase = std::invocable<const MakeContent&, const platform::AsyncImagePhase&>
    && platform::View<std::invoke_result_t<const MakeContent&, const platform::AsyncImagePhase&>>;

// A picture from the network that is shown at once, without a loading phase, when the cache has it; what is loaded is there
// for the next view. Three forms:
//
//     CachedAsyncImage{{.url = url}}                                                 the picture, or nothing
//     CachedAsyncImage{{.url = url}, [](Image image) { ... }, [] { ... }}            or a placeholder
//     CachedAsyncImage{{.url = url}, [](const AsyncImagePhase& phase) { ... }}       all phases
//
// It loads when it appears and anew when the request changes, and stops when it leaves the screen. Phases after the first
// frame come in the transaction's animation, except where the cache has answered. Views that want the same at the same time
// load it once. Failures (those of the session, AsyncImage::LoadingError) are in the phase only. Main thread only.
//
// Pictures are decoded with as many pixels as the view shows, off the main thread; painting waits for one that the cache has
// had from the first frame on. That is softer for a moment where a JPEG is shown large, and the failure of one that is
// damaged within can come after that frame. What was decoded last is kept for the views to come, up to 16 MB.
template <MakesViewOfPhase MakeContent>
class CachedAsyncImage {
public:
    explicit CachedAsyncImage(CachedAsyncImageOptions options)
        requires std::same_as<MakeContent, detail::ImageItself>
        : CachedAsyncImage(std::move(options), detail::ImageItself())
    {
    }
    template <class MakeImageContent, class MakePlaceholder>
    CachedAsyncImage(CachedAsyncImageOptions options, MakeImageContent content, MakePlaceholder placeholder)
        : CachedAsyncImage(std::move(options), MakeContent{std::move(content), std::move(placeholder)})
    {
    }
    CachedAsyncImage(CachedAsyncImageOptions options, MakeContent content)
        : content_(std::move(content))
        , state_(makeCachedAsyncImageSource(std::move(options.url), std::move(options.urlRequest),
                                            options.urlCache, options.scale, options.transaction))
    {
    }

    auto dynamicProperties() { return std::tie(state_); }
    auto body() const
    {
        const auto& model = state_.model();
        return content_(model->phase()) | CachedAsyncImageModifier{model}
        | platform::task(state_.source().request, [model, source = state_.source()](std::stop_token token) {
                   model->load(source, std::move(token));
               });
    }

private:
    platform::Closure<MakeContent> content_;
    CachedAsyncImageState state_;
};

CachedAsyncImage(CachedAsyncImageOptions) -> CachedAsyncImage<detail::ImageItself>;
template <class MakeContent>
CachedAsyncImage(CachedAsyncImageOptions, MakeContent) -> CachedAsyncImage<MakeContent>;
template <class MakeContent, class MakePlaceholder>
CachedAsyncImage(CachedAsyncImageOptions, MakeContent, MakePlaceholder)
    -> CachedAsyncImage<detail::ImageOrPlaceholder<MakeContent, MakePlaceholder>>;

} // namespace zelk

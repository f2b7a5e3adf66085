// SPDX-License-Identifier: MIT
#pragma once

#include "kit/data/ShownPicture.h"

#include "platform/network/URLSession.h"
#include "platform/swiftui/AsyncImagePhase.h"
#include "platform/swiftui/ProposedSize.h"
#include "platform/swiftui/StateCell.h"
#include "platform/swiftui/Transaction.h"
#include "platform/swiftui/ViewNode.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace zelk {

struct ImageLoadOutcome;

// What a cached remote image loads, and how.
struct CachedAsyncImageSource {
    std::optional<platform::URLRequest> request;
    // Views with the same cache have the same one, and so its connections.
    std::shared_ptr<platform::URLSession> session;
    platform::CGFloat scale = 1;
    platform::Transaction transaction;
};

// Requires: no more than one of `url` and `urlRequest`.
CachedAsyncImageSource makeCachedAsyncImageSource(std::optional<platform::URL> url,
                                                  std::optional<platform::URLRequest> urlRequest,
                                                  const std::shared_ptr<platform::URLCache>& urlCache,
                                                  platform::CGFloat scale,
                                                  const platform::Transaction& transaction);

// The life of one mounted cached remote image: its phase, and how large it is shown. Owned by the place of the view.
// Main thread only.
class CachedAsyncImageModel : public std::enable_shared_from_this<CachedAsyncImageModel> {
public:
    // Looks into the cache for the first phase.
    explicit CachedAsyncImageModel(const CachedAsyncImageSource& source);

    const platform::AsyncImagePhase& phase() const { return phase_->value(); }
    const std::shared_ptr<platform::StateCell<platform::AsyncImagePhase>>& phaseCell() const
    {
        return phase_;
    }

    // Loads and changes the phase, unless `token` is stopped first; stopping it abandons the load.
    void load(const CachedAsyncImageSource& source, std::stop_token token);

    // What the layout says, in points: how much room the content was offered, and how much it took. A picture that turns
    // out to have too few pixels for its place, or far too many, is decoded again.
    void notePlaced(const platform::ProposedSize& offer, platform::CGSize size, double displayScale);

private:
    void handleOutcome(const CachedAsyncImageSource& source, const ImageLoadOutcome& outcome,
                       const std::stop_token& token);
    void setPhase(platform::AsyncImagePhase phase, std::optional<ShownPicture> shown,
                  const std::optional<platform::Animation>& animation);
    // Nothing: it is damaged.
    void show(std::optional<ShownPicture> picture, const std::optional<platform::Animation>& animation);
    std::optional<platform::PixelSize> sufficientSize() const;
    void refitIfNeeded();

    std::shared_ptr<platform::StateCell<platform::AsyncImagePhase>> phase_;
    std::optional<ShownPicture> shown_; // none: the phase has no picture
    platform::ProposedSize offer_;
    std::optional<platform::CGSize> placedSize_; // none: it never was, as among the views of a list of them
    double displayScale_ = 1;
    std::uint64_t change_ = 0;               // of the phase; what was begun before the last one is forgotten
    std::optional<std::uint64_t> refitting_; // the change that is being decoded for its place
};

// The state of the view: its model, made when the view is mounted. A dynamic property.
class CachedAsyncImageState {
public:
    explicit CachedAsyncImageState(CachedAsyncImageSource source)
        : source_(std::move(source))
    {
    }

    const CachedAsyncImageSource& source() const { return source_; }
    // Requires: the view is mounted.
    const std::shared_ptr<CachedAsyncImageModel>& model() const { return model_; }
    void connect(platform::ViewNode& node, std::shared_ptr<void>& storage);

private:
    CachedAsyncImageSource source_;
    std::shared_ptr<CachedAsyncImageModel> model_;
};

} // namespace zelk

// SPDX-License-Identifier: MIT
#include "platform/services/ThumbnailLoader.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"

#include <algorithm>
#include <array>
#include <utility>

namespace platform {

namespace {

constexpr std::size_t mostKept = 300, mostPixelsKept = 20'000'000;
constexpr std::size_t threads = 2;

} // namespace

// Waiting media, the newest last. Each piece of work on a thread takes the one that is newest by then.
struct ThumbnailLoader::Queue : std::enable_shared_from_this<ThumbnailLoader::Queue> {
    struct Wish {
        LibraryFile file;
        ThumbnailSize size;
    };
    const std::array<std::shared_ptr<DispatchQueue>, threads> queues{
        DispatchQueue::make("org.zelk.platform.thumbnails.first"),
        DispatchQueue::make("org.zelk.platform.thumbnails.second")};
    std::mutex mutex;
    std::vector<Wish> waiting; // guarded by mutex
    std::size_t next = 0;      // main thread only

    void remove(const LibraryFile& file)
    {
        std::lock_guard lock(mutex);
        std::erase_if(waiting, [&](const Wish& wish) { return wish.file == file; });
    }
    void add(Wish wish, const std::weak_ptr<ThumbnailLoader>& loader)
    {
        {
            std::lock_guard lock(mutex);
            waiting.push_back(std::move(wish));
        }
        queues[next++ % threads]->async([self = shared_from_this(), loader] { self->work(loader); });
    }
    void work(const std::weak_ptr<ThumbnailLoader>& loader)
    {
        std::optional<Wish> wish;
        {
            std::lock_guard lock(mutex);
            if (waiting.empty())
                return;
            wish = std::move(waiting.back());
            waiting.pop_back();
        }
        auto thumbnail = makeThumbnail(wish->file, wish->size);
        DispatchQueue::main()->async(
            [loader, file = std::move(wish->file), thumbnail = std::move(thumbnail)] {
                if (auto present = loader.lock())
                    present->finish(file, thumbnail);
            });
    }
};

std::shared_ptr<ThumbnailLoader> ThumbnailLoader::make()
{
    return std::shared_ptr<ThumbnailLoader>(new ThumbnailLoader);
}

ThumbnailLoader::ThumbnailLoader()
    : queue_(std::make_shared<Queue>())
{
}

ThumbnailLoader::~ThumbnailLoader()
{
    std::lock_guard lock(queue_->mutex);
    queue_->waiting.clear();
}

void ThumbnailLoader::setSize(ThumbnailSize size)
{
    assertOnMainThread();
    size_ = size;
}

std::optional<Thumbnail> ThumbnailLoader::cached(const LibraryFile& file)
{
    auto place = places_.find(file.path);
    if (place == places_.end() || place->second->first != file)
        return std::nullopt;
    recent_.splice(recent_.begin(), recent_, place->second);
    return recent_.front().second;
}

void ThumbnailLoader::load(const LibraryFile& file, Handler handler)
{
    assertOnMainThread();
    if (!wanted_.insert_or_assign(file.path, std::move(handler)).second)
        queue_->remove(file); // it moves to the front
    queue_->add({file, size_}, weak_from_this());
}

void ThumbnailLoader::cancel(const LibraryFile& file)
{
    assertOnMainThread();
    if (wanted_.erase(file.path) > 0)
        queue_->remove(file);
}

void ThumbnailLoader::finish(const LibraryFile& file, const Thumbnail& thumbnail)
{
    bool isOfSize = thumbnail.size == size_;
    if (auto former = places_.find(file.path); former != places_.end()) {
        auto& [knownFile, known] = *former->second;
        if (!isOfSize && knownFile == file && known.size == size_)
            return; // the later one was faster
        recent_.erase(former->second);
    }
    recent_.emplace_front(file, thumbnail);
    places_[file.path] = recent_.begin();
    auto pixels = std::max(static_cast<std::size_t>(size_.side) * static_cast<std::size_t>(size_.side), 1UL);
    while (recent_.size() > std::min(mostKept, mostPixelsKept / pixels)) {
        places_.erase(recent_.back().first.path);
        recent_.pop_back();
    }
    auto wanted = wanted_.find(file.path);
    if (wanted == wanted_.end())
        return;
    auto handler = isOfSize ? std::move(wanted_.extract(wanted).mapped()) : wanted->second;
    handler(thumbnail);
}

} // namespace platform

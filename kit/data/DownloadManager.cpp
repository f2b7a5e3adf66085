// SPDX-License-Identifier: MIT
#include "kit/data/DownloadManager.h"

#include "kit/foundation/applicationIdentifierPrefix.h"
#include "kit/foundation/kitLogger.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/Precondition.h"
#include "platform/network/DownloadedFile.h"
#include "platform/network/HTTPURLResponse.h"

#include <cstdio>
#include <filesystem>
#include <map>
#include <utility>

namespace zelk {

using namespace platform;

namespace {

// Process-wide, and filled from any thread.
struct Handlers {
    std::mutex mutex;
    // guarded by mutex
    std::map<std::string, DownloadManager::Handler> ofSession;
    DownloadManager::Handler backgroundCompletion;
};
Handlers& handlers()
{
    static auto& instance = *new Handlers; // sessions may end while the process does
    return instance;
}

// Twice what a session has: of many small files each waits for an answer of its own.
constexpr int connectionsPerHost = 12;

std::string fixed(float value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%f", static_cast<double>(value));
    return text;
}

// Whether `error` says that a file is at `place`. A directory is no file to be replaced.
bool meansFile(const Error& error, const URL& place)
{
    std::error_code unknown;
    return error == Error(NSError(NSCocoaError::fileWriteFileExists))
        && !std::filesystem::is_directory(place.path(), unknown);
}

} // namespace

DownloadManagerDelegate::~DownloadManagerDelegate() = default;

std::shared_ptr<DownloadManager> DownloadManager::make(DownloadManagerConfig configuration)
{
    std::shared_ptr<DownloadManager> result(new DownloadManager(configuration));
    result->start(result);
    return result;
}

DownloadManager::DownloadManager(DownloadManagerConfig configuration)
    : configuration_(configuration)
    , clientQueue_(DispatchQueue::make(applicationIdentifierPrefix() + ".download-manager.client-queue",
                                       DispatchQueue::Initially::suspended))
{
}

void DownloadManager::start(const std::shared_ptr<DownloadManager>& self)
{
    auto configuration = URLSessionConfiguration::defaultSession();
    configuration.isDiscretionary = configuration_.isDiscretionary;
    configuration.allowsCellularAccess = configuration_.allowsCellularAccess;
    configuration.httpMaximumConnectionsPerHost = connectionsPerHost;
    session_ = URLSession::make(std::move(configuration), self);
    // The queue is held, as one that was let go while suspended would lose its work.
    session_->getAllTasks([weak = std::weak_ptr(self), queue = clientQueue_](const URLSession::Tasks& tasks) {
        if (auto manager = weak.lock()) {
            // Nothing else has run on the queue: it is suspended.
            for (auto& task : tasks) {
                auto download = std::dynamic_pointer_cast<URLSessionDownloadTask>(task);
                if (download && download->originalRequest())
                    manager->ongoingTasks_.insert_or_assign(download->originalRequest()->url, download);
            }
        }
        queue->resume();
    });
}

DownloadManager::~DownloadManager()
{
    session_->invalidateAndCancel();
}

std::shared_ptr<DownloadManagerDelegate> DownloadManager::delegate() const
{
    std::lock_guard lock(delegateMutex_);
    return delegate_.lock();
}

void DownloadManager::setDelegate(std::weak_ptr<DownloadManagerDelegate> delegate)
{
    std::lock_guard lock(delegateMutex_);
    delegate_ = std::move(delegate);
}

void DownloadManager::addDownload(const URL& url, const URL&)
{
    clientQueue_->async([weak = weakSelf(), url] {
        if (auto self = weak.lock())
            self->add(url);
    });
}

void DownloadManager::add(const URL& url)
{
    if (ongoingTasks_.contains(url)) {
        kitLogger().debug([&] { return url.lastPathComponent() + " Already in progress"; });
        return;
    }
    auto task = session_->downloadTask(URLRequest(url));
    ongoingTasks_.emplace(url, task);
    task->resume();
    kitLogger().debug([&] { return "Added " + url.lastPathComponent() + " to download queue"; });
}

void DownloadManager::cancelDownload(const URL& url)
{
    clientQueue_->async([weak = weakSelf(), url] {
        auto self = weak.lock();
        auto taken = self ? self->ongoingTasks_.extract(url) : decltype(self->ongoingTasks_)::node_type();
        if (taken)
            taken.mapped()->cancel();
    });
}

void DownloadManager::cancelAllDownloads()
{
    clientQueue_->async([weak = weakSelf()] {
        auto self = weak.lock();
        if (!self)
            return;
        for (auto& [url, task] : self->ongoingTasks_)
            task->cancel();
        self->ongoingTasks_.clear();
    });
}

std::string DownloadManager::backgroundSessionIdentifier()
{
    auto identifier = Bundle::main()->bundleIdentifier();
    precondition(identifier.has_value(),
                 "the main bundle has no identifier to name a background session with");
    return *identifier + ".download-manager";
}

void DownloadManager::registerHandler(Handler handler, const std::string& identifier)
{
    std::lock_guard lock(handlers().mutex);
    handlers().ofSession.insert_or_assign(identifier, std::move(handler));
}

DownloadManager::Handler DownloadManager::backgroundDownloadCompletionHandler()
{
    std::lock_guard lock(handlers().mutex);
    return handlers().backgroundCompletion;
}

void DownloadManager::setBackgroundDownloadCompletionHandler(Handler handler)
{
    std::lock_guard lock(handlers().mutex);
    handlers().backgroundCompletion = std::move(handler);
}

void DownloadManager::fail(const URL& url, const Error& error)
{
    if (auto listener = delegate())
        listener->downloadManagerDidFail(url, error);
}

void DownloadManager::urlSessionDownloadTaskDidWriteData(URLSession&,
                                                         const std::shared_ptr<URLSessionDownloadTask>& task,
                                                         std::int64_t, std::int64_t totalBytesWritten,
                                                         std::int64_t totalBytesExpectedToWrite)
{
    if (totalBytesExpectedToWrite < 1) {
        std::fputs("Could not calculate progress as totalBytesExpectedToWrite is 0\n", stderr);
        return;
    }
    if (!task->originalRequest())
        return;
    auto& url = task->originalRequest()->url;
    auto progress = static_cast<float>(totalBytesWritten) / static_cast<float>(totalBytesExpectedToWrite);
    kitLogger().debug([&] { return url.lastPathComponent() + " progress: " + fixed(progress); });
    if (auto listener = delegate())
        listener->downloadManagerDidUpdateProgress(url, progress);
}

void DownloadManager::urlSessionDownloadTaskDidReceiveFile(
    URLSession&, const std::shared_ptr<URLSessionDownloadTask>& task, DownloadedFile& file)
{
    // The file is gone when this returns.
    clientQueue_->sync([&] { handleFile(*task, file); });
}

void DownloadManager::handleFile(URLSessionTask& task, DownloadedFile& file)
{
    if (!task.originalRequest())
        return;
    auto& url = task.originalRequest()->url;
    auto response = std::dynamic_pointer_cast<const HTTPURLResponse>(task.response());
    if (response && response->statusCode() >= 400) {
        auto text = HTTPURLResponse::localizedStringForStatusCode(response->statusCode());
        return fail(url,
                    NSError(HttpErrorDomain, response->statusCode(),
                            {{std::string(NSLocalizedDescriptionKey), std::move(text)}}));
    }
    auto listener = delegate();
    if (auto destination = listener ? listener->destinationURL(url) : std::nullopt)
        place(file, url, *destination);
}

void DownloadManager::place(DownloadedFile& file, const URL& url, const URL& destination)
{
    auto moved = file.moveTo(destination);
    if (!moved && meansFile(moved.error(), destination)) {
        // The old one goes when the new one is there, and not before.
        auto location = file.location();
        if (!location)
            return; // the task ends with that error
        moved = FileManager::defaultManager().replaceItem(destination, *location);
    }
    if (!moved) {
        kitLogger().error("Download complete but unable to be moved: " + url.lastPathComponent()
                          + ", error: " + moved.error().localizedDescription());
        return fail(url, moved.error());
    }
    kitLogger().debug([&] { return "Download complete: " + url.lastPathComponent(); });
    if (auto hearer = delegate())
        hearer->downloadManagerDidFinish(url, destination);
}

void DownloadManager::urlSessionTaskDidComplete(URLSession&, const std::shared_ptr<URLSessionTask>& task,
                                                const std::optional<Error>& error)
{
    if (!task->originalRequest())
        return;
    // Waited for: it is short, and to wake another thread for it takes longer.
    clientQueue_->sync([&] {
        auto& url = task->originalRequest()->url;
        // One that was cancelled may have a successor already.
        if (auto found = ongoingTasks_.find(url); found != ongoingTasks_.end() && found->second == task)
            ongoingTasks_.erase(found);
        if (error)
            fail(url, *error);
        kitLogger().debug([&] { return "Did complete: " + url.lastPathComponent(); });
    });
}

void DownloadManager::urlSessionDidFinishEventsForBackgroundURLSession(URLSession& session)
{
    DispatchQueue::main()->async([identifier = session.configuration().identifier] {
        kitLogger().debug("All background download tasks are complete for session: "
                          + identifier.value_or("<null>"));
        if (!identifier)
            return;
        Handler handler;
        {
            std::lock_guard lock(handlers().mutex);
            auto found = handlers().ofSession.find(*identifier);
            if (found != handlers().ofSession.end())
                handler = found->second;
        }
        if (handler)
            handler();
    });
}

} // namespace zelk

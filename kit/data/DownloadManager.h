// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/URL.h"
#include "platform/network/URLSession.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace zelk {

struct DownloadManagerConfig {
    // Over metered connections.
    bool allowsCellularAccess = false;
    // The system may choose the moment.
    bool isDiscretionary = true;

    bool operator==(const DownloadManagerConfig&) const = default;
};

// Hears of downloads by the URL they were asked for with. Progress is told on the session's delegate thread, the rest on the
// manager's own queue: neither is the main thread.
class DownloadManagerDelegate {
public:
    virtual ~DownloadManagerDelegate();

    // Where the finished file must be put, in place of what is there; nothing: it is not kept, and no more is said of it.
    virtual std::optional<platform::URL> destinationURL(const platform::URL& url) = 0;
    // A transport error, unchanged; an HTTP status of 400 and above, as its code in the domain "HttpError"; or why the file
    // could not be moved. A download that was cancelled fails too, with an error that isURLCancelled() knows.
    virtual void downloadManagerDidFail(const platform::URL& url, const platform::Error& error) = 0;
    virtual void downloadManagerDidFinish(const platform::URL& url, const platform::URL& destination) = 0;
    // From 0 to 1; not called while the size is unknown.
    virtual void downloadManagerDidUpdateProgress(const platform::URL& url, float progress) = 0;
};

inline constexpr std::string_view HttpErrorDomain = "HttpError";

// Downloads files through one URL session, one task a URL at a time. Operations wait until the session has listed the tasks
// that it has already. A manager that is let go cancels its downloads. Any thread.
class DownloadManager final : public platform::URLSessionDownloadDelegate,
                              public std::enable_shared_from_this<DownloadManager> {
public:
    using Handler = std::function<void()>;

    static std::shared_ptr<DownloadManager> make(DownloadManagerConfig configuration = {});
    ~DownloadManager() override;
    DownloadManager(const DownloadManager&) = delete; // the session holds its address
    DownloadManager& operator=(const DownloadManager&) = delete;

    const DownloadManagerConfig& configuration() const { return configuration_; }
    // Held weakly and loaded afresh for each call.
    std::shared_ptr<DownloadManagerDelegate> delegate() const;
    void setDelegate(std::weak_ptr<DownloadManagerDelegate> delegate);

    // Queues the download; does nothing while one of this URL is in progress. `destinationURL` is not used: the delegate is
    // asked when the file has arrived.
    void addDownload(const platform::URL& url, const platform::URL& destinationURL);
    // URLs that are not in progress are ignored.
    void cancelDownload(const platform::URL& url);
    void cancelAllDownloads();

    // The main bundle's identifier and ".download-manager". Requires: it has one.
    static std::string backgroundSessionIdentifier();
    // Called on the main queue when a session of `identifier` has told all its background events. Replaces an earlier one.
    static void registerHandler(Handler handler, const std::string& identifier);
    // Where the application parks what is to be called when background events have been handled; absent at first.
    static Handler backgroundDownloadCompletionHandler();
    static void setBackgroundDownloadCompletionHandler(Handler handler);

private:
    explicit DownloadManager(DownloadManagerConfig configuration);
    void start(const std::shared_ptr<DownloadManager>& self);
    std::weak_ptr<DownloadManager> weakSelf() { return weak_from_this(); }
    void add(const platform::URL& url);
    void handleFile(platform::URLSessionTask& task, platform::DownloadedFile& file);
    void place(platform::DownloadedFile& file, const platform::URL& url, const platform::URL& destination);
    void fail(const platform::URL& url, const platform::Error& error);

    void urlSessionDownloadTaskDidWriteData(platform::URLSession& session,
                                            const std::shared_ptr<platform::URLSessionDownloadTask>& task,
                                            std::int64_t bytesWritten, std::int64_t totalBytesWritten,
                                            std::int64_t totalBytesExpectedToWrite) override;
    void urlSessionDownloadTaskDidReceiveFile(platform::URLSession& session,
                                              const std::shared_ptr<platform::URLSessionDownloadTask>& task,
                                              platform::DownloadedFile& file) override;
    void urlSessionTaskDidComplete(platform::URLSession& session,
                                   const std::shared_ptr<platform::URLSessionTask>& task,
                                   const std::optional<platform::Error>& error) override;
    void urlSessionDidFinishEventsForBackgroundURLSession(platform::URLSession& session) override;

    // fixed after construction
    const DownloadManagerConfig configuration_;
    const std::shared_ptr<platform::DispatchQueue> clientQueue_;
    std::shared_ptr<platform::URLSession> session_;

    mutable std::mutex delegateMutex_;
    std::weak_ptr<DownloadManagerDelegate> delegate_; // guarded by delegateMutex_
    // client queue only
    std::unordered_map<platform::URL, std::shared_ptr<platform::URLSessionDownloadTask>> ongoingTasks_;
};

} // namespace zelk

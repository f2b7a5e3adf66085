// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "platform/network/URLRequest.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class DownloadedFile;
class HTTPURLResponse;
class URLResponse;
class URLSession;
class URLSessionDataTask;
class URLSessionDownloadTask;
class URLSessionTask;
struct URLSessionTaskMetrics;

// What a session tells whoever made it, on its delegate queue, one call at a time. A class that wants several of these
// protocols derives from each. The session holds its delegate weakly.
class URLSessionDelegate {
public:
    virtual ~URLSessionDelegate();

    // The last call of a session that was made invalid.
    virtual void urlSessionDidBecomeInvalid(URLSession& session, const std::optional<Error>& error);
    // All calls about what happened while the program did not run have been made. Background sessions only.
    virtual void urlSessionDidFinishEventsForBackgroundURLSession(URLSession& session);
};

// What befalls any task, in the order of these members.
class URLSessionTaskDelegate : public virtual URLSessionDelegate {
public:
    // The answer `response` leads on to `newRequest`. Calls back once, on any thread, with the request to make instead, or
    // with nothing: then `response` and its body are what the task loads. Not called in background sessions.
    // Default: goes on.
    virtual void
    urlSessionTaskWillPerformHTTPRedirection(URLSession& session, const std::shared_ptr<URLSessionTask>& task,
                                             const std::shared_ptr<const HTTPURLResponse>& response,
                                             const URLRequest& newRequest,
                                             std::function<void(std::optional<URLRequest>)> completion);
    // Just before the task completes.
    virtual void urlSessionTaskDidFinishCollecting(URLSession& session,
                                                   const std::shared_ptr<URLSessionTask>& task,
                                                   const URLSessionTaskMetrics& metrics);
    // The last call about a task, made exactly once: also after a cancellation, then with the URL-cancelled error.
    // An answer of status 400 and above is no error.
    virtual void urlSessionTaskDidComplete(URLSession& session, const std::shared_ptr<URLSessionTask>& task,
                                           const std::optional<Error>& error);
};

class URLSessionDataDelegate : public virtual URLSessionTaskDelegate {
public:
    enum class ResponseDisposition { cancel = 0, allow = 1 };

    // Once a task, before its bytes; the load stands still until the call back, which is for any thread.
    // Default: allows.
    virtual void urlSessionDataTaskDidReceiveResponse(URLSession& session,
                                                      const std::shared_ptr<URLSessionDataTask>& task,
                                                      const std::shared_ptr<const URLResponse>& response,
                                                      std::function<void(ResponseDisposition)> completion);
    // The next bytes. A delegate that is slow slows the load down, but what waits for it has no firm bound.
    virtual void urlSessionDataTaskDidReceiveData(URLSession& session,
                                                  const std::shared_ptr<URLSessionDataTask>& task,
                                                  const std::string& data);
};

class URLSessionDownloadDelegate : public virtual URLSessionTaskDelegate {
public:
    // The file came from an earlier start: bytes of it that need not be loaded again. The expected total is
    // URLResponseUnknownLength when it is not known.
    virtual void urlSessionDownloadTaskDidResumeAtOffset(URLSession& session,
                                                         const std::shared_ptr<URLSessionDownloadTask>& task,
                                                         std::int64_t fileOffset,
                                                         std::int64_t expectedTotalBytes);
    // Calls that the queue has not come to are merged into one.
    virtual void urlSessionDownloadTaskDidWriteData(URLSession& session,
                                                    const std::shared_ptr<URLSessionDownloadTask>& task,
                                                    std::int64_t bytesWritten, std::int64_t totalBytesWritten,
                                                    std::int64_t totalBytesExpectedToWrite);
    // All bytes have come. For whoever moves the file, and need not look at it first: this takes less than to make it in one
    // place and move it to another. Default: calls the next, with where the file is, unless it could not be made.
    virtual void urlSessionDownloadTaskDidReceiveFile(URLSession& session,
                                                      const std::shared_ptr<URLSessionDownloadTask>& task,
                                                      DownloadedFile& file);
    // `location` is gone when this returns, unless it was moved or opened.
    virtual void urlSessionDownloadTaskDidFinishDownloading(
        URLSession& session, const std::shared_ptr<URLSessionDownloadTask>& task, const URL& location);
};

} // namespace platform

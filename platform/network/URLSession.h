// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/Result.h"
#include "platform/network/URLSessionConfiguration.h"
#include "platform/network/URLSessionDelegate.h"
#include "platform/network/URLSessionTask.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class URLSessionCore;

// Loads http and https URLs, over HTTP/1.1 and HTTP/2, through the proxies that the environment names, trusting the
// certificates that the system trusts. Every other scheme fails with NSURLErrorUnsupportedURL; of redirections at most 20
// are followed. Authentication that a server asks for is refused: its answer is what is loaded.
//
// Calls to the delegate and to completions are made on the delegate queue; when none is given, on a serial queue of the
// session's own. A queue that is given must be serial. Any thread.
//
// A session that is let go completes its tasks first.
class URLSession : public NSObject {
public:
    struct DataLoad {
        std::string data;
        std::shared_ptr<const URLResponse> response;
    };
    struct Download {
        URL location; // gone when the completion returns, unless it was moved or opened
        std::shared_ptr<const URLResponse> response;
    };
    using DataCompletion = std::function<void(Result<DataLoad>)>;
    using DownloadCompletion = std::function<void(Result<Download>)>;
    using Tasks = std::vector<std::shared_ptr<URLSessionTask>>;

    // With the default configuration and no delegate; it cannot be made invalid.
    static const std::shared_ptr<URLSession>& shared();
    static std::shared_ptr<URLSession> make(URLSessionConfiguration configuration,
                                            std::weak_ptr<URLSessionDelegate> delegate = {},
                                            std::shared_ptr<DispatchQueue> delegateQueue = nullptr);
    ~URLSession() override;

    const URLSessionConfiguration& configuration() const;
    const std::shared_ptr<DispatchQueue>& delegateQueue() const;

    // With a completion a task makes no calls to the delegate but those about redirections and metrics.
    // Requires: the session is valid.
    std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request, DataCompletion completion = nullptr);
    std::shared_ptr<URLSessionDownloadTask> downloadTask(URLRequest request,
                                                         DownloadCompletion completion = nullptr);
    // Continues where cancelByProducingResumeData() stopped, if what the server has is still the same; else, and when
    // the file is gone, from the start. Data that is none of ours makes a task that fails with NSURLErrorUnsupportedURL.
    std::shared_ptr<URLSessionDownloadTask> downloadTask(const std::string& resumeData,
                                                         DownloadCompletion completion = nullptr);

    // The tasks that have not completed, in the order they were made, on the delegate queue.
    void getAllTasks(std::function<void(Tasks)> completion);

    // No more tasks; the delegate is told when those that exist have completed.
    void finishTasksAndInvalidate();
    void invalidateAndCancel();

private:
    friend class URLSessionCore;
    explicit URLSession(std::shared_ptr<URLSessionCore> core);
    std::shared_ptr<URLSessionTaskState> newState(URLRequest request);

    // fixed after construction
    std::shared_ptr<URLSessionCore> core_;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "platform/foundation/NSObject.h"
#include "platform/network/URLRequest.h"
#include "platform/network/URLResponse.h"
#include "platform/network/URLSessionDelegate.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class URLSessionTaskState;

// One load of a session. Made by the session, suspended; lives on until it has completed even when nobody holds it.
// Any thread.
class URLSessionTask : public NSObject {
public:
    enum class State { running = 0, suspended = 1, canceling = 2, completed = 3 };

    ~URLSessionTask() override;

    // Unique within its session.
    std::size_t taskIdentifier() const;
    const std::optional<URLRequest>& originalRequest() const;
    // After redirections.
    URLRequest currentRequest() const;
    // Null until one has come.
    std::shared_ptr<const URLResponse> response() const;
    // Of a download, known for sure when its end is told: its file may be written only then.
    std::optional<Error> error() const;
    State state() const;
    // Of the body, decoded.
    std::int64_t countOfBytesReceived() const;
    // URLResponseUnknownLength when it is not known.
    std::int64_t countOfBytesExpectedToReceive() const;
    // For the program's own use; background sessions keep it.
    std::string taskDescription() const;
    void setTaskDescription(std::string description);
    // Hears of this task instead of the session's delegate; held weakly. Set before the first resume().
    void setDelegate(std::weak_ptr<URLSessionTaskDelegate> delegate);

    void resume();
    // Stops taking bytes; the server may lose patience. Each suspend() takes one resume().
    void suspend();
    // The task completes with the URL-cancelled error, unless it completes first. A second time does nothing.
    void cancel();

protected:
    friend class URLSession;
    friend class URLSessionCore;
    friend class URLSessionTaskState;
    explicit URLSessionTask(std::shared_ptr<URLSessionTaskState> state);
    void stop(std::function<void(std::optional<std::string>)> resumeData);

    // fixed after construction
    std::shared_ptr<URLSessionTaskState> state_;
};

// Hands its bytes over as they come.
class URLSessionDataTask final : public URLSessionTask {
private:
    friend class URLSession;
    friend class URLSessionCore;
    using URLSessionTask::URLSessionTask;
};

// Writes its bytes to a file.
class URLSessionDownloadTask final : public URLSessionTask {
public:
    // Cancels; what was loaded is kept for URLSession::downloadTask(resumeData). Calls back once, on the session's delegate
    // queue, with nothing when the load cannot be continued: the server has given no strong validator, or nothing was
    // loaded, or the task had completed.
    void cancelByProducingResumeData(std::function<void(std::optional<std::string>)> completion);

private:
    friend class URLSession;
    friend class URLSessionCore;
    using URLSessionTask::URLSessionTask;
};

} // namespace platform

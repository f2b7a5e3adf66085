// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/URLSession.h"

#include <mutex>

namespace platform {

class TaskLoad;

// What a task consists of, for its session and its load.
class URLSessionTaskState {
public:
    enum class Kind { data, download };
    using ResumeDataCompletion = std::function<void(std::optional<std::string>)>;

    // fixed after construction
    std::size_t identifier = 0;
    Kind kind = Kind::data;
    std::optional<URLRequest> originalRequest;
    std::shared_ptr<URLSession> session; // the task keeps it; it keeps the task only while that runs
    std::shared_ptr<URLSessionCore> core;
    URLSession::DataCompletion dataCompletion;
    URLSession::DownloadCompletion downloadCompletion;
    // What is there already of a download that is continued; empty for none.
    std::string partialPath;
    std::string partialValidator;
    std::string partialSource;
    std::optional<std::int64_t> partialTotal;
    bool isRestored = false; // an earlier start has left it

    std::mutex mutex;
    // guarded by mutex
    std::optional<URLRequest> redirectedRequest; // the last one
    std::shared_ptr<const URLResponse> response;
    std::optional<Error> error;
    URLSessionTask::State state = URLSessionTask::State::suspended;
    int suspensions = 1;
    bool isCancelled = false; // by its owner: only its end is told from then on
    std::int64_t received = 0;
    std::int64_t expected = URLResponseUnknownLength;
    std::string description;
    std::weak_ptr<URLSessionTaskDelegate> delegate;

    // network thread only; null before the first resume and after the end
    std::shared_ptr<TaskLoad> load;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/URLSession.h"
#include "platform/network/URLSessionTaskMetrics.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <vector>

namespace tests {

// Everything that a session says, in order and by name; repeated progress and data calls count once.
class RecordingDelegate final : public platform::URLSessionDataDelegate,
                                public platform::URLSessionDownloadDelegate {
public:
    using Redirect = std::function<std::optional<platform::URLRequest>(const platform::URLRequest&)>;

    // fixed before the first task
    Redirect onRedirect = [](const platform::URLRequest& next) { return next; };
    std::function<void(const platform::URL& location)> onDownload;
    std::function<void(platform::DownloadedFile&)> onFile; // instead
    std::function<void(platform::URLSessionTask&)> onData;
    ResponseDisposition disposition = ResponseDisposition::allow;

    // Waits until `count` tasks have completed; false after half a minute.
    bool waitForEnds(std::size_t count = 1)
    {
        return waitFor([&] { return ends_ >= count; });
    }
    bool waitForCall(const std::string& name)
    {
        return waitFor([&] { return std::ranges::find(calls_, name) != calls_.end(); });
    }
    std::vector<std::string> calls() { return locked(calls_); }
    std::string body() { return locked(body_); }
    std::optional<platform::Error> error() { return locked(error_); }
    platform::URLSessionTaskMetrics metrics() { return locked(metrics_); }
    std::size_t ends() { return locked(ends_); }
    std::vector<std::int64_t> resumeOffsets() { return locked(resumeOffsets_); }

private:
    template <class Value>
    Value locked(const Value& value)
    {
        std::lock_guard lock(mutex_);
        return value;
    }
    template <class Condition>
    bool waitFor(Condition condition)
    {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(30), condition);
    }
    void add(const std::string& name)
    {
        std::lock_guard lock(mutex_);
        if (calls_.empty() || calls_.back() != name || (name != "data" && name != "progress"))
            calls_.push_back(name);
        changed_.notify_all();
    }

    void urlSessionDidBecomeInvalid(platform::URLSession&, const std::optional<platform::Error>&) override
    {
        add("invalid");
    }
    void urlSessionDidFinishEventsForBackgroundURLSession(platform::URLSession&) override { add("events"); }
    void urlSessionTaskWillPerformHTTPRedirection(
        platform::URLSession&, const std::shared_ptr<platform::URLSessionTask>&,
        const std::shared_ptr<const platform::HTTPURLResponse>&, const platform::URLRequest& next,
        std::function<void(std::optional<platform::URLRequest>)> completion) override
    {
        add("redirect");
        completion(onRedirect(next));
    }
    void urlSessionTaskDidFinishCollecting(platform::URLSession&,
                                           const std::shared_ptr<platform::URLSessionTask>&,
                                           const platform::URLSessionTaskMetrics& metrics) override
    {
        {
            std::lock_guard lock(mutex_);
            metrics_ = metrics;
        }
        add("metrics");
    }
    void urlSessionTaskDidComplete(platform::URLSession&, const std::shared_ptr<platform::URLSessionTask>&,
                                   const std::optional<platform::Error>& error) override
    {
        add(error ? "error" : "complete");
        std::lock_guard lock(mutex_);
        error_ = error;
        ++ends_; // last, as it is waited for
        changed_.notify_all();
    }
    void urlSessionDataTaskDidReceiveResponse(platform::URLSession&,
                                              const std::shared_ptr<platform::URLSessionDataTask>&,
                                              const std::shared_ptr<const platform::URLResponse>&,
                                              std::function<void(ResponseDisposition)> completion) override
    {
        add("response");
        completion(disposition);
    }
    void urlSessionDataTaskDidReceiveData(platform::URLSession&,
                                          const std::shared_ptr<platform::URLSessionDataTask>& task,
                                          const std::string& data) override
    {
        {
            std::lock_guard lock(mutex_);
            body_ += data;
        }
        add("data");
        if (onData)
            onData(*task);
    }
    void urlSessionDownloadTaskDidResumeAtOffset(platform::URLSession&,
                                                 const std::shared_ptr<platform::URLSessionDownloadTask>&,
                                                 std::int64_t offset, std::int64_t) override
    {
        {
            std::lock_guard lock(mutex_);
            resumeOffsets_.push_back(offset);
        }
        add("resume");
    }
    void urlSessionDownloadTaskDidWriteData(platform::URLSession&,
                                            const std::shared_ptr<platform::URLSessionDownloadTask>& task,
                                            std::int64_t, std::int64_t, std::int64_t) override
    {
        add("progress");
        if (onData)
            onData(*task);
    }
    void urlSessionDownloadTaskDidReceiveFile(platform::URLSession& session,
                                              const std::shared_ptr<platform::URLSessionDownloadTask>& task,
                                              platform::DownloadedFile& file) override
    {
        if (!onFile)
            return URLSessionDownloadDelegate::urlSessionDownloadTaskDidReceiveFile(session, task, file);
        onFile(file);
        add("file");
    }
    void urlSessionDownloadTaskDidFinishDownloading(platform::URLSession&,
                                                    const std::shared_ptr<platform::URLSessionDownloadTask>&,
                                                    const platform::URL& location) override
    {
        std::ifstream file(location.path(), std::ios::binary);
        {
            std::lock_guard lock(mutex_);
            body_.assign(std::istreambuf_iterator<char>(file), {});
        }
        add("file");
        if (onDownload)
            onDownload(location);
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    // guarded by mutex_
    std::vector<std::string> calls_;
    std::string body_;
    std::optional<platform::Error> error_;
    platform::URLSessionTaskMetrics metrics_;
    std::size_t ends_ = 0;
    std::vector<std::int64_t> resumeOffsets_;
};

} // namespace tests

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/network/LoadCaching_p.h"
#include "platform/network/LoadSink_p.h"
#include "platform/network/URLSessionTaskMetrics.h"

#include <chrono>
#include <memory>
#include <optional>

namespace platform {

// A task at work: conditions, then one hop after the other, then the end. Network thread only.
//
//   begin -> hop -> [conditions] -> [cache] -> transfer -> head -> bytes -> finish
//             ^                                   |          |
//             +------------- redirection ---------+   break, refused range
//
// Every way ends in finish(), which does its work once.
class TaskLoad final : public HTTPTransfer::Listener, public std::enable_shared_from_this<TaskLoad> {
public:
    TaskLoad(std::shared_ptr<URLSessionTask> task, std::shared_ptr<URLSessionTaskState> state);
    ~TaskLoad() override;
    TaskLoad(const TaskLoad&) = delete; // others hold its address
    TaskLoad& operator=(const TaskLoad&) = delete;

    void begin();
    void setPaused(bool isPaused);
    // With `resumeData`, what has been loaded is kept for it; it is called in any case.
    void cancel(URLSessionTaskState::ResumeDataCompletion resumeData = nullptr);

private:
    void makeSink();
    void hop(URLRequest next);
    void hop(); // the same request, for the first time or again
    // Calls `go` as soon as the connection may be used for the request; else finishes.
    void awaitConditions(const URLRequest& request, std::function<void()> go);
    // Sends what is asked for as soon as it may be.
    void enqueue(std::shared_ptr<URLRequest> request);
    void send(URLRequest request);
    // An answer from the cache.
    void deliver(const CachedURLResponse& stored);

    // The transfer's calls. One that is over takes no notice of them.
    void handleHead(std::shared_ptr<const HTTPURLResponse> response) override;
    HTTPTransfer::Intake takeBytes(std::string_view bytes) override;
    void handlePause() override;
    void handleEnd(std::optional<long> error) override;

    void handleConfirmation(const HTTPURLResponse& response);
    void redirect(std::shared_ptr<const HTTPURLResponse> response, URLRequest next);
    void receive(std::shared_ptr<const HTTPURLResponse> response);
    // Whether the load goes on in spite of `error`.
    bool survives(long error);
    void goOnAfter(std::chrono::milliseconds delay);
    void store();

    void updatePause();
    void finish(std::optional<Error> error);
    NSError error(long code) const;
    URLSessionTaskTransactionMetrics& transaction() { return metrics_.transactionMetrics.back(); }
    // When this hop's request was sent and answered.
    HTTPExchangeTimes exchangeTimes();
    void noteTimes();
    void endTransfer();
    void beginTransaction();
    void endTransaction();

    // fixed after construction
    std::shared_ptr<URLSessionTask> task_;
    std::shared_ptr<URLSessionTaskState> state_;
    std::shared_ptr<URLSessionCore> core_;

    LoadCaching caching_;
    std::unique_ptr<LoadSink> sink_;
    URLSessionCore::Slot slot_; // of the transfer
    std::unique_ptr<HTTPTransfer> transfer_;
    Token resourceTimer_;
    Token retryTimer_;
    URLRequest request_;                              // of this hop, as the caller sees it
    std::shared_ptr<const HTTPURLResponse> response_; // of this hop
    URLSessionTaskMetrics metrics_;
    Token conditionsToken_;
    std::int64_t sizeAtSend_ = 0;
    int restartCount_ = 0;
    int breakCount_ = 0;
    std::shared_ptr<URLRequest> deferred_; // until this goes on
    bool isSuspended_ = false;
    bool isQueued_ = false;     // this hop's request is on its way
    bool awaitsAnswer_ = false; // of the delegate
    bool isOver_ = false;
};

} // namespace platform

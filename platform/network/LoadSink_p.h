// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/CachedURLResponse.h"
#include "platform/network/HTTPTransfer_p.h"
#include "platform/network/URLSessionCore_p.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Where the bytes of a load go. Network thread only.
class LoadSink {
public:
    // What to do with an answer whose head has come.
    enum class Reception {
        taken,   // its bytes follow
        waits,   // its bytes follow when `proceed` has been called
        refused, // it continues nothing that is here: ask again, from the start
    };

    virtual ~LoadSink();

    virtual HTTPTransfer::Encoding encoding() const = 0;
    // Before each request; it may find that nothing can be taken.
    virtual void prepare(URLRequest& request) = 0;
    // `proceed(false)` cancels; for any thread.
    virtual Reception receive(const std::shared_ptr<const HTTPURLResponse>& response,
                              std::function<void(bool)> proceed) = 0;
    // Takes all of them or, for now, none.
    virtual Result<HTTPTransfer::Intake> take(std::string_view bytes) = 0;
    // After some were taken, no more are there at present: what is told of them is told now.
    virtual void pause() = 0;
    // Whether, after a break, a next request can go on where this one ended.
    virtual bool canContinue() const = 0;
    // Whether an answer that ended well has brought all there is: a range may be answered in part.
    virtual bool isWhole() const { return true; }
    // A stored answer instead of one from the network: first its head, which the delegate may refuse (true: wait for
    // `proceed`), then its body.
    virtual bool announce(const std::shared_ptr<const URLResponse>& response,
                          std::function<void(bool)> proceed) = 0;
    virtual void deliver(const CachedURLResponse& stored) = 0;
    // The answer is whole, or will never be. What is told about the bytes is given to the delegate queue here.
    virtual void finish(const std::optional<Error>& error) = 0;
    // After finish(): what is told to a completion; empty when the delegate is told. For the delegate queue, once.
    virtual std::move_only_function<void()> takeCompletion() = 0;
    virtual std::int64_t byteCount() const = 0;
    // Why nothing can be taken; then nothing need be asked for. After prepare().
    virtual std::optional<Error> openError() const { return std::nullopt; }
    // What the cache may keep of it: the body, when it is whole and not too large.
    virtual std::shared_ptr<const std::string> storableBody() { return nullptr; }
    // What URLSession::downloadTask(resumeData) takes; the bytes are left for it.
    virtual std::optional<std::string> giveResumeData() { return std::nullopt; }
};

// `resume` is called on the network thread when a sink that has refused bytes may take again.
std::unique_ptr<LoadSink> makeDataSink(std::shared_ptr<URLSessionTask> task,
                                       std::shared_ptr<URLSessionTaskState> state,
                                       std::function<void()> resume);
std::unique_ptr<LoadSink> makeDownloadSink(std::shared_ptr<URLSessionTask> task,
                                           std::shared_ptr<URLSessionTaskState> state);

} // namespace platform

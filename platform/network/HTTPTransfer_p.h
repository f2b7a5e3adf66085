// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Date.h"
#include "platform/network/HTTPURLResponse.h"
#include "platform/network/URLRequest.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace platform {

// One request over the network and its answer, which may be a redirection: none is followed. Bytes that are not taken are
// kept and stop the sender. Lives on the network thread; letting go of it aborts it without a call. Each handler may let
// go of it; none is called from within a call of this.
class HTTPTransfer {
public:
    enum class Intake {
        taken,
        refused // until resume()
    };
    struct Handlers {
        std::function<void(std::shared_ptr<const HTTPURLResponse>)> onHead;
        // After the head.
        std::function<Intake(std::string_view)> onBytes;
        // After some bytes were taken: there are no more at present.
        std::function<void()> onPause;
        // Once, when all bytes have been taken: nothing, or a code of NSURLErrorDomain.
        std::function<void(std::optional<long>)> onEnd;
    };
    // Compressed bodies are asked for and decoded, or the bytes are the server's own.
    enum class Encoding { decoded, asStored };

    HTTPTransfer(const URLRequest& request, Encoding encoding, Handlers handlers);
    ~HTTPTransfer();
    HTTPTransfer(const HTTPTransfer&) = delete; // the library holds its address
    HTTPTransfer& operator=(const HTTPTransfer&) = delete;

    // Paused, nothing but the head comes, and no time runs.
    void setPaused(bool isPaused);
    // Offers bytes again that were refused.
    void resume();

    // When the connection stood and the request began to go; nothing before.
    std::optional<Date> requestStart() const;
    // When the first byte of the head came.
    std::optional<Date> responseStart() const;
    bool isHTTP2() const;
    // Whether the head says where the body ends; else one that broke off looks like a whole one.
    bool endIsKnown() const;

private:
    class State;

    std::shared_ptr<State> state_;
};

} // namespace platform

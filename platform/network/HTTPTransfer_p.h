// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Date.h"
#include "platform/network/HTTPURLResponse.h"
#include "platform/network/URLRequest.h"

#include <memory>
#include <optional>
#include <string_view>

namespace platform {

// One request over the network and its answer, which may be a redirection: none is followed. Bytes that are not taken are
// kept and stop the sender. Lives on the network thread; letting go of it aborts it without a call.
class HTTPTransfer {
public:
    enum class Intake {
        taken,
        refused // until resume()
    };
    // Whom it is for. Each call may let go of the transfer; none is made from within a call of it.
    class Listener {
    public:
        virtual ~Listener();
        virtual void handleHead(std::shared_ptr<const HTTPURLResponse> response) = 0;
        // After the head.
        virtual Intake takeBytes(std::string_view bytes) = 0;
        // After some bytes were taken: there are no more at present.
        virtual void handlePause() = 0;
        // Once, when all bytes have been taken: nothing, or a code of NSURLErrorDomain.
        virtual void handleEnd(std::optional<long> error) = 0;
    };
    // Compressed bodies are asked for and decoded, or the bytes are the server's own.
    enum class Encoding { decoded, asStored };

    HTTPTransfer(const URLRequest& request, Encoding encoding, std::weak_ptr<Listener> listener);
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

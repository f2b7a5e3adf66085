// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/HTTPURLResponse.h"
#include "platform/network/URLRequest.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>

class QNetworkAccessManager;

namespace platform {

// One request over the network and its answer, which may be a redirection: none is followed. Bytes are pulled, so that a
// reader who does not read stops the sender. Lives on the network thread; letting go of it aborts it without a call.
// Each handler may let go of it.
class HTTPTransfer {
public:
    struct Handlers {
        std::function<void(std::shared_ptr<const HTTPURLResponse>)> onHead;
        // Bytes may be there.
        std::function<void()> onReadable;
        // Once, when all bytes have been read: nothing, or a code of NSURLErrorDomain.
        std::function<void(std::optional<long>)> onEnd;
    };
    // Compressed bodies are asked for and decoded, or the bytes are the server's own.
    enum class Encoding { decoded, asStored };

    HTTPTransfer(std::shared_ptr<QNetworkAccessManager> access, const URLRequest& request, Encoding encoding,
                 Handlers handlers);
    ~HTTPTransfer();
    HTTPTransfer(const HTTPTransfer&) = delete; // the library holds its address
    HTTPTransfer& operator=(const HTTPTransfer&) = delete;

    // How many bytes; 0 when there are none at present.
    std::size_t read(std::span<char> buffer);
    // Paused, nothing but the end of a connection is noticed, and no time runs.
    void setPaused(bool isPaused);
    // Looks again, a little later, for bytes that were left and for the end.
    void look();
    bool isHTTP2() const;

private:
    struct State;

    std::unique_ptr<State> state_;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tests {

// A server on loopback that says what a script says, byte for byte, in time or never. Each connection has a thread; all are
// over when the server goes.
class ScriptedServer {
public:
    struct Request {
        std::string method;
        std::string target;
        std::string head;

        std::optional<std::string> field(std::string_view name) const;
    };

    class Connection {
    public:
        explicit Connection(int descriptor)
            : descriptor_(descriptor)
        {
        }
        // False once nobody listens any more.
        bool send(std::string_view bytes);
        // "HTTP/1.1 STATUS", a Content-Length, `fields` (each ended by CR LF) and the body.
        bool answer(std::string_view status, std::string_view body, std::string_view fields = {});
        // Returns when the other side has gone.
        void waitForClose();
        // Ends the connection as a crash would.
        void reset();
        // No further request is read.
        void close() { isOpen_ = false; }

    private:
        friend class ScriptedServer;
        int descriptor_;
        bool isOpen_ = true;
    };
    using Script = std::function<void(Connection&, const Request&)>;

    explicit ScriptedServer(Script script);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete; // threads hold its address
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    platform::URL url(std::string_view target) const;
    int port() const;
    std::vector<Request> requests() const;

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace tests

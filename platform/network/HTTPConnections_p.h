// SPDX-License-Identifier: MIT
#pragma once

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <span>
#include <vector>

namespace platform {

// The library's connections, kept for the next request to the same server, and what goes on over them. One a process, for
// all sessions: what shares an origin shares its connections. Network thread only, but for wake().
class HTTPConnections {
public:
    // One request, as the library knows it; its owner keeps it until it is retired. The library's own calls come within
    // drive(); any of them may start, resume or retire clients: that is done when the library has returned.
    class Client {
    public:
        virtual ~Client();

        virtual CURL* handle() = 0;
        // Bytes came, and there are no more at present.
        virtual void handleBatch() = 0;
        // After resume().
        virtual void handleResume() = 0;
        // The library is done with it.
        virtual void handleEnd(CURLcode code) = 0;

        bool isRetired() const { return isRetired_; }

    private:
        friend class HTTPConnections;
        bool isStarted_ = false;
        bool isRetired_ = false;
        bool hasBytes_ = false;
    };
    using ClientPointer = std::shared_ptr<Client>;

    HTTPConnections();
    ~HTTPConnections() = delete;                      // the process ends first
    HTTPConnections(const HTTPConnections&) = delete; // the library knows its address

    // A request that nothing is set of yet. To be given back, in any state, when it is retired and let go.
    CURL* takeHandle();
    void giveBack(CURL* handle);

    void start(ClientPointer client);
    void resume(ClientPointer client);
    // It is called no more; its connection ends, unless the answer has.
    void retire(ClientPointer client);
    // From within the library's call that brings bytes.
    void noteBytes(ClientPointer client);

    // Lets everything go on that can.
    void drive();

    // What else to wait for: a descriptor and events as poll() calls them.
    struct Other {
        int descriptor;
        short events;
    };
    void wait(std::chrono::steady_clock::time_point until, std::span<const Other> others);
    // Ends a wait, or the next one. Any thread.
    void wake();

private:
    void settle();
    void tellBatches();
    void tellEnds();

    CURLM* multi_; // fixed after construction
    std::vector<CURL*> spare_;
    std::vector<ClientPointer> starting_;
    std::vector<ClientPointer> resuming_;
    std::vector<ClientPointer> retiring_;
    std::vector<ClientPointer> withBytes_;
};

} // namespace platform

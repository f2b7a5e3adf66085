// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/Token.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

namespace platform {

class RunLoopDisplayDriver;

// What makes frames: calls DisplayLink::shared().deliverFrame() once per frame of the screen between
// start() and stop(). Main thread only.
class DisplayLinkDriver {
public:
    virtual ~DisplayLinkDriver();
    virtual void start() = 0;
    virtual void stop() = 0;
};

// Calls back once per frame for as long as anybody asks; while nobody does, nothing runs at all. Frames come
// 60 times a second from the main run loop until a window system takes over. Main thread only.
class DisplayLink {
public:
    using Callback = std::function<void(Instant frameTime)>;

    static DisplayLink& shared();

    DisplayLink(const DisplayLink&) = delete; // subscriptions refer to it
    DisplayLink& operator=(const DisplayLink&) = delete;

    // Calls `callback` at each frame until the token goes; first at the next frame, never from inside this
    // call or for a frame being delivered. Within a frame callbacks run in order of request; each may
    // request and cancel, itself included.
    [[nodiscard]] Token request(Callback callback);

    // Whether frames are being made.
    bool isRunning() const;

    // Replaces what makes frames, at once if they are wanted now; null goes back to the run loop.
    void setDriver(std::shared_ptr<DisplayLinkDriver> driver);

    // For drivers: `frameTime` by the clock of the main run loop. Without requests it does nothing.
    void deliverFrame(Instant frameTime);

private:
    DisplayLink();
    ~DisplayLink();

    void remove(std::uint64_t request);
    void startDriver();
    void stopDriver();

    // main thread only
    std::map<std::uint64_t, std::shared_ptr<Callback>> requests_;
    std::uint64_t nextRequest_ = 0;
    const std::shared_ptr<RunLoopDisplayDriver> runLoopDriver_;
    std::shared_ptr<DisplayLinkDriver> driver_;
    bool isStarted_ = false;
    bool isDelivering_ = false;
};

} // namespace platform

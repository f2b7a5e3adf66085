// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include <systemd/sd-event.h>

namespace platform {

struct EventSourceDeleter {
    void operator()(sd_event_source* source) const { sd_event_source_disable_unref(source); }
};
using EventSource = std::unique_ptr<sd_event_source, EventSourceDeleter>;

// A wake-up of the service in some time, once; setting it again moves it. At rest it costs nothing. What it calls may
// destroy it.
class Alarm {
public:
    Alarm(sd_event* loop, std::function<void()> onTime);
    Alarm(const Alarm&) = delete; // its address is with the loop
    Alarm& operator=(const Alarm&) = delete;

    void set(std::uint64_t microseconds);
    void clear();

private:
    static int ring(sd_event_source*, std::uint64_t, void* self);

    sd_event* loop_;
    std::function<void()> onTime_;
    EventSource source_;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/previewer/EventLoop_p.h"

#include <ctime>
#include <utility>

namespace platform {

Alarm::Alarm(sd_event* loop, std::function<void()> onTime)
    : loop_(loop)
    , onTime_(std::move(onTime))
{
}

void Alarm::set(std::uint64_t microseconds)
{
    clear();
    sd_event_source* source = nullptr;
    if (sd_event_add_time_relative(loop_, &source, CLOCK_MONOTONIC, microseconds, 0, &Alarm::ring, this) >= 0)
        source_.reset(source);
}

void Alarm::clear()
{
    source_.reset();
}

int Alarm::ring(sd_event_source*, std::uint64_t, void* self)
{
    auto& alarm = *static_cast<Alarm*>(self);
    alarm.clear();
    auto call = alarm.onTime_; // the alarm may be gone when it returns
    call();
    return 0;
}

} // namespace platform

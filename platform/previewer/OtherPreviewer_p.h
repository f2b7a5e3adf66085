// SPDX-License-Identifier: MIT
#pragma once

#include "platform/previewer/ChildProgram_p.h"
#include "platform/previewer/PreviewerBus_p.h"

#include <vector>

namespace platform {

// The previewer that would have answered if this one were not there, for all files that are not ours. It claims the very
// same bus name, so it is started, when it is needed, on a bus of its own without any other service, and its calls and
// signals are handed over. When it goes, that bus goes.
class OtherPreviewer {
public:
    struct Handlers {
        std::function<void(bool isVisible)> onVisible;
        std::function<void(unsigned direction)> onSelect;
    };

    // `ownProgram`: this service's path, which a service file may name too.
    OtherPreviewer(sd_event* loop, const std::string& ownProgram, Handlers handlers);
    ~OtherPreviewer();

    bool isInstalled() const { return !command_.empty(); }
    // Shows or is about to.
    bool isActive() const { return pending_ || isVisible_; }
    // Of calls that come while it starts the newest counts.
    void show(const ShowFileCall& call);
    void close();

private:
    void startBus();
    static int addressReadable(sd_event_source*, int pipe, std::uint32_t, void* self);
    void connect(const std::string& address);
    static int ownerChanged(sd_bus_message* signal, void* self, sd_bus_error*);
    static int signalled(sd_bus_message* signal, void* self, sd_bus_error*);
    static int answered(sd_bus_message* reply, void* self, sd_bus_error*);
    void handOver(bool withToken);
    void setVisible(bool isVisible);
    void stop();

    // fixed after construction
    sd_event* loop_;
    const Handlers handlers_;
    std::vector<std::string> command_;

    std::unique_ptr<ChildProgram> daemon_, previewer_;
    EventSource addressInput_;
    std::string address_;
    BusConnection bus_;
    std::optional<ShowFileCall> pending_, handedOver_;
    bool isThere_ = false; // owns its name
    bool isVisible_ = false;
    Alarm retirement_; // what has ended is cleared away in a turn of its own
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/previewer/ChildProgram_p.h"
#include "platform/previewer/PreviewMessage.h"

namespace platform {

// The process of one preview: started ahead, given one order, gone with its window.
class PreviewProcess {
public:
    struct Handlers {
        std::function<void(PreviewProcess&, const PreviewMessage&)> onMessage;
        // The object may be destroyed by either. `hasCrashed`: neither closed nor unable to show.
        std::function<void(PreviewProcess&, bool hasCrashed)> onEnd;
    };

    // Null when it could not be started.
    static std::unique_ptr<PreviewProcess> start(sd_event* loop, const std::string& program,
                                                 Handlers handlers);
    ~PreviewProcess();
    PreviewProcess(const PreviewProcess&) = delete; // its address is with the loop
    PreviewProcess& operator=(const PreviewProcess&) = delete;

    bool send(const PreviewMessage& message) { return sendPreviewMessage(socket_, message); }
    // Asks it to go; one that stays for two seconds is killed.
    void close();
    void kill();

private:
    explicit PreviewProcess(sd_event* loop);
    static int readable(sd_event_source*, int, std::uint32_t, void* self);

    sd_event* loop_;
    Handlers handlers_;
    int socket_ = -1;
    EventSource input_;
    std::unique_ptr<ChildProgram> program_;
    Alarm patience_;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/previewer/EventLoop_p.h"

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace platform {

// How a program is started beside the service.
struct ProgramStart {
    std::vector<std::string> command;     // the program's path or a name that PATH finds, and its arguments
    std::vector<std::string> environment; // NAME=VALUE, over the service's own; NAME alone is taken away
    int passedDescriptor = -1;            // is 3 there
    int secondDescriptor = -1;            // is 4 there
};

// A program that ends with the service at the latest. Killed when the object goes; the object's `onEnd` is not called then.
class ChildProgram {
public:
    // The status is as waitpid gives it. Called last: the object may be destroyed by it.
    using EndHandler = std::function<void(int status)>;

    // Null when it could not be started.
    static std::unique_ptr<ChildProgram> start(sd_event* loop, const ProgramStart& start, EndHandler onEnd);
    ~ChildProgram();
    ChildProgram(const ChildProgram&) = delete; // its address is with the loop
    ChildProgram& operator=(const ChildProgram&) = delete;

    pid_t id() const { return id_; }
    void signal(int number);

private:
    ChildProgram() = default;
    static int ended(sd_event_source*, const siginfo_t* information, void* self);

    pid_t id_ = -1;
    EndHandler onEnd_;
    EventSource source_;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/previewer/PreviewerService.h"

#include "platform/foundation/URL.h"
#include "platform/previewer/OtherPreviewer_p.h"
#include "platform/previewer/PreviewStage_p.h"
#include "platform/previewer/PreviewerBus_p.h"
#include "platform/previewer/subtitleContent_p.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace platform {

namespace {

bool hasDisplay()
{
    auto isSet = [](const char* name) {
        auto* value = std::getenv(name);
        return value && *value;
    };
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

// Tells the two previewers and the bus about each other.
class PreviewerService {
public:
    PreviewerService(sd_event* loop, const std::string& ownProgram, const std::string& previewProgram)
        : loop_(loop)
        , stage_(loop, previewProgram,
                 {.onVisible = [this](bool) { update(); },
                  .onSelect = [this](unsigned direction) { bus_->emitSelection(direction); }})
        , other_(loop, ownProgram,
                 {.onVisible = [this](bool) { update(); },
                  .onSelect = [this](unsigned direction) { bus_->emitSelection(direction); }})
        , start_(loop, [this] { stage_.warmUp(); })
    {
    }

    int run()
    {
        std::string fault;
        bus_ = PreviewerBus::open(loop_,
                                  {.onShowFile = [this](const ShowFileCall& call) { return show(call); },
                                   .onClose = [this] { close(); },
                                   .onNameLost = [this] { sd_event_exit(loop_, 0); }},
                                  fault);
        if (!bus_) {
            std::fprintf(stderr, "zelk-previewer: %s\n", fault.c_str());
            return 1;
        }
        // Who has started the service is answered first.
        if (hasDisplay())
            start_.set(1000);
        return sd_event_loop(loop_);
    }

private:
    std::optional<CallFault> show(const ShowFileCall& call)
    {
        auto url = URL::parse(call.url);
        if (!url || url->path().find('\0') != std::string::npos)
            return CallFault{SD_BUS_ERROR_INVALID_ARGS, "This is not the URL of a file: " + call.url};
        if (!hasDisplay())
            return CallFault{SD_BUS_ERROR_FAILED, "There is no display"};
        if (!url->isFileURL() || !isSubtitleFile(url->path()))
            return relay(call, *url);
        if (stage_.url() == url->absoluteString()) {
            if (call.closesIfShown)
                close();
            return std::nullopt;
        }
        stage_.show({.url = url->absoluteString(),
                     .parentHandle = call.parentHandle,
                     .activationToken = call.activationToken});
        if (other_.isActive())
            other_.close();
        parentHandle_ = call.parentHandle;
        update();
        return std::nullopt;
    }

    std::optional<CallFault> relay(const ShowFileCall& call, const URL& url)
    {
        if (!other_.isInstalled()) {
            auto type = url.pathExtension();
            return CallFault{SD_BUS_ERROR_NOT_SUPPORTED,
                             "No previewer is installed for "
                                 + (type.empty() ? "such files" : "." + type + " files") + ": "
                                 + url.lastPathComponent()};
        }
        other_.show(call);
        if (stage_.isActive())
            stage_.close();
        parentHandle_ = call.parentHandle;
        update();
        return std::nullopt;
    }

    void close()
    {
        stage_.close();
        if (other_.isActive())
            other_.close();
    }

    void update()
    {
        if (!bus_)
            return;
        bool isActive = stage_.isActive() || other_.isActive();
        if (!isActive)
            parentHandle_.clear();
        bus_->setParentHandle(parentHandle_);
        bus_->setVisible(isActive);
    }

    sd_event* loop_;
    std::unique_ptr<PreviewerBus> bus_;
    PreviewStage stage_;
    OtherPreviewer other_;
    Alarm start_;
    std::string parentHandle_;
};

} // namespace

int runPreviewerService(const std::string& ownProgram, const std::string& previewProgram)
{
    // Children are waited for by descriptors, and their ends heard, only with this signal held back.
    sigset_t held;
    sigemptyset(&held);
    for (int number : {SIGCHLD, SIGTERM, SIGINT})
        sigaddset(&held, number);
    ::sigprocmask(SIG_BLOCK, &held, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    sd_event* loop = nullptr;
    if (sd_event_new(&loop) < 0) {
        std::fprintf(stderr, "zelk-previewer: no event loop\n");
        return 1;
    }
    for (int number : {SIGTERM, SIGINT})
        sd_event_add_signal(loop, nullptr, number, nullptr, nullptr);
    int status = PreviewerService(loop, ownProgram, previewProgram).run();
    sd_event_unref(loop);
    return status;
}

} // namespace platform

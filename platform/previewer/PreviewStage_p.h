// SPDX-License-Identifier: MIT
#pragma once

#include "platform/previewer/PreviewProcess_p.h"

#include <cstdint>

namespace platform {

// Which previews run: the one that is seen, the one that is about to take its place, and a spare one, started ahead,
// that knows its file as soon as somebody asks. Of requests that come faster than previews do, the newest counts.
//
//   spare --order--> loading --shown--> visible --close--> leaving
//
// What loads is given up for a newer request when it takes long. One that crashes is followed by one that says so.
class PreviewStage {
public:
    struct Handlers {
        std::function<void(bool isVisible)> onVisible;
        std::function<void(unsigned direction)> onSelect;
    };

    PreviewStage(sd_event* loop, std::string program, Handlers handlers);

    // Starts the spare one, soon.
    void warmUp();
    void show(PreviewOrder order);
    void close();
    // Something is seen or about to be.
    bool isActive() const { return wanted_ || loading_ || visible_; }
    // What is seen or about to be; empty when nothing is.
    std::string url() const;

private:
    void advance();
    void startOne();
    void replaceSpare();
    void take(PreviewProcess& process, const PreviewMessage& message);
    void loadingIsShown();
    void processEnded(PreviewProcess& process, bool hasCrashed);
    void endedBeforeShown(bool hasCrashed);
    void leave(std::unique_ptr<PreviewProcess>& process);
    void abandon(std::unique_ptr<PreviewProcess>& process);
    void updateVisible();

    // fixed after construction
    sd_event* loop_;
    const std::string program_;
    const Handlers handlers_;

    std::optional<PreviewOrder> wanted_; // the newest, as long as nothing loads it
    PreviewOrder loadingOrder_, visibleOrder_;
    std::unique_ptr<PreviewProcess> spare_, loading_, visible_;
    std::vector<std::unique_ptr<PreviewProcess>> leaving_;
    std::optional<PreviewPlace> place_; // of what is seen, or was until it crashed
    std::uint64_t lastStart_ = 0;       // microseconds
    bool isLate_ = false;               // what loads may be given up
    bool toldVisible_ = false;
    Alarm patience_; // with what loads
    Alarm pace_;     // of starting processes
};

} // namespace platform

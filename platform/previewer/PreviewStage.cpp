// SPDX-License-Identifier: MIT
#include "platform/previewer/PreviewStage_p.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <ctime>

namespace platform {

namespace {

// Microseconds. Whoever scrolls through a folder does not wait longer for a file that is not wanted any more.
constexpr std::uint64_t loadingPatience = 300'000;
// Callers that open and close without end do not make processes without end.
constexpr std::uint64_t betweenStarts = 40'000;

} // namespace

PreviewStage::PreviewStage(sd_event* loop, std::string program, Handlers handlers)
    : loop_(loop)
    , program_(std::move(program))
    , handlers_(std::move(handlers))
    , patience_(loop,
                [this] {
                    isLate_ = true;
                    advance();
                })
    , pace_(loop, [this] { startOne(); })
{
}

std::string PreviewStage::url() const
{
    if (wanted_)
        return wanted_->url;
    return loading_ ? loadingOrder_.url : visible_ ? visibleOrder_.url : std::string();
}

void PreviewStage::show(PreviewOrder order)
{
    wanted_ = std::move(order);
    advance();
}

void PreviewStage::close()
{
    wanted_.reset();
    abandon(loading_);
    leave(visible_);
    replaceSpare();
    updateVisible();
}

// Gives the newest request to the spare process, unless another one is about to be shown.
void PreviewStage::advance()
{
    if (!wanted_ || (loading_ && !isLate_))
        return;
    if (!spare_)
        return replaceSpare();
    abandon(loading_);
    loading_ = std::move(spare_);
    loadingOrder_ = *std::exchange(wanted_, std::nullopt);
    loadingOrder_.place = place_;
    isLate_ = false;
    patience_.set(loadingPatience);
    if (!loading_->send(messageFrom(loadingOrder_)))
        loading_->kill(); // its end is heard
}

void PreviewStage::warmUp()
{
    replaceSpare();
}

void PreviewStage::replaceSpare()
{
    if (spare_)
        return;
    std::uint64_t now = 0;
    sd_event_now(loop_, CLOCK_MONOTONIC, &now);
    auto due = lastStart_ + betweenStarts;
    if (lastStart_ == 0 || now >= due)
        startOne();
    else
        pace_.set(due - now);
}

void PreviewStage::startOne()
{
    pace_.clear();
    if (spare_)
        return;
    sd_event_now(loop_, CLOCK_MONOTONIC, &lastStart_);
    spare_ = PreviewProcess::start(
        loop_, program_,
        {.onMessage = [this](auto& process, const auto& message) { take(process, message); },
         .onEnd = [this](auto& process, bool hasCrashed) { processEnded(process, hasCrashed); }});
    if (spare_)
        return advance();
    std::fprintf(stderr, "%s could not be started\n", program_.c_str());
    wanted_.reset();
    updateVisible();
}

void PreviewStage::take(PreviewProcess& process, const PreviewMessage& message)
{
    if (&process == loading_.get() && message[0] == previewShown)
        return loadingIsShown();
    if (&process == loading_.get() || &process == visible_.get()) {
        if (auto place = previewPlaceFrom(message))
            place_ = place;
    }
    unsigned direction = 0;
    if (&process == visible_.get() && message.size() == 2 && message[0] == previewSelect
        && std::from_chars(message[1].data(), message[1].data() + message[1].size(), direction).ec
            == std::errc()
        && direction <= 5)
        handlers_.onSelect(direction);
}

void PreviewStage::loadingIsShown()
{
    patience_.clear();
    leave(visible_); // not before: nobody sees the desktop in between
    visible_ = std::move(loading_);
    visibleOrder_ = loadingOrder_;
    updateVisible();
    replaceSpare();
    advance();
}

void PreviewStage::processEnded(PreviewProcess& process, bool hasCrashed)
{
    auto isIt = [&](const auto& owned) { return owned.get() == &process; };
    if (isIt(spare_)) {
        // Not replaced before somebody asks: it would end again, for want of a display.
        spare_.reset();
        if (wanted_ && !loading_)
            wanted_.reset();
    } else if (isIt(loading_)) {
        loading_.reset();
        endedBeforeShown(hasCrashed);
    } else if (isIt(visible_)) {
        visible_.reset();
        if (hasCrashed && !isActive() && !visibleOrder_.tellsFailure) {
            wanted_ = visibleOrder_;
            wanted_->tellsFailure = true;
        }
        advance();
    } else {
        std::erase_if(leaving_, isIt);
    }
    updateVisible();
}

void PreviewStage::endedBeforeShown(bool hasCrashed)
{
    patience_.clear();
    if (!wanted_ && hasCrashed && !loadingOrder_.tellsFailure) {
        wanted_ = loadingOrder_;
        wanted_->tellsFailure = true;
    }
    if (wanted_)
        return advance();
    leave(visible_); // shows what is not selected any more
}

// Lets it go by itself.
void PreviewStage::leave(std::unique_ptr<PreviewProcess>& process)
{
    if (!process)
        return;
    process->close();
    leaving_.push_back(std::move(process));
}

void PreviewStage::abandon(std::unique_ptr<PreviewProcess>& process)
{
    if (!process)
        return;
    patience_.clear();
    process->kill();
    leaving_.push_back(std::move(process));
}

void PreviewStage::updateVisible()
{
    if (!isActive())
        place_.reset();
    if (std::exchange(toldVisible_, isActive()) != isActive())
        handlers_.onVisible(isActive());
}

} // namespace platform

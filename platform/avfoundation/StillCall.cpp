// SPDX-License-Identifier: MIT
#include "platform/avfoundation/StillCall_p.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/StillDecoder_p.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace platform {

namespace {

bool isMissingPicture(const Error& error)
{
    return error == Error(AVError::noImageAtTime);
}

} // namespace

StillCall::StillCall(StillPlan plan, std::stop_token stop, Deliver deliver)
    : plan_(std::move(plan))
    , stop_(std::move(stop))
    , deliver_(std::move(deliver))
    , sources_(plan_.sessions.size())
    , slots_(plan_.requestOfSlot.size())
    , isFinished_(plan_.requests.size())
    , results_(plan_.requests.size())
    , order_(plan_.requests.size())
{
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    std::ranges::stable_sort(order_, {},
                             [this](std::size_t request) { return plan_.requests[request].requestedTime; });
    for (auto& request : plan_.requests)
        slotsLeft_.push_back(request.slotCount);
}

std::size_t StillCall::workerLimit() const
{
    return std::max<std::size_t>(plan_.requestOfSlot.size(), 1);
}

void StillCall::run(int decoderThreads)
{
    if (!hasBegun_.exchange(true))
        finishWithoutDecoding();
    for (std::size_t session = 0; session < plan_.sessions.size(); ++session)
        runSession(session, decoderThreads);
    if (--workersLeft_ > 0)
        return;
    for (std::size_t request = 0; request < plan_.requests.size(); ++request)
        finish(request, failure(AVError::operationCancelled));
}

// Failures, and frames of a composition that are nothing but background.
void StillCall::finishWithoutDecoding()
{
    for (std::size_t place = 0; place < plan_.requests.size(); ++place) {
        auto& request = plan_.requests[place];
        if (request.error)
            finish(place, failure(*request.error));
        else if (request.slotCount == 0)
            compose(place, {});
    }
}

void StillCall::runSession(std::size_t session, int decoderThreads)
{
    std::unique_ptr<StillDecoder> decoder;
    bool hasOpenGroup = false;
    while (auto piece = nextPiece(session, hasOpenGroup)) {
        if (piece->packets.empty() && piece->error && !decoder) {
            failAll(piece->moments, *piece->error);
            continue;
        }
        if (!decoder) {
            StillDecoder::Events events;
            events.onPicture = [this](const StillMoment& moment, Result<StillPicture> picture) {
                finishSlot(moment.slot, std::move(picture));
            };
            events.onRetry = [this, session](const StillMoment& moment) {
                std::lock_guard lock(readingMutex_);
                sources_[session].reader->retry(moment);
            };
            auto opened = StillDecoder::open(plan_.sessions[session], plan_.maximumSize(), decoderThreads,
                                             std::move(events));
            if (!opened) {
                failAll(piece->moments, opened.error());
                continue;
            }
            decoder = *std::move(opened);
        }
        decoder->decode(*std::move(piece), stop_);
    }
}

std::optional<PacketGroup> StillCall::nextPiece(std::size_t session, bool& hasOpenGroup)
{
    std::unique_lock lock(readingMutex_);
    auto& source = sources_[session];
    groupClosed_.wait(lock, [&] { return hasOpenGroup || !source.isGroupOpen; });
    auto piece = stop_.stop_requested() ? std::nullopt : readPiece(session);
    source.isGroupOpen = hasOpenGroup = piece && !piece->ends;
    if (!hasOpenGroup)
        groupClosed_.notify_all();
    return piece;
}

// Called with the lock held.
std::optional<PacketGroup> StillCall::readPiece(std::size_t session)
{
    auto& source = sources_[session];
    if (!std::exchange(source.wasOpened, true)) {
        auto reader = GroupReader::open(plan_.sessions[session], stop_);
        if (!reader) {
            PacketGroup nothing{.moments = plan_.sessions[session].moments, .begins = true, .ends = true};
            nothing.error = reader.error();
            return nothing;
        }
        source.reader = *std::move(reader);
    }
    return source.reader ? source.reader->next() : std::nullopt;
}

void StillCall::failAll(const std::vector<StillMoment>& moments, const Error& error)
{
    for (auto& moment : moments)
        finishSlot(moment.slot, failure(error));
}

void StillCall::finishSlot(std::size_t slot, Result<StillPicture> result)
{
    const auto place = plan_.requestOfSlot[slot];
    auto& request = plan_.requests[place];
    if (!plan_.settings.videoComposition)
        return finish(place, std::move(result));
    {
        std::lock_guard lock(mutex_);
        slots_[slot] = std::move(result);
        if (--slotsLeft_[place] > 0)
            return;
    }
    // All are there: nobody else looks at them.
    std::vector<std::optional<UIImage>> pictures(request.slotCount);
    for (std::size_t layer = 0; layer < request.slotCount; ++layer) {
        auto& picture = *slots_[request.firstSlot + layer];
        if (picture)
            pictures[layer] = std::move(picture->image);
        else if (!isMissingPicture(picture.error()))
            return finish(place, failure(picture.error()));
    }
    compose(place, pictures);
}

void StillCall::compose(std::size_t place, const std::vector<std::optional<UIImage>>& pictures)
{
    auto& request = plan_.requests[place];
    auto composed = composeStill(plan_, request, pictures);
    if (!composed)
        return finish(place, failure(composed.error()));
    finish(place, StillPicture{*std::move(composed), request.frameTime});
}

void StillCall::finish(std::size_t request, Result<StillPicture> result)
{
    std::unique_lock lock(mutex_);
    if (isFinished_[request])
        return;
    isFinished_[request] = true;
    results_[request] = std::move(result);
    if (std::exchange(isDelivering_, true))
        return; // whoever delivers takes it along
    while (delivered_ < order_.size() && results_[order_[delivered_]]) {
        const auto next = order_[delivered_++];
        auto ready = *std::exchange(results_[next], std::nullopt);
        lock.unlock();
        deliver_(plan_.requests[next], ready);
        lock.lock();
    }
    isDelivering_ = false;
}

} // namespace platform

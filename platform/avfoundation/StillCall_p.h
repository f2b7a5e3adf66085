// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/GroupReader_p.h"
#include "platform/avfoundation/StillPlan_p.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

namespace platform {

// One request of a generator: workers take groups of pictures from the file one after the other, decode them side by
// side, and hand over what is finished in the order of the times. Each requested time ends once, when all workers have left
// at the latest.
class StillCall {
public:
    // Called by one worker at a time, without a lock held.
    using Deliver = std::function<void(const StillRequest&, const Result<StillPicture>&)>;

    StillCall(StillPlan plan, std::stop_token stop, Deliver deliver);

    // How many workers find something to do at once.
    std::size_t workerLimit() const;
    // To be called before the workers run.
    void setWorkerCount(std::size_t count) { workersLeft_ = count; }
    // A worker's part, on its thread. `decoderThreads` as MediaDecoderOptions has them.
    void run(int decoderThreads);

private:
    // A session's file, once opened.
    struct Source {
        bool wasOpened = false;
        std::unique_ptr<GroupReader> reader;
        bool isGroupOpen = false; // its worker is the one to read on
    };

    void finishWithoutDecoding();
    void runSession(std::size_t session, int decoderThreads);
    std::optional<PacketGroup> nextPiece(std::size_t session, bool& hasOpenGroup);
    std::optional<PacketGroup> readPiece(std::size_t session);
    void failAll(const std::vector<StillMoment>& moments, const Error& error);
    void finishSlot(std::size_t slot, Result<StillPicture> result);
    void compose(std::size_t request, const std::vector<std::optional<UIImage>>& pictures);
    void finish(std::size_t request, Result<StillPicture> result);

    // fixed after construction
    const StillPlan plan_;
    const std::stop_token stop_;
    const Deliver deliver_;

    std::atomic<std::size_t> workersLeft_ = 1;
    std::atomic<bool> hasBegun_ = false;

    std::mutex readingMutex_;
    std::condition_variable groupClosed_;
    // guarded by readingMutex_
    std::vector<Source> sources_;

    std::mutex mutex_;
    // guarded by mutex_
    std::vector<std::optional<Result<StillPicture>>>
        slots_;                          // of compositions, until all of a request are there
    std::vector<std::size_t> slotsLeft_; // by request
    std::vector<bool> isFinished_;       // by request
    std::vector<std::optional<Result<StillPicture>>> results_; // by request, until they are delivered
    std::vector<std::size_t> order_;                           // requests by time
    std::size_t delivered_ = 0;
    bool isDelivering_ = false;
};

} // namespace platform

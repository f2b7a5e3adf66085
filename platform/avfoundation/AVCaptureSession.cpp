// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVCaptureSession.h"

#include "platform/avfoundation/AVCaptureAuthorization.h"
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/CaptureHardware.h"
#include "platform/avfoundation/captureWish_p.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/ThreadPool_p.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <map>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>

namespace platform {

namespace {

// How long a device that is being closed is waited for by who opens it next.
constexpr std::chrono::seconds patience{5};

// Which use of each device was the last, in all sessions: a device is opened again only when it is closed.
class LastUses {
public:
    struct Use {
        std::stop_token stop;
        std::shared_future<void> end;
    };
    static LastUses& shared()
    {
        static auto& uses = *new LastUses; // threads ask until the process ends
        return uses;
    }
    // The one before, when there was one.
    Use replace(const std::string& device, Use use)
    {
        std::lock_guard lock(mutex_);
        return std::exchange(uses_[device], std::move(use));
    }

private:
    std::mutex mutex_;
    std::map<std::string, Use> uses_;
};

} // namespace

CaptureWish captureWish(AVCaptureSessionPreset preset)
{
    switch (preset) {
    case AVCaptureSessionPreset::photo:
        return {.width = 2560, .height = 1440, .frameRate = 24};
    case AVCaptureSessionPreset::high:
        return {.width = 1920, .height = 1080};
    case AVCaptureSessionPreset::hd1280x720:
    case AVCaptureSessionPreset::medium:
        return {.width = 1280, .height = 720};
    case AVCaptureSessionPreset::vga640x480:
    case AVCaptureSessionPreset::low:
        break;
    }
    return {.width = 640, .height = 480};
}

struct AVCaptureSession::Outputs {
    std::mutex mutex;
    std::vector<std::shared_ptr<AVCaptureOutput>> all; // guarded by mutex

    // Whom outputs hear, of each kind: one feed at a time, though one that was stopped may take its time to end.
    struct Turn {
        std::mutex mutex; // held while outputs are told
        const Feed* feed = nullptr;
    };
    Turn sound, pictures;

    Turn& turn(AVMediaType mediaType) { return mediaType == AVMediaType::audio ? sound : pictures; }

    std::vector<std::shared_ptr<AVCaptureOutput>> now()
    {
        std::lock_guard lock(mutex);
        return all;
    }
};

// One device while it runs.
struct AVCaptureSession::Feed {
    CaptureDeviceInfo device;
    CaptureWish wish;
    std::shared_ptr<CaptureHardware> hardware;
    std::shared_ptr<Outputs> outputs;
    std::function<void(const Error&)> onFailure; // on its thread
    LastUses::Use before;
    std::promise<void> ended;
    const std::shared_future<void> end = ended.get_future().share();
    std::atomic<bool> isRefused = false; // set before it is stopped for that
    std::stop_source stopping;           // its thread keeps the feed until it has ended, which may be never

    void run(const std::stop_token& stop)
    {
        if (before.end.valid() && before.stop.stop_requested())
            before.end.wait_for(
                patience); // also when stopped meanwhile: the next one waits for this one only
        auto error = begin(stop) ? capture(stop) : std::nullopt;
        if (isRefused)
            error = AVError::applicationIsNotAuthorizedToUseDevice;
        leave(error);
        if (error)
            onFailure(*error);
        ended.set_value();
    }

    // Whoever was heard until now was stopped before this was started, and is heard no more.
    bool begin(const std::stop_token& stop) const
    {
        auto& turn = outputs->turn(device.mediaType);
        std::lock_guard lock(turn.mutex);
        if (stop.stop_requested())
            return false;
        auto former = std::exchange(turn.feed, this);
        for (const auto& output : outputs->now()) {
            if (former)
                output->handleEnd(device.mediaType, std::nullopt);
            output->handleBegin(device.mediaType);
        }
        return true;
    }

    bool give(const CMSampleBuffer& sample, const std::stop_token& stop) const
    {
        auto& turn = outputs->turn(device.mediaType);
        std::lock_guard lock(turn.mutex);
        if (turn.feed != this || stop.stop_requested())
            return false;
        for (const auto& output : outputs->now())
            output->take(device.mediaType, sample);
        return true;
    }

    void leave(const std::optional<Error>& error) const
    {
        auto& turn = outputs->turn(device.mediaType);
        std::lock_guard lock(turn.mutex);
        if (turn.feed != this)
            return;
        turn.feed = nullptr;
        for (const auto& output : outputs->now())
            output->handleEnd(device.mediaType, error);
    }

    std::optional<Error> capture(const std::stop_token& stop) const
    {
        auto stream = hardware->open(device, wish, stop);
        CMTime last = CMTime::negativeInfinity();
        while (stream && !stop.stop_requested()) {
            auto sample = (*stream)->read(stop);
            if (!sample && !stop.stop_requested())
                return sample.error();
            if (!sample || !*sample)
                break;
            // The calendar's clock may be set back.
            if ((*sample)->presentationTimeStamp <= last)
                continue;
            last = (*sample)->presentationTimeStamp;
            if (!give(**sample, stop))
                break;
        }
        return stream || stop.stop_requested() ? std::nullopt : std::optional(stream.error());
    }
};

AVCaptureSession::AVCaptureSession()
    : outputs_(std::make_shared<Outputs>())
{
    assertOnMainThread();
}

AVCaptureSession::~AVCaptureSession()
{
    stopRunning();
}

void AVCaptureSession::setSessionPreset(AVCaptureSessionPreset preset)
{
    assertOnMainThread();
    preset_ = preset;
}

bool AVCaptureSession::canAddInput(const AVCaptureDeviceInput& input) const
{
    return std::ranges::none_of(entries_, [&](const Entry& entry) {
        return entry.input->device()->mediaType() == input.device()->mediaType();
    });
}

void AVCaptureSession::addInput(std::shared_ptr<AVCaptureDeviceInput> input)
{
    assertOnMainThread();
    precondition(canAddInput(*input), "a session has one device of each kind; canAddInput tells");
    entries_.push_back({std::move(input), nullptr});
    if (isRunning_)
        start(entries_.back());
}

void AVCaptureSession::removeInput(const AVCaptureDeviceInput& input)
{
    assertOnMainThread();
    auto found = std::ranges::find(entries_, &input, [](const Entry& entry) { return entry.input.get(); });
    if (found == entries_.end())
        return;
    stop(*found);
    entries_.erase(found);
}

std::vector<std::shared_ptr<AVCaptureDeviceInput>> AVCaptureSession::inputs() const
{
    std::vector<std::shared_ptr<AVCaptureDeviceInput>> inputs;
    for (const auto& entry : entries_)
        inputs.push_back(entry.input);
    return inputs;
}

void AVCaptureSession::addOutput(std::shared_ptr<AVCaptureOutput> output)
{
    assertOnMainThread();
    std::lock_guard lock(outputs_->mutex);
    outputs_->all.push_back(std::move(output));
}

void AVCaptureSession::removeOutput(const AVCaptureOutput& output)
{
    assertOnMainThread();
    std::lock_guard lock(outputs_->mutex);
    std::erase_if(outputs_->all, [&](const auto& each) { return each.get() == &output; });
}

void AVCaptureSession::startRunning()
{
    assertOnMainThread();
    if (std::exchange(isRunning_, true))
        return;
    authorization_ = AVCaptureAuthorization::shared().observe([weak = std::weak_ptr(sharedFrom(this))] {
        if (auto session = weak.lock())
            session->stopRefused();
    });
    for (auto& entry : entries_)
        start(entry);
}

void AVCaptureSession::stopRunning()
{
    assertOnMainThread();
    isRunning_ = false;
    authorization_ = {};
    for (auto& entry : entries_)
        stop(entry);
}

void AVCaptureSession::stopRefused()
{
    for (auto& entry : entries_) {
        auto mediaType = entry.input->device()->mediaType();
        if (!entry.feed
            || AVCaptureDevice::authorizationStatus(mediaType) == AVAuthorizationStatus::authorized)
            continue;
        entry.feed->isRefused = true;
        stop(entry);
    }
}

void AVCaptureSession::start(Entry& entry)
{
    auto device = entry.input->device();
    auto feed = std::make_shared<Feed>();
    feed->device = {device->uniqueID(), device->localizedName(), device->mediaType(), device->position()};
    feed->wish = captureWish(preset_);
    feed->hardware = CaptureHardware::current();
    feed->outputs = outputs_;
    auto self = sharedFrom(this);
    feed->onFailure = [weak = std::weak_ptr(self), device](const Error& error) {
        DispatchQueue::main()->async([weak, device, error] {
            auto session = weak.lock();
            if (auto told = session ? session->onRuntimeError : nullptr)
                told(*device, error);
        });
    };
    // It may have been taken back since the input was made.
    if (AVCaptureDevice::authorizationStatus(device->mediaType()) != AVAuthorizationStatus::authorized) {
        feed->isRefused = true;
        feed->stopping.request_stop();
    }
    entry.feed = feed;
    auto token = feed->stopping.get_token();
    feed->before = LastUses::shared().replace(device->uniqueID(), {token, feed->end});
    // Nobody joins it: a device that gives nothing may keep it for as long as it likes.
    std::thread([feed = std::move(feed), token] { feed->run(token); }).detach();
}

void AVCaptureSession::stop(Entry& entry)
{
    // Closing may take a while; whoever opens it next waits for it there.
    auto feed = std::exchange(entry.feed, nullptr);
    if (!feed)
        return;
    feed->stopping.request_stop();
    // It counts as work under way, but keeps no worker from others.
    DispatchQueue::make("org.zelk.avfoundation.capture-closing")->async([end = feed->end] {
        ThreadPool::Waiting waiting;
        end.wait_for(patience);
    });
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/avfoundation/SyntheticCapture.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/SyntheticPicture_p.h"
#include "platform/dispatch/Clock.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <map>
#include <utility>

namespace platform {

using namespace std::chrono_literals;

namespace {

constexpr CMTimeScale timescale = 90'000;
constexpr int soundRate = 48'000;
constexpr auto patience = 60s; // of whoever delivers; a reader that takes longer hangs

// `length` sample frames of a tone whose phase goes on from `first`.
CMSampleBuffer tone(std::int64_t first, std::int64_t length)
{
    auto bytes = std::make_shared<std::vector<std::byte>>(static_cast<std::size_t>(length) * 2);
    for (std::int64_t i = 0; i < length; ++i) {
        auto phase = 2 * M_PI * 440 * static_cast<double>(first + i) / soundRate;
        auto value = static_cast<std::int16_t>(std::lround(3000 * std::sin(phase)));
        std::memcpy(bytes->data() + i * 2, &value, 2);
    }
    static const auto format =
        CMFormatDescription::linearPCM({.sampleRate = soundRate, .channels = 1, .bitsPerChannel = 16});
    CMSampleBuffer sample;
    sample.formatDescription = format;
    sample.sampleCount = length;
    sample.data = {std::span<const std::byte>(*bytes), bytes};
    return sample;
}

} // namespace

struct SyntheticCapture::Desk {
    struct Opened {
        CaptureDeviceInfo device;
        double start = 0; // seconds
        int given = 0, wanted = 0;
        bool isWaiting = false; // a reader is
    };

    explicit Desk(Options its)
        : options(std::move(its))
        , devices(options.cameras)
    {
        if (options.hasMicrophone)
            devices.push_back({.uniqueID = std::string(microphoneID),
                               .name = "Microphone",
                               .mediaType = AVMediaType::audio});
    }

    bool has(const std::string& uniqueID) const
    {
        return std::ranges::any_of(devices, [&](const auto& each) { return each.uniqueID == uniqueID; });
    }
    // Watchers do not go while they are called; none of them may call back.
    void tellWatchers()
    {
        std::lock_guard lock(watching);
        for (const auto& [number, watcher] : watchers)
            watcher();
    }

    const Options options;
    mutable std::mutex mutex;
    std::condition_variable_any changed;
    // guarded by mutex
    std::vector<CaptureDeviceInfo> devices;
    std::vector<std::shared_ptr<Opened>> open;
    std::optional<Error> openFailure;
    double delivered = 0; // seconds, on demand
    // guarded by watching
    std::mutex watching;
    std::map<int, std::function<void()>> watchers;
    int nextWatcher = 0;
};

class SyntheticCapture::Stream : public CaptureStream {
public:
    Stream(std::shared_ptr<Desk> desk, std::shared_ptr<Desk::Opened> opened)
        : desk_(std::move(desk))
        , opened_(std::move(opened))
    {
        if (opened_->device.mediaType == AVMediaType::video)
            picture_.emplace(desk_->options.width, desk_->options.height, opened_->device.position);
    }
    ~Stream() override
    {
        std::lock_guard lock(desk_->mutex);
        std::erase(desk_->open, opened_);
        desk_->changed.notify_all();
    }
    Stream(const Stream&) = delete; // one reader
    Stream& operator=(const Stream&) = delete;

    Result<std::optional<CMSampleBuffer>> read(const std::stop_token& stop) override
    {
        auto number = TRY(take(stop));
        if (!number)
            return std::nullopt;
        const auto rate = desk_->options.frameRate;
        CMSampleBuffer sample;
        if (picture_) {
            sample.imageBuffer = picture_->draw(*number);
            if (!sample.imageBuffer)
                return failure(AVError::outOfMemory);
        } else {
            auto at = [&](int place) { return static_cast<std::int64_t>(soundRate / rate * place); };
            sample = tone(at(*number), at(*number + 1) - at(*number));
        }
        sample.presentationTimeStamp = CMTime::makeWithSeconds(opened_->start + *number / rate, timescale);
        sample.duration = CMTime::makeWithSeconds(1 / rate, timescale);
        return sample;
    }

private:
    // The number of the next one, when it is its time.
    Result<std::optional<int>> take(const std::stop_token& stop)
    {
        std::unique_lock lock(desk_->mutex);
        auto isGone = [&] { return !desk_->has(opened_->device.uniqueID); };
        opened_->isWaiting = true;
        desk_->changed.notify_all();
        if (desk_->options.pace == Pace::onDemand) {
            desk_->changed.wait(lock, stop, [&] { return opened_->wanted > 0 || isGone(); });
        } else {
            auto due = opened_->start + opened_->given / desk_->options.frameRate;
            auto now = std::chrono::duration<double>(SystemClock().now().time_since_epoch()).count();
            desk_->changed.wait_for(lock, stop, std::chrono::duration<double>(std::max(due - now, 0.0)),
                                    isGone);
        }
        opened_->isWaiting = false;
        if (stop.stop_requested())
            return std::nullopt;
        if (isGone())
            return failure(AVError::deviceWasDisconnected);
        opened_->wanted = std::max(opened_->wanted - 1, 0);
        return opened_->given++;
    }

    const std::shared_ptr<Desk> desk_;
    const std::shared_ptr<Desk::Opened> opened_; // guarded by the desk's mutex
    std::optional<SyntheticPicture> picture_;    // of a camera
};

SyntheticCapture::SyntheticCapture(Options options)
    : desk_(std::make_shared<Desk>(std::move(options)))
{
}

SyntheticCapture::~SyntheticCapture() = default;

std::vector<CaptureDeviceInfo> SyntheticCapture::devices(AVMediaType mediaType)
{
    std::lock_guard lock(desk_->mutex);
    std::vector<CaptureDeviceInfo> found;
    std::ranges::copy_if(desk_->devices, std::back_inserter(found),
                         [&](const auto& each) { return each.mediaType == mediaType; });
    return found;
}

Result<std::unique_ptr<CaptureStream>> SyntheticCapture::open(const CaptureDeviceInfo& device,
                                                              const CaptureWish&, const std::stop_token&)
{
    auto opened = std::make_shared<Desk::Opened>();
    opened->device = device;
    {
        std::lock_guard lock(desk_->mutex);
        if (desk_->openFailure)
            return std::unexpected(*desk_->openFailure);
        if (!desk_->has(device.uniqueID))
            return failure(AVError::deviceNotConnected);
        auto isOpen = [&](const auto& each) { return each->device.uniqueID == device.uniqueID; };
        if (std::ranges::any_of(desk_->open, isOpen))
            return failure(AVError::deviceInUseByAnotherApplication);
        opened->start = desk_->options.pace == Pace::onDemand
            ? desk_->delivered
            : std::chrono::duration<double>(SystemClock().now().time_since_epoch()).count();
        desk_->open.push_back(opened);
        desk_->changed.notify_all();
    }
    return std::make_unique<Stream>(desk_, opened);
}

Token SyntheticCapture::watch(std::function<void()> onChange)
{
    std::lock_guard lock(desk_->watching);
    auto number = desk_->nextWatcher++;
    desk_->watchers.emplace(number, std::move(onChange));
    return Token([desk = desk_, number] {
        std::lock_guard relock(desk->watching);
        desk->watchers.erase(number);
    });
}

void SyntheticCapture::deliver(int pictures, int openDevices)
{
    precondition(desk_->options.pace == Pace::onDemand, "pictures are asked for where they do not come");
    std::unique_lock lock(desk_->mutex);
    auto areOpen = desk_->changed.wait_for(
        lock, patience, [&] { return desk_->open.size() >= static_cast<std::size_t>(openDevices); });
    precondition(areOpen, "somebody opens the devices that are to deliver");
    auto asked = desk_->open;
    for (const auto& each : asked)
        each->wanted += pictures;
    desk_->delivered += pictures / desk_->options.frameRate;
    desk_->changed.notify_all();
    auto isTaken = [&](const auto& each) {
        auto isOpen = std::ranges::find(desk_->open, each) != desk_->open.end();
        return !isOpen || (each->wanted == 0 && each->isWaiting);
    };
    auto areTaken =
        desk_->changed.wait_for(lock, patience, [&] { return std::ranges::all_of(asked, isTaken); });
    precondition(areTaken, "somebody takes what the devices deliver");
}

void SyntheticCapture::unplug(std::string_view uniqueID)
{
    {
        std::lock_guard lock(desk_->mutex);
        std::erase_if(desk_->devices, [&](const auto& each) { return each.uniqueID == uniqueID; });
        desk_->changed.notify_all();
    }
    desk_->tellWatchers();
}

void SyntheticCapture::plugIn(const CaptureDeviceInfo& device)
{
    {
        std::lock_guard lock(desk_->mutex);
        desk_->devices.push_back(device);
    }
    desk_->tellWatchers();
}

void SyntheticCapture::setOpenFailure(std::optional<Error> error)
{
    std::lock_guard lock(desk_->mutex);
    desk_->openFailure = std::move(error);
}

int SyntheticCapture::openStreamCount() const
{
    std::lock_guard lock(desk_->mutex);
    return static_cast<int>(desk_->open.size());
}

int SyntheticCapture::numberOf(const std::byte* luma, std::size_t bytesPerRow, int width, int height)
{
    return SyntheticPicture::numberOf(luma, bytesPerRow, width, height);
}

} // namespace platform

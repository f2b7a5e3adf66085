// SPDX-License-Identifier: MIT
#include "platform/avfoundation/DesktopCapture_p.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/FFmpegCapture_p.h"
#include "platform/avfoundation/V4L2Camera_p.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <thread>

namespace platform {

namespace {

constexpr std::string_view microphoneID = "default";

bool hasPulse()
{
    if (const char* server = std::getenv("PULSE_SERVER"); server && *server)
        return true;
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    std::error_code isGone;
    return folder && std::filesystem::exists(std::filesystem::path(folder) / "pulse" / "native", isGone);
}

// A card that can record: "pcmC0D0c".
bool hasRecordingCard()
{
    std::error_code isGone;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/snd", isGone)) {
        auto name = entry.path().filename().string();
        if (name.starts_with("pcm") && name.ends_with('c'))
            return true;
    }
    return false;
}

// The same camera keeps it where it is plugged in again.
std::string identityOf(const V4L2Camera& camera)
{
    auto identity = camera.bus.empty() ? camera.path : camera.bus;
    return identity.append(" ").append(camera.name);
}

Result<std::unique_ptr<CaptureStream>> openCamera(const std::string& path, const CaptureWish& wish,
                                                  const std::stop_token& stop)
{
    // Times by the calendar's clock, which sound has too.
    FFmpegCaptureInput input{.format = "v4l2", .device = path, .options = {{"timestamps", "abs"}}};
    if (auto format = bestCaptureFormat(v4l2Formats(path), wish)) {
        input.options.emplace_back("input_format", format->pixels);
        input.options.emplace_back(
            "video_size", std::to_string(format->width).append("x").append(std::to_string(format->height)));
        if (format->frameRate > 0)
            input.options.emplace_back("framerate",
                                       std::to_string(std::min(format->frameRate, wish.frameRate)));
    }
    return openFFmpegCapture(input, stop);
}

Result<std::unique_ptr<CaptureStream>> openMicrophone(const std::stop_token& stop)
{
    using Options = decltype(FFmpegCaptureInput::options);
    // Of 20 ms; the sound server's own are far longer.
    const Options shortFragments{{"fragment_size", "3840"}}, none;
    Result<std::unique_ptr<CaptureStream>> stream = failure(AVError::deviceNotConnected);
    for (const char* format : {"pulse", "alsa"}) {
        if (std::string_view(format) == "pulse" ? hasPulse() : hasRecordingCard())
            stream =
                openFFmpegCapture({.format = format,
                                   .device = std::string(microphoneID),
                                   .options = format == std::string_view("pulse") ? shortFragments : none,
                                   .mediaType = AVMediaType::audio},
                                  stop);
        if (stream)
            break;
    }
    return stream;
}

// Owns the kernel's watch and the thread that waits for it.
class Watch {
public:
    Watch(const std::string& folder, std::function<void()> onChange)
        : changes_(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
        , end_(::eventfd(0, EFD_CLOEXEC))
    {
        if (changes_ < 0 || end_ < 0
            || ::inotify_add_watch(changes_, folder.c_str(),
                                   IN_CREATE | IN_DELETE | IN_ATTRIB | IN_MOVED_FROM | IN_MOVED_TO)
                < 0)
            return;
        thread_ = std::thread([this, onChange = std::move(onChange)] { run(onChange); });
    }
    ~Watch()
    {
        if (thread_.joinable()) {
            std::uint64_t one = 1;
            while (::write(end_, &one, sizeof one) < 0 && errno == EINTR) { }
            thread_.join();
        }
        for (int each : {changes_, end_}) {
            if (each >= 0)
                ::close(each);
        }
    }
    Watch(const Watch&) = delete; // its thread refers to it
    Watch& operator=(const Watch&) = delete;

private:
    void run(const std::function<void()>& onChange)
    {
        std::array<pollfd, 2> waited{pollfd{changes_, POLLIN, 0}, pollfd{end_, POLLIN, 0}};
        while (::poll(waited.data(), waited.size(), -1) >= 0 || errno == EINTR) {
            if (waited[1].revents)
                return;
            if (waited[0].revents && readNames())
                onChange();
        }
    }
    // Whether one of them may be a camera's.
    bool readNames() const
    {
        alignas(inotify_event) std::array<char, 4096> bytes;
        bool concerns = false;
        for (ssize_t size = 0; (size = ::read(changes_, bytes.data(), bytes.size())) > 0;) {
            for (ssize_t place = 0; place < size;) {
                const auto* event = reinterpret_cast<const inotify_event*>(bytes.data() + place);
                concerns |= event->len > 0 && std::string_view(event->name).starts_with("video");
                place += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
        return concerns;
    }

    const int changes_, end_;
    std::thread thread_;
};

} // namespace

Token watchDevices(const std::string& folder, std::function<void()> onChange)
{
    auto watch = std::make_unique<Watch>(folder, std::move(onChange));
    return Token([watch = std::move(watch)]() mutable { watch.reset(); });
}

// One file a camera: a device whose second file captures too is one camera.
std::vector<V4L2Camera> DesktopCapture::cameras()
{
    std::lock_guard lock(mutex_);
    std::vector<V4L2Camera> cameras;
    for (auto& camera : cameras_.now()) {
        auto isSame = [&](const V4L2Camera& other) { return identityOf(other) == identityOf(camera); };
        if (std::ranges::none_of(cameras, isSame))
            cameras.push_back(std::move(camera));
    }
    return cameras;
}

std::vector<CaptureDeviceInfo> DesktopCapture::devices(AVMediaType mediaType)
{
    std::vector<CaptureDeviceInfo> found;
    if (mediaType == AVMediaType::audio && (hasPulse() || hasRecordingCard()))
        found.push_back(
            {.uniqueID = std::string(microphoneID), .name = "Microphone", .mediaType = mediaType});
    if (mediaType == AVMediaType::video) {
        for (auto& camera : cameras())
            found.push_back({.uniqueID = identityOf(camera),
                             .name = camera.name,
                             .mediaType = mediaType,
                             .position = camera.position});
    }
    return found;
}

Result<std::unique_ptr<CaptureStream>>
DesktopCapture::open(const CaptureDeviceInfo& device, const CaptureWish& wish, const std::stop_token& stop)
{
    if (device.mediaType == AVMediaType::audio)
        return openMicrophone(stop);
    auto known = cameras();
    auto found = std::ranges::find(known, device.uniqueID, identityOf);
    if (found == known.end())
        return failure(AVError::deviceNotConnected);
    return openCamera(found->path, wish, stop);
}

Token DesktopCapture::watch(std::function<void()> onChange)
{
    return watchDevices("/dev", std::move(onChange));
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/avfoundation/V4L2Camera_p.h"

#include <fcntl.h>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>

namespace platform {

namespace {

constexpr unsigned videoMajor = 81; // of the kernel's list of devices
constexpr unsigned mostFormats = 64, mostSizes = 256, mostRates = 64;

class Descriptor {
public:
    // Regular files, directories and pipes are not opened.
    explicit Descriptor(const std::string& path)
    {
        struct stat status{};
        if (::stat(path.c_str(), &status) == 0 && S_ISCHR(status.st_mode)
            && major(status.st_rdev) == videoMajor)
            number_ = ::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    }
    ~Descriptor()
    {
        if (number_ >= 0)
            ::close(number_);
    }
    Descriptor(const Descriptor&) = delete; // it is closed once
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const { return number_ >= 0; }
    bool ask(unsigned long request, void* argument) const
    {
        int result = 0;
        do
            result = ::ioctl(number_, request, argument);
        while (result < 0 && errno == EINTR);
        return result >= 0;
    }

private:
    int number_ = -1;
};

template <std::size_t size>
std::string textOf(const std::uint8_t (&letters)[size])
{
    const auto* text = reinterpret_cast<const char*>(letters);
    return std::string(text, ::strnlen(text, size));
}

// "front", "back", ... where the firmware describes the machine.
std::string panelOf(const std::string& path)
{
    auto folder =
        std::filesystem::path("/sys/class/video4linux") / std::filesystem::path(path).filename() / "device";
    std::error_code isGone;
    folder = std::filesystem::canonical(folder, isGone);
    for (int level = 0; level < 4 && !isGone && folder.has_relative_path(); ++level) {
        std::string panel;
        if (std::ifstream(folder / "physical_location" / "panel") >> panel)
            return panel;
        folder = folder.parent_path();
    }
    return {};
}

double rateOf(const Descriptor& camera, std::uint32_t fourCC, std::uint32_t width, std::uint32_t height)
{
    double most = 0;
    for (std::uint32_t index = 0; index < mostRates; ++index) {
        v4l2_frmivalenum interval{};
        interval.index = index;
        interval.pixel_format = fourCC;
        interval.width = width;
        interval.height = height;
        if (!camera.ask(VIDIOC_ENUM_FRAMEINTERVALS, &interval))
            break;
        auto shortest =
            interval.type == V4L2_FRMIVAL_TYPE_DISCRETE ? interval.discrete : interval.stepwise.min;
        if (shortest.numerator > 0)
            most = std::max(most, static_cast<double>(shortest.denominator) / shortest.numerator);
        if (interval.type != V4L2_FRMIVAL_TYPE_DISCRETE)
            break;
    }
    return most;
}

void addSizes(const Descriptor& camera, std::uint32_t fourCC, const char* pixels,
              std::vector<CaptureFormat>& formats)
{
    auto add = [&](std::uint32_t width, std::uint32_t height) {
        formats.push_back({pixels, static_cast<int>(width), static_cast<int>(height),
                           rateOf(camera, fourCC, width, height)});
    };
    for (std::uint32_t index = 0; index < mostSizes; ++index) {
        v4l2_frmsizeenum size{};
        size.index = index;
        size.pixel_format = fourCC;
        if (!camera.ask(VIDIOC_ENUM_FRAMESIZES, &size))
            return;
        if (size.type == V4L2_FRMSIZE_TYPE_DISCRETE) {
            add(size.discrete.width, size.discrete.height);
            continue;
        }
        // Any size: the usual ones.
        for (auto [width, height] :
             {std::pair{640u, 480u}, {1280u, 720u}, {1920u, 1080u}, {2560u, 1440u}, {3840u, 2160u}}) {
            if (width >= size.stepwise.min_width && width <= size.stepwise.max_width
                && height >= size.stepwise.min_height && height <= size.stepwise.max_height)
                add(width, height);
        }
        return;
    }
}

} // namespace

AVCaptureDevicePosition cameraPosition(std::string_view name, std::string_view panel)
{
    using Position = AVCaptureDevicePosition;
    if (panel == "front" || panel == "back")
        return panel == "front" ? Position::front : Position::back;
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(), [](unsigned char letter) {
        return static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter + 32 : letter);
    });
    auto says = [&](std::string_view word) { return lower.find(word) != lower.npos; };
    if (says("front") || says("user facing") || says("user-facing"))
        return Position::front;
    if (says("rear") || says("back camera") || says("world facing") || says("world-facing"))
        return Position::back;
    return Position::unspecified;
}

V4L2Answer askV4L2(const std::string& path)
{
    Descriptor camera(path);
    v4l2_capability capability{};
    if (!camera || !camera.ask(VIDIOC_QUERYCAP, &capability))
        return {};
    auto can =
        capability.capabilities & V4L2_CAP_DEVICE_CAPS ? capability.device_caps : capability.capabilities;
    // What takes pictures only becomes a camera, with some drivers, when somebody gives it some.
    constexpr auto isConverter = V4L2_CAP_VIDEO_M2M | V4L2_CAP_VIDEO_M2M_MPLANE | V4L2_CAP_META_CAPTURE;
    if (!(can & V4L2_CAP_VIDEO_CAPTURE) || !(can & V4L2_CAP_STREAMING)
        || (can & (isConverter | V4L2_CAP_VIDEO_OUTPUT)))
        return {.camera = std::nullopt, .isLasting = (can & isConverter) != 0};
    auto name = textOf(capability.card);
    return {.camera = V4L2Camera{.path = path,
                                 .name = name,
                                 .bus = textOf(capability.bus_info),
                                 .position = cameraPosition(name, panelOf(path))},
            .isLasting = true};
}

std::optional<V4L2Camera> v4l2CameraAt(const std::string& path)
{
    return askV4L2(path).camera;
}

V4L2Cameras::V4L2Cameras(std::string folder, Question question)
    : folder_(std::move(folder))
    , question_(std::move(question))
{
}

std::vector<V4L2Camera> V4L2Cameras::now()
{
    std::map<unsigned, std::string> paths;
    std::error_code isGone;
    constexpr std::string_view prefix = "video";
    for (const auto& entry : std::filesystem::directory_iterator(folder_, isGone)) {
        auto name = entry.path().filename().string();
        unsigned number = 0;
        if (!name.starts_with(prefix))
            continue;
        auto end = name.data() + name.size();
        auto read = std::from_chars(name.data() + prefix.size(), end, number);
        if (read.ec == std::errc() && read.ptr == end)
            paths.emplace(number, entry.path().string());
    }
    std::vector<V4L2Camera> cameras;
    std::map<std::string, Known> known;
    for (const auto& [number, path] : paths) {
        struct stat status{};
        if (::stat(path.c_str(), &status) != 0)
            continue;
        // A plug that was pulled and put back, or other permissions, are another state of the file.
        Known now{.device = status.st_rdev,
                  .changed = status.st_ctim.tv_sec * 1'000'000'000LL + status.st_ctim.tv_nsec};
        auto before = known_.find(path);
        auto isSame = before != known_.end() && before->second.device == now.device
            && before->second.changed == now.changed;
        auto answer = isSame ? V4L2Answer{before->second.camera, true} : question_(path);
        now.camera = std::move(answer.camera);
        if (now.camera)
            cameras.push_back(*now.camera);
        if (answer.isLasting)
            known.emplace(path, std::move(now));
    }
    known_ = std::move(known);
    return cameras;
}

std::vector<CaptureFormat> v4l2Formats(const std::string& path)
{
    std::vector<CaptureFormat> formats;
    Descriptor camera(path);
    for (std::uint32_t index = 0; camera && index < mostFormats; ++index) {
        v4l2_fmtdesc format{};
        format.index = index;
        format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        if (!camera.ask(VIDIOC_ENUM_FMT, &format))
            break;
        if (const auto* pixels = capturePixels(format.pixelformat))
            addSizes(camera, format.pixelformat, pixels, formats);
    }
    return formats;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/avfoundation/CaptureHardware.h"

#include "platform/avfoundation/DesktopCapture_p.h"
#include "platform/avfoundation/SyntheticCapture.h"

#include <cstdlib>
#include <mutex>
#include <string_view>
#include <utility>

namespace platform {

namespace {

struct Place {
    std::mutex mutex;
    std::shared_ptr<CaptureHardware> own; // the machine's
    std::shared_ptr<CaptureHardware> other;
};

Place& place()
{
    static auto& place = *new Place; // threads of sessions may ask until the process ends
    return place;
}

} // namespace

std::shared_ptr<CaptureHardware> CaptureHardware::current()
{
    std::lock_guard lock(place().mutex);
    if (place().other)
        return place().other;
    if (!place().own) {
        const char* variable = std::getenv("ZELK_CAPTURE");
        const std::string_view wanted = variable ? variable : "";
        if (wanted == "synthetic")
            place().own = std::make_shared<SyntheticCapture>();
        else if (wanted == "none")
            place().own = std::make_shared<SyntheticCapture>(
                SyntheticCapture::Options{.cameras = {}, .hasMicrophone = false});
        else
            place().own = std::make_shared<DesktopCapture>();
    }
    return place().own;
}

void CaptureHardware::replace(std::shared_ptr<CaptureHardware> hardware)
{
    std::lock_guard lock(place().mutex);
    place().other.swap(hardware); // the former goes after the lock
}

} // namespace platform

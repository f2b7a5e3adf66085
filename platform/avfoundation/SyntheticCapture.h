// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/CaptureHardware.h"

#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Cameras and a microphone that nobody has to buy: each camera shows a landscape over whose sky a sun goes, with the number of
// the picture in a row of bright and dark squares below, which can be read back from what was recorded; the microphone gives a
// quiet tone. They are there only for who asks for them by name: see CaptureHardware::current. Any thread.
class SyntheticCapture : public CaptureHardware {
public:
    enum class Pace {
        realTime, // as many a second as a camera gives
        onDemand, // when deliver() says so; times go on as in real time
    };
    struct Options {
        std::vector<CaptureDeviceInfo> cameras{
            {.uniqueID = "synthetic:back", .name = "Back Camera", .position = AVCaptureDevicePosition::back},
            {.uniqueID = "synthetic:front",
             .name = "Front Camera",
             .position = AVCaptureDevicePosition::front}};
        bool hasMicrophone = true;
        Pace pace = Pace::realTime;
        int width = 1280;
        int height = 720;
        double frameRate = 30;
    };
    SyntheticCapture()
        : SyntheticCapture(Options{})
    {
    }
    explicit SyntheticCapture(Options options);
    ~SyntheticCapture() override;

    std::vector<CaptureDeviceInfo> devices(AVMediaType mediaType) override;
    Result<std::unique_ptr<CaptureStream>> open(const CaptureDeviceInfo& device, const CaptureWish& wish,
                                                const std::stop_token& stop) override;
    Token watch(std::function<void()> onChange) override;

    // --- What a hand does to the desk ----------------------------------------------------------------
    // Waits until so many devices are open, then lets each give so many pictures, or sound that lasts as long, and returns when
    // whoever reads has taken them, or stopped. Requires: on demand. Not from a thread that reads.
    void deliver(int pictures, int openDevices = 1);
    // Its streams end with AVError::deviceWasDisconnected at their next picture.
    void unplug(std::string_view uniqueID);
    void plugIn(const CaptureDeviceInfo& device);
    // How opening fails from now on; nothing: it does not.
    void setOpenFailure(std::optional<Error> error);
    int openStreamCount() const;

    static constexpr std::string_view microphoneID = "synthetic:microphone";

    // The number that a picture of such a camera carries, from its brightness (a byte a pixel); -1 when it carries none.
    static int numberOf(const std::byte* luma, std::size_t bytesPerRow, int width, int height);

private:
    class Stream;
    struct Desk;
    const std::shared_ptr<Desk> desk_; // streams may outlive this
};

} // namespace platform

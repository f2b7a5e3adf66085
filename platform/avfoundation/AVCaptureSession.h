// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVCaptureDeviceInput.h"
#include "platform/avfoundation/AVCaptureOutput.h"
#include "platform/foundation/NSUserDefaults.h"

#include <functional>
#include <memory>
#include <vector>

namespace platform {

// How large pictures should be; a device gives what comes nearest, and movies are made no larger.
enum class AVCaptureSessionPreset {
    photo, // as large as is still smooth
    high,  // 1920 x 1080
    hd1280x720,
    vga640x480,
    medium, // as hd1280x720
    low     // as vga640x480
};

// Brings what devices give to outputs. Each device has a thread of its own on which it is opened, waited for and closed, so
// nothing here waits. Main thread only.
class AVCaptureSession : public NSObject {
public:
    AVCaptureSession();
    ~AVCaptureSession() override; // as stopRunning

    AVCaptureSessionPreset sessionPreset() const { return preset_; }
    void setSessionPreset(AVCaptureSessionPreset preset); // of devices added and started from now on

    // At most one device of a media type.
    bool canAddInput(const AVCaptureDeviceInput& input) const;
    void
    addInput(std::shared_ptr<AVCaptureDeviceInput> input); // starts it while running. Requires canAddInput.
    void removeInput(const AVCaptureDeviceInput& input);   // stops it while running
    std::vector<std::shared_ptr<AVCaptureDeviceInput>> inputs() const;

    void addOutput(std::shared_ptr<AVCaptureOutput> output);
    void removeOutput(const AVCaptureOutput& output);

    // Opens the devices; what fails is told by onRuntimeError.
    void startRunning();
    // Devices are closed soon after. Outputs hear that it has ended.
    void stopRunning();
    bool isRunning() const { return isRunning_; }

    // A device could not be opened or has ended by itself, or the user no longer allows its use
    // (AVError::applicationIsNotAuthorizedToUseDevice); its input is still there, and the others go on.
    std::function<void(const AVCaptureDevice&, const Error&)> onRuntimeError;

private:
    struct Feed;
    struct Outputs;
    struct Entry {
        std::shared_ptr<AVCaptureDeviceInput> input;
        std::shared_ptr<Feed> feed; // null while it does not run
    };
    void start(Entry& entry);
    static void stop(Entry& entry);
    void stopRefused();

    AVCaptureSessionPreset preset_ = AVCaptureSessionPreset::high;
    std::vector<Entry> entries_;
    const std::shared_ptr<Outputs> outputs_;
    bool isRunning_ = false;
    NSUserDefaults::Observation authorization_; // while it runs
};

} // namespace platform

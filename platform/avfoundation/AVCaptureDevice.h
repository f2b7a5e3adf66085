// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVMediaType.h"
#include "platform/dispatch/Token.h"
#include "platform/foundation/NSObject.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

// Where a camera looks, seen from the user who sits before the machine: front is towards the user.
enum class AVCaptureDevicePosition { unspecified = 0, back = 1, front = 2 };

// Whether the program may use a kind of device. The numbers are the platform's.
enum class AVAuthorizationStatus : long { notDetermined = 0, restricted = 1, denied = 2, authorized = 3 };

// A camera or a microphone of the machine, as it was when it was found. Any thread unless said otherwise.
class AVCaptureDevice : public NSObject {
public:
    // Those that are connected and really capture: the built-in first, then in the order the system numbers them. Looks each
    // time, which opens no stream. Of other media than pictures and sound there are none.
    static std::vector<std::shared_ptr<AVCaptureDevice>> devices(AVMediaType mediaType);
    // The first that looks there, else the first; null when there is none at all.
    static std::shared_ptr<AVCaptureDevice>
    defaultDevice(AVMediaType mediaType,
                  AVCaptureDevicePosition position = AVCaptureDevicePosition::unspecified);
    // Calls `onChange` when a device may have come or gone, until the token goes. Main thread only.
    [[nodiscard]] static Token observeDevices(std::function<void()> onChange);

    // Never asks. Any thread; what was taken back counts at once.
    static AVAuthorizationStatus authorizationStatus(AVMediaType mediaType);
    // Asks the user when nothing is known yet, see AVCaptureAuthorization.h; `handler` is called once, later, on the main
    // thread, with whether the program may.
    static void requestAccess(AVMediaType mediaType, std::function<void(bool)> handler);

    const std::string& uniqueID() const { return uniqueID_; } // the same when it is plugged in again
    const std::string& localizedName() const { return name_; }
    AVMediaType mediaType() const { return mediaType_; }
    AVCaptureDevicePosition position() const
    {
        return position_;
    } // unspecified where the machine does not say
    bool isConnected() const; // looks

    AVCaptureDevice(std::string uniqueID, std::string name, AVMediaType mediaType,
                    AVCaptureDevicePosition position);

private:
    const std::string uniqueID_, name_;
    const AVMediaType mediaType_;
    const AVCaptureDevicePosition position_;
};

} // namespace platform

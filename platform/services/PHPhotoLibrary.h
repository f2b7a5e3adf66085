// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "platform/foundation/NSObject.h"
#include "platform/services/PHAuthorizationStatus.h"

#include <functional>
#include <memory>
#include <optional>

namespace platform {

class DispatchQueue;

// The user's photos and videos: the folders that the desktop has for pictures and videos, which every program of the user
// shares. Any thread; what it calls back comes on a queue of its own.
class PHPhotoLibrary : public NSObject {
public:
    static const std::shared_ptr<PHPhotoLibrary>& shared();

    // Never asks.
    static PHAuthorizationStatus authorizationStatus(PHAccessLevel level);
    // Asks the user when nothing is known yet; `handler` is called once, later. The main run loop must be taking turns.
    static void requestAuthorization(PHAccessLevel level, std::function<void(PHAuthorizationStatus)> handler);

    // Calls `changes`, which makes change requests (PHAssetChangeRequest.h), and then carries out all of them or none:
    // copies are made beside their places, checked and brought to the disk, and get their names at the end. Nothing that
    // is there is replaced; a name that is taken gets a number. Then `completion`, which may be empty, is called once with
    // whether it went well, and with the error if not. A folder that is missing is made when its parent is there. One
    // change after the other, also with other programs' at the same time.
    //
    // Errors of PHPhotosErrorDomain: accessUserDenied (also when the user has not been asked) and accessRestricted,
    // missingResource (no file that can be read), invalidResource (no picture, no video, or cut off), notEnoughSpace,
    // changeNotSupported (read-only), libraryVolumeOffline (the folder is gone), internalError. What the system said is
    // in the texts.
    void performChanges(std::function<void()> changes,
                        std::function<void(bool, const std::optional<Error>&)> completion);

private:
    struct Token { }; // makes the constructor ours alone, yet open to std::make_shared

public:
    explicit PHPhotoLibrary(Token);

private:
    // fixed after construction
    const std::shared_ptr<DispatchQueue> queue_;
};

} // namespace platform

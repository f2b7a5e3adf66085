// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/UserPermission.h"
#include "platform/services/PHAuthorizationStatus.h"
#include "platform/services/PHPhotosQuestion.h"

#include <functional>
#include <memory>

namespace platform {

class DispatchQueue;

// What the user allowed this program, kept among its settings under "PHPhotoLibrary.addOnly" and
// "PHPhotoLibrary.readWrite" as the number of the status, so that it can be taken back there too; asked once a level.
// Whoever administers the machine forbids it to all programs by a property list zelk/restrictions.plist in a folder of
// XDG_CONFIG_DIRS whose PhotoLibraryRestricted is true.
class PHPhotosAuthorization {
public:
    using Handler = std::function<void(PHAuthorizationStatus)>;

    static PHPhotosAuthorization& shared();

    // Who may read may add. Looks at the settings each time: what was taken back counts at once. Any thread.
    PHAuthorizationStatus status(PHAccessLevel level) const;
    // What the user chose elsewhere, on a page of settings; notDetermined: the next request asks again. Any thread.
    // Requires: not restricted.
    void setStatus(PHAuthorizationStatus status, PHAccessLevel level);

    // Asks the user if nothing is known yet: requests that come while the question stands share its answer. `handler` is
    // called once, later, on `queue`. When nobody can be asked it is told denied, and nothing is remembered. Any thread; the
    // main run loop must be taking turns.
    void request(PHAccessLevel level, std::shared_ptr<DispatchQueue> queue, Handler handler);

    // Who asks; null: an alert. Main thread only.
    void setQuestion(std::shared_ptr<PHPhotosQuestion> question);

private:
    PHPhotosAuthorization();
    const UserPermission& of(PHAccessLevel level) const;
    UserPermission& of(PHAccessLevel level);

    UserPermission reading_;
    UserPermission adding_;
    std::shared_ptr<PHPhotosQuestion> question_; // main thread only
};

} // namespace platform

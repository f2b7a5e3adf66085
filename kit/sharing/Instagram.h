// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/LocalizedError.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"

namespace zelk {

// Handing media to the Instagram app. Main thread only.
struct Instagram {
    enum class InstagramError {
        cannotOpenURL,
    };

    Instagram() = delete;

    // Whether something opens the app's Stories URL. Looked up at the first call of the process and never again: what is
    // installed later counts from the next start.
    static bool canShareToInstagramStories();

    // Puts the video, mapped and unread, on the general pasteboard for 300 seconds, for this machine only, and opens the
    // Stories URL without waiting; whether the app comes is not known. Only whole files: a file that changes before
    // somebody pastes is pasted as it is then. Errors: cannotOpenURL when canShareToInstagramStories() says no; the
    // file-read codes. The pasteboard then has what it had.
    [[nodiscard]] static platform::Result<void> shareMediaFileURLToInstagramStories(const platform::URL& url);
};

// Only the description is there, in the user's language. Any thread.
platform::LocalizedError localizedError(Instagram::InstagramError error);
platform::NSError nsError(Instagram::InstagramError error);

} // namespace zelk

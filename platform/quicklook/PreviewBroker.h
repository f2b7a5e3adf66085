// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/TextEncoding.h"
#include "platform/foundation/URL.h"

#include <optional>

namespace platform {

// A small process beside a preview that does, for one file, the two things that the preview gives up for good: to open it
// in the desktop's program for it, and to keep an encoding with it. It understands nothing else, and ends with the
// preview. Main thread only.
class PreviewBroker {
public:
    // Requires: the process has no further threads, and may still start programs. Without a broker, where none could be
    // started, requests fail.
    explicit PreviewBroker(const URL& file);
    // For a file that is chosen later.
    PreviewBroker();
    PreviewBroker(const PreviewBroker&) = delete; // owns the connection
    PreviewBroker& operator=(const PreviewBroker&) = delete;
    ~PreviewBroker();

    // Once, before the file is opened: from then on the broker has ears for no other.
    void setFile(const URL& file);

    // Each waits for the answer, a quarter of a second at most; false when it failed. A program that is still running
    // after a tenth of a second counts as opened.
    bool openWithDefaultProgram();
    bool keepEncoding(std::optional<TextEncoding> encoding); // none: forgets it

private:
    void start(std::optional<URL> file);
    bool request(unsigned char command, unsigned char argument);

    int connection_ = -1;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"
#include "platform/uikit/URLOpener.h"

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tests {

// A desktop that has programs for some schemes, and keeps what it was asked to open.
class RecordingURLOpener : public platform::URLOpener {
public:
    explicit RecordingURLOpener(std::set<std::string> known)
        : schemes(std::move(known))
    {
    }
    bool canOpen(const platform::URL& url) const override
    {
        asked.push_back(url.absoluteString());
        return schemes.contains(url.scheme());
    }
    void open(const platform::URL& url, std::function<void(bool)> completion) override
    {
        opened.push_back(url.absoluteString());
        if (completion)
            completion(schemes.contains(url.scheme()));
    }

    std::set<std::string> schemes;
    mutable std::vector<std::string> asked;
    std::vector<std::string> opened;
};

} // namespace tests

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Clock.h"
#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/EnvironmentValues.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace gallery {

// One thing to see on a page. Its title is that of the marked code in the page's source.
struct Exhibit {
    std::string title;
    std::string note; // what to look at, or to try; may be empty
    platform::AnyView view;
};

struct Page {
    std::string name; // on the command line, of pictures and of the page's source
    std::string title;
    std::string group;
    std::string symbol; // of the sidebar
    std::string summary;
    std::function<std::vector<Exhibit>()> exhibits;
    // When its picture is taken, after it has appeared: what moves is on its way then, what comes has come.
    platform::Duration moment = std::chrono::milliseconds{2900};
};

// Whether views shall show at once what takes a hand to get at, for a picture: an alert, an open sheet.
struct IsPosedKey : platform::environment_keys::Key<bool, false> { };

} // namespace gallery

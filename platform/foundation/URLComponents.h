// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"

#include <optional>
#include <string>
#include <vector>

namespace platform {

// One name, and mostly a value, of a URL's query; neither is percent-encoded.
struct URLQueryItem {
    std::string name;
    std::optional<std::string> value;

    bool operator==(const URLQueryItem&) const = default;
};

// The parts that a URL is made of, without percent-encoding. A value.
struct URLComponents {
    std::string scheme;
    std::string path; // after the colon: a path, an address, a number
    std::vector<URLQueryItem> queryItems = {};

    // The parts together, each percent-encoded where its place in the URL asks for that: in query items also "&", "=",
    // ";" and "+", so that they arrive whoever reads them. Nothing when the scheme is none, or the path would be read as a
    // host.
    std::optional<URL> url() const;

    bool operator==(const URLComponents&) const = default;
};

} // namespace platform

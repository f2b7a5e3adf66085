// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/URL.h"

#include <cstdint>
#include <string>

namespace platform {

inline constexpr std::int64_t URLResponseUnknownLength = -1;

// What a server said about the bytes that follow. Never changes; shared between threads.
class URLResponse {
public:
    URLResponse(URL url, std::string mimeType, std::int64_t expectedContentLength,
                std::string textEncodingName);
    virtual ~URLResponse();
    // Handed about by pointer: a copy would lose what a subclass knows.
    URLResponse(const URLResponse&) = delete;
    URLResponse& operator=(const URLResponse&) = delete;

    // Of the last request, after redirections.
    const URL& url() const { return url_; }
    // Lower case, without parameters; empty when the server did not say.
    const std::string& mimeType() const { return mimeType_; }
    // Bytes; URLResponseUnknownLength when the server did not say, or the body comes encoded.
    std::int64_t expectedContentLength() const { return expectedContentLength_; }
    // As the server wrote it; empty when it did not say.
    const std::string& textEncodingName() const { return textEncodingName_; }
    // A name for the file: what the server proposes, else the last component of the URL's path, else its host, else
    // "unknown"; never with a slash, never "." or "..", without control characters.
    virtual std::string suggestedFilename() const;

private:
    // fixed after construction
    URL url_;
    std::string mimeType_;
    std::int64_t expectedContentLength_;
    std::string textEncodingName_;
};

} // namespace platform

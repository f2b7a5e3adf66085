// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/HTTPHeaderFields.h"
#include "platform/network/URLResponse.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

struct ContentType;

// The head of an HTTP answer. Never changes; shared between threads.
class HTTPURLResponse final : public URLResponse {
public:
    // The type, the length and the encoding of the text are read from `fields`. `httpVersion` is "HTTP/1.1" or "HTTP/2".
    HTTPURLResponse(URL url, int statusCode, std::string httpVersion, HTTPHeaderFields fields);

    int statusCode() const { return statusCode_; }
    const std::string& httpVersion() const { return httpVersion_; }
    const HTTPHeaderFields& allHeaderFields() const { return fields_; }
    std::optional<std::string> value(std::string_view field) const
    {
        return valueForHTTPHeaderField(fields_, field);
    }
    std::string suggestedFilename() const override;

    // What a status code means, for people: "not found" of 404; of a code that nobody has defined, what its class means.
    static std::string localizedStringForStatusCode(int statusCode);

private:
    HTTPURLResponse(URL url, ContentType type, int statusCode, std::string httpVersion,
                    HTTPHeaderFields&& fields); // by reference: `type` is read from them in the same call

    // fixed after construction
    int statusCode_;
    std::string httpVersion_;
    HTTPHeaderFields fields_;
};

} // namespace platform

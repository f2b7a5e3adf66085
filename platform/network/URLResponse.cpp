// SPDX-License-Identifier: MIT
#include "platform/network/URLResponse.h"

#include "platform/network/HTTPMessage_p.h"

#include <utility>

namespace platform {

URLResponse::URLResponse(URL url, std::string mimeType, std::int64_t expectedContentLength,
                         std::string textEncodingName)
    : url_(std::move(url))
    , mimeType_(std::move(mimeType))
    , expectedContentLength_(expectedContentLength)
    , textEncodingName_(std::move(textEncodingName))
{
}

URLResponse::~URLResponse() = default;

std::string URLResponse::suggestedFilename() const
{
    if (auto name = safeFilename(url_.lastPathComponent()); !name.empty())
        return name;
    if (auto name = safeFilename(url_.host()); !name.empty())
        return name;
    return "unknown";
}

} // namespace platform

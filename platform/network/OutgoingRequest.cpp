// SPDX-License-Identifier: MIT
#include "platform/network/OutgoingRequest_p.h"

#include "platform/network/Redirection_p.h"

#include <algorithm>

namespace platform {

URLRequest outgoingRequest(const URLRequest& request, const URL& first,
                           const URLSessionConfiguration& configuration)
{
    auto result = request;
    auto& fields = result.allHTTPHeaderFields;
    if (result.cachePolicy == URLRequestCachePolicy::useProtocolCachePolicy)
        result.cachePolicy = configuration.requestCachePolicy;
    for (auto& [name, value] : configuration.httpAdditionalHeaders) {
        if (mayBeTold(name, first, result.url))
            fields.emplace(name, value);
    }
    if (result.cachePolicy == URLRequestCachePolicy::reloadIgnoringLocalAndRemoteCacheData) {
        fields.emplace("Cache-Control", "no-cache");
        fields.emplace("Pragma", "no-cache");
    } else if (result.cachePolicy == URLRequestCachePolicy::reloadRevalidatingCacheData) {
        fields.emplace("Cache-Control", "max-age=0");
    }
    return result;
}

bool isWellFormed(const URLRequest& request)
{
    auto isField = [](auto& field) { return isValidHTTPHeaderField(field.first, field.second); };
    return isValidHTTPHeaderField(request.httpMethod, "")
        && std::ranges::all_of(request.allHTTPHeaderFields, isField);
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/network/URLSessionConfiguration.h"

#include "platform/network/URLCache.h"

#include <utility>

namespace platform {

URLSessionConfiguration URLSessionConfiguration::defaultSession()
{
    URLSessionConfiguration result;
    result.urlCache = URLCache::shared();
    return result;
}

URLSessionConfiguration URLSessionConfiguration::ephemeral()
{
    return {};
}

URLSessionConfiguration URLSessionConfiguration::background(std::string identifier)
{
    URLSessionConfiguration result;
    result.identifier = std::move(identifier);
    result.waitsForConnectivity = true;
    return result;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/URLRequest.h"

#include <string>
#include <string_view>

namespace platform {

// Under which a cache knows a request: its URL without the fragment. Empty for requests that have no answers in a cache.
std::string urlCacheKey(const URLRequest& request);

// 40 hexadecimal digits that differ wherever texts differ.
std::string urlCacheDigest(std::string_view text);

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include <curl/curl.h>

namespace platform {

// What the library's failure is in NSURLErrorDomain. `handle` is the request that failed.
long transferErrorCode(CURL* handle, CURLcode failure);

} // namespace platform

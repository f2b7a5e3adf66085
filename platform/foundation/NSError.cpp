// SPDX-License-Identifier: MIT
#include "platform/foundation/NSError.h"

#include <utility>

namespace platform {

NSError::NSError(std::string_view domain, long code, UserInfo userInfo)
    : domain_(domain)
    , code_(code)
    , userInfo_(std::move(userInfo))
{
}

NSError::NSError(NSCocoaError code, UserInfo userInfo)
    : NSError(NSCocoaErrorDomain, static_cast<long>(code), std::move(userInfo))
{
}

NSError::NSError(NSURLError code, UserInfo userInfo)
    : NSError(NSURLErrorDomain, static_cast<long>(code), std::move(userInfo))
{
}

std::string NSError::localizedDescription() const
{
    if (auto found = userInfo_.find(NSLocalizedDescriptionKey); found != userInfo_.end())
        return found->second;
    return "The operation couldn’t be completed. (" + domain_ + " error " + std::to_string(code_) + ".)";
}

std::string NSError::localizedFailureReason() const
{
    auto found = userInfo_.find(NSLocalizedFailureReasonErrorKey);
    return found == userInfo_.end() ? std::string() : found->second;
}

std::optional<std::string> NSError::localizedRecoverySuggestion() const
{
    auto found = userInfo_.find(NSLocalizedRecoverySuggestionErrorKey);
    return found == userInfo_.end() ? std::nullopt : std::optional(found->second);
}

} // namespace platform

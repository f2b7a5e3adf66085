// SPDX-License-Identifier: MIT
#include "platform/foundation/LocalizedError.h"

#include <utility>

namespace platform {

NSError withTexts(const NSError& error, const LocalizedError& texts)
{
    NSError::UserInfo userInfo = error.userInfo();
    auto add = [&](std::string_view key, const std::optional<std::string>& text) {
        if (text)
            userInfo.emplace(key, *text);
    };
    add(NSLocalizedDescriptionKey, texts.errorDescription);
    add(NSLocalizedFailureReasonErrorKey, texts.failureReason);
    add(NSLocalizedRecoverySuggestionErrorKey, texts.recoverySuggestion);
    add(NSHelpAnchorErrorKey, texts.helpAnchor);
    return NSError(error.domain(), error.code(), std::move(userInfo));
}

} // namespace platform

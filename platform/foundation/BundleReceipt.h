// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Bundle.h"

namespace platform {

inline constexpr std::string_view kCFBundleVersionKey = "CFBundleVersion";

// Where the channel that distributed a program left its receipt: StoreKit/sandboxReceipt in the bundle for a build that is
// handed out for testing, else StoreKit/receipt. Nothing when there is neither. Any thread.
std::optional<URL> appStoreReceiptURL(const Bundle& bundle);

} // namespace platform

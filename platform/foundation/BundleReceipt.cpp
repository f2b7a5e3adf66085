// SPDX-License-Identifier: MIT
#include "platform/foundation/BundleReceipt.h"

namespace platform {

std::optional<URL> appStoreReceiptURL(const Bundle& bundle)
{
    auto testing = bundle.urlForResource("StoreKit/sandboxReceipt");
    return testing ? testing : bundle.urlForResource("StoreKit/receipt");
}

} // namespace platform

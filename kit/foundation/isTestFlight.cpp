// SPDX-License-Identifier: MIT
#include "kit/foundation/isTestFlight.h"

#include "platform/foundation/BundleReceipt.h"

namespace zelk {

bool isTestFlight()
{
    static const bool is = isTestFlightReceipt(platform::appStoreReceiptURL(*platform::Bundle::main()));
    return is;
}

bool isTestFlightReceipt(const std::optional<platform::URL>& receipt)
{
    return receipt && receipt->lastPathComponent() == "sandboxReceipt";
}

} // namespace zelk

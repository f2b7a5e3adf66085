// SPDX-License-Identifier: MIT
#include "kit/foundation/kitLogger.h"

#include "kit/foundation/applicationIdentifierPrefix.h"

namespace zelk {

const platform::Logger& kitLogger()
{
    // Never destroyed: threads may still run while the process exits.
    static const auto& logger = *new platform::Logger(applicationIdentifierPrefix() + ".zelkKit", "main");
    return logger;
}

} // namespace zelk

// SPDX-License-Identifier: MIT
#include "kit/foundation/kitLogger.h"

#include "kit/foundation/applicationIdentifierPrefix.h"

namespace zelk {

const platform::Logger& kitLogger()
{
    static const platform::Logger logger(applicationIdentifierPrefix() + ".zelkKit", "main");
    return logger;
}

} // namespace zelk

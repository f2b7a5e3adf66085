// SPDX-License-Identifier: MIT
#include "kit/foundation/applicationIdentifierPrefix.h"

#include "platform/foundation/Bundle.h"

namespace zelk {

const std::string& applicationIdentifierPrefix()
{
    // Never destroyed: threads may still run while the process exits.
    static const auto& prefix = *new std::string([] {
        std::string identifier = platform::Bundle::main()->bundleIdentifier().value_or("");
        if (identifier.empty())
            return std::string("org.zelk");
        return identifier.substr(0, identifier.rfind('.'));
    }());
    return prefix;
}

} // namespace zelk

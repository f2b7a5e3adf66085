// SPDX-License-Identifier: MIT
#include "kit/foundation/applicationIdentifierPrefix.h"

#include "platform/foundation/Bundle.h"

namespace zelk {

const std::string& applicationIdentifierPrefix()
{
    static const std::string prefix = [] {
        std::string identifier = platform::Bundle::main()->bundleIdentifier().value_or("");
        if (identifier.empty())
            return std::string("org.zelk");
        return identifier.substr(0, identifier.rfind('.'));
    }();
    return prefix;
}

} // namespace zelk

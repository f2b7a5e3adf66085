// SPDX-License-Identifier: MIT
#include "kit/foundation/LocalizedErrorWrapper.h"

namespace zelk {

using namespace platform;

std::optional<std::string> LocalizedErrorWrapper::errorDescription() const
{
    if (const auto& localized = error.localized())
        return localized->errorDescription;
    return error.localizedDescription();
}

LocalizedError localizedError(const LocalizedErrorWrapper& wrapper)
{
    return {.errorDescription = wrapper.errorDescription()};
}

NSError nsError(const LocalizedErrorWrapper&)
{
    return NSError("ZelkKit.LocalizedErrorWrapper", 1);
}

LocalizedErrorWrapper asLocalized(const Error& error)
{
    return {error.bridged()};
}

} // namespace zelk

// SPDX-License-Identifier: MIT
#include "kit/foundation/localized.h"

namespace zelk {

std::string localized(std::string_view key, const platform::Bundle& bundle, std::string_view table)
{
    // Tells a missing text from one that equals its key.
    constexpr std::string_view missing = "<null>";
    auto text = bundle.localizedString(key, missing, table);
    return text == missing ? std::string(key) : text;
}

std::string localizedFormatWithArguments(std::string_view key, const platform::Bundle& bundle,
                                         std::span<const platform::FormatArgument> arguments)
{
    return platform::stringWithFormat(localized(key, bundle), arguments);
}

} // namespace zelk

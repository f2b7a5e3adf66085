// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Bundle.h"
#include "platform/foundation/StringFormat.h"

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace zelk {

// The text of `key` in the user's language: of the string table `table` of `bundle`, the default table
// ("Localizable") when that is empty. The key itself when there is no text for it, or one that reads "<null>".
// Any thread.
std::string localized(std::string_view key, const platform::Bundle& bundle, std::string_view table = {});

// localized() with its format filled in as stringWithFormat() does:
// localizedFormat("FILES_LEFT", bundle, 3, name) with "%d files left in %@".
std::string localizedFormatWithArguments(std::string_view key, const platform::Bundle& bundle,
                                         std::span<const platform::FormatArgument> arguments);
template <class... Arguments>
std::string localizedFormat(std::string_view key, const platform::Bundle& bundle,
                            const Arguments&... arguments)
{
    std::array<platform::FormatArgument, sizeof...(Arguments)> list{platform::FormatArgument(arguments)...};
    return localizedFormatWithArguments(key, bundle, list);
}

} // namespace zelk

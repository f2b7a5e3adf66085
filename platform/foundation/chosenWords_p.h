// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Locale.h"
#include "platform/foundation/LocalizationMatching.h"

#include <string>
#include <vector>

namespace platform {

// The texts of the entry in the language of the user's that comes first of those in the table; of its first entry when none
// is. An entry has a `language` and `texts`.
template <class Table>
std::vector<std::string> chosenWords(const Table& table)
{
    std::vector<std::string> known;
    for (const auto& each : table)
        known.emplace_back(each.language);
    auto matches = matchLocalizations(known, Locale::preferredLanguages());
    auto* chosen = &table.front();
    for (const auto& each : table) {
        if (!matches.empty() && each.language == matches.front())
            chosen = &each;
    }
    return std::vector<std::string>(chosen->texts.begin(), chosen->texts.end());
}

} // namespace platform
